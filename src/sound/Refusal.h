// Refusal.h: why a sound can't be read. A front end puts it into words.
#pragma once

#include <cstdint>

namespace sound {

struct Refusal {
    enum class Kind {
        Stopped,        // by whom it was told about
        EmptyFile,      // no byte in it
        UnknownFormat,  // or damaged: neither libsndfile nor ffmpeg can read it
        NoFfmpeg,       // libsndfile can't read it, and there is no ffmpeg
        Rate,           // of so many `hertz`
        EndsBeforePart, // after `seconds`
        NoSound,        // not a sample in it
        NoSoundInPart,  // none behind where the part begins
        Damaged,        // `seconds` of it can't be read
        TooLong,        // it lasts `seconds`, more than `most`
        TooMuch,        // `seconds` are asked for, more than `most`
        EndlesslyLong,  // it lasts longer than `most`, nobody knows how long
    };

    Kind kind;
    double seconds = 0;
    double most = 0; // seconds
    std::int64_t hertz = 0;
};

} // namespace sound
