// Words.h: what the studio says, whole in two languages, as UTF-8: what is shown, and what a screen reader says of the
// pictures. What is fixed and stands at one control only is beside that control.
#pragma once

#include "studio/State.h"

#include <string>
#include <utility>
#include <vector>

namespace studio {

enum class Language { English, German };

/// "Speech", and what it does in a line.
[[nodiscard]] std::string NameOf(prepare::Kind kind, Language language);
[[nodiscard]] std::string ExplanationOf(prepare::Kind kind, Language language);
/// "PC-1600 with the 32 KB module".
[[nodiscard]] std::string NameOf(Target target, Language language);

/// A sentence or two: what is, and what can be done.
[[nodiscard]] std::string TextOf(const Notice& notice, Language language);

/// "1:05.500": a time for a field or a ruler, to so many decimals.
[[nodiscard]] std::string TimeText(double seconds, int decimals);
/// The distance of a ruler's lines, in seconds, so that each has at least the room of `least` seconds: 1, 2 or 5 of a
/// power of ten, from the minute on those of clocks.
[[nodiscard]] double RulerStep(double least);

/// "12034 of 28474 bytes, 15.2 s; about 20.1 s more would fit".
[[nodiscard]] std::string MeterText(const State& state, Language language);
/// Of the waveform: file, length, what is read of it, and what is chosen.
[[nodiscard]] std::string WaveformText(const State& state, Language language);
/// Of the two spectrograms: what they show.
[[nodiscard]] std::string PicturesText(const State& state, Language language);
/// Of the result or of the work that leads to it: "Prepared: plays for 15.2 s", "Being prepared: 40 percent".
[[nodiscard]] std::string WorkText(const State& state, Language language);
/// Of a saved file, as tonfloss-preview reports: names and values. Empty for a sound.
[[nodiscard]] std::vector<std::pair<std::string, std::string>> ReportOf(const State& state, Language language);

} // namespace studio
