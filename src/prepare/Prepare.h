// Prepare.h: a sound made the list of run bytes that sounds most like it on the machine: a job in, a result or a
// refusal out. Whoever asks reads the sound before (sound/ReadSound.h), and may write a recording behind
// (core/RecordingBytes.h).
#pragma once

#include "core/Progress.h"
#include "prepare/Periods.h"
#include "sound/ReadSound.h"

#include <array>
#include <string_view>
#include <variant>

namespace prepare {

/// What is to be kept of a sound.
enum class Kind {
    Speech,   // the words
    Music,    // all voices of it; where there is only one, its melody
    Melody,   // the strongest voice
    AnySound, // all else, as it is
};
inline constexpr std::array kKinds{Kind::Speech, Kind::Music, Kind::Melody, Kind::AnySound};

/// By which users ask for a kind.
[[nodiscard]] constexpr std::string_view NameOf(Kind kind)
{
    switch (kind) {
    case Kind::Speech: return "speech";
    case Kind::Music: return "music";
    case Kind::Melody: return "melody";
    case Kind::AnySound: return "sound";
    }
    return {};
}
static_assert(NameOf(static_cast<Kind>(kKinds.size())).empty(), "kKinds lacks one");

struct Job {
    sound::Recording recording;
    Kind kind = Kind::Speech;
    Noise noise = Noise::TakenOut; // of a melody it always is, of other music never
    Limits limits;
};

struct Prepared {
    Kind kind;                  // that it was taken for: a melody, where music has one voice only
    machine::RunBytes runBytes; // a recording can lead to them
    double seconds;             // on the machine
    double from;                // seconds into the sound file at which the first of them begins
};

/// Why a sound can't be prepared.
struct Refusal {
    enum class Kind {
        Stopped,      // by whom it was told about
        Inaudible,    // there is nothing to be heard in it
        TooManyBytes, // its first `seconds` would fit, to the tenth; 0: not even a tenth
    };

    Kind kind;
    double seconds = 0;
};

/// How long, in whole seconds, a sound may be for its recording to be one that the window takes, whatever periods it is
/// made of.
[[nodiscard]] double MostSeconds(const machine::Playback& playback);

[[nodiscard]] std::variant<Prepared, Refusal> Prepare(const Job& job, const core::Progress& progress);

} // namespace prepare
