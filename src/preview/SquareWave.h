// SquareWave.h: what the port does, as a Wave file: 16 bits, mono.
//     port    C0 is +16000, 40 is -16000: -6 dB of full scale, and with equal halves no offset. Nothing is taken off
//             where the halves are unequal: the offset is then the port's own.
//     time    sample 0 is the first write; before it the port is low. The file ends with the sound.
//     edges   band-limited: flat up to 0.4 of the output rate, -76 dB and less from 0.5 of it on, so that what a sample
//             can't hold doesn't come back as a whistle. An edge keeps its place, as long as its neighbours are 1.5
//             samples away; a tone above half the output rate can't be heard.
#pragma once

#include "files/Files.h"
#include "machine/Timing.h"

#include <cstdint>

namespace preview {

/// Gives the Wave file of `performance` to `sink` in pieces of a few KiB. Requires: the file stays below 4 GiB.
void WriteWave(const machine::Performance& performance, std::int64_t clock, std::int64_t outputRate,
               const files::ByteSink& sink);

} // namespace preview
