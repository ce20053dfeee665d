// Refusal.h: why a sound can't be read. A front end puts it into words.
#pragma once

#include <cstdint>
#include <system_error>

namespace sound {

struct Refusal {
    enum class Kind {
        Stopped,           // by whom it was told about
        EmptyFile,         // no byte in it
        UnknownFormat,     // or damaged: neither libsndfile nor ffmpeg can read it
        NoFfmpeg,          // libsndfile can't read it, and there is no ffmpeg
        FfmpegFails,       // the same, and it can't be started: `error`
        FfmpegSilent,      // the same, and it gives no answer
        Rate,              // of so many `hertz`
        EndsBeforePart,    // after `seconds`
        NoSound,           // not a sample in it
        NoSoundInPart,     // none behind where the part begins
        Damaged,           // behind `seconds` from the file's beginning
        DamagedBeforePart, // or where the part begins
        TooLong,           // it lasts `seconds`, more than `most`
        EndlesslyLong,     // it lasts longer than `most`, nobody knows how long
    };

    Kind kind;
    double seconds = 0;
    double most = 0; // seconds
    std::int64_t hertz = 0;
    std::error_code error = {};
};

} // namespace sound
