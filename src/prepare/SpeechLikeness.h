// SpeechLikeness.h: how much of a speech is understood of another sound, by two measures, each 1 for the speech itself,
// and which way that sound has to change so that it is more. Neither measure hears phases.
//     rhythm   ESTOI (Jensen, Taal: An algorithm for predicting the intelligibility of speech masked by modulated noise
//              maskers, 2016), in these windows: how each third of an octave moves within half a second. Alone it is
//              met by sounds that nobody takes for the vowel: measured, docs/listening.md
//     colour   the correlation of log-mel spectra, each frame's and each band's mean left out (a mel-cepstral distance,
//              Kubichek: Mel-cepstral distance measure for objective speech quality assessment, 1993)
#pragma once

#include "core/Progress.h"
#include "prepare/Levels.h"
#include "prepare/Spectra.h"

#include <span>
#include <vector>

namespace prepare {

/// A value for each band of each frame that counts, frame by frame.
struct BandTable {
    std::size_t bands;
    std::vector<float> values;
};

class SpeechLikeness {
public:
    SpeechLikeness(std::span<const float> speech, const core::Progress& progress);

    struct Place {
        double value;             // rhythm and colour together, 2 at most
        sound::Samples direction; // in which it rises, of any length
    };
    /// For a sound as long as the speech, which isn't silent throughout.
    [[nodiscard]] Place At(std::span<const float> sound, const core::Progress& progress) const;

private:
    /// What a measure takes of the speech.
    struct Measure {
        Bands bands;
        std::vector<std::size_t> frames; // that count
        BandTable speech;                // what a sound's powers in them become
    };

    Measure rhythm_;
    Measure colour_;
};

} // namespace prepare
