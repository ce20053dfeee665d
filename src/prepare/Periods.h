// Periods.h: what a sound is made of for the machine, and what for.
#pragma once

#include "machine/RunBytes.h"

#include <cstddef>

namespace prepare {

/// What the periods are made for.
struct Limits {
    machine::Playback playback;
    std::size_t runBytes; // that there is room for, without the end mark
};

/// What becomes of noise that goes through the whole sound.
enum class Noise { TakenOut, Kept };

/// Empty where nothing is to be heard.
struct Periods {
    machine::RunBytes runBytes;
    double start = 0; // seconds into the sound at which the first of them begins
};

} // namespace prepare
