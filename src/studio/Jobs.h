// Jobs.h: what the studio does in threads, each job by itself: values in, values out. What can't be done with a file is
// thrown as a files::IOException. Once `progress` says to stop, what a job gives back means nothing.
#pragma once

#include "core/Progress.h"
#include "sound/ReadSound.h"
#include "studio/State.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace studio {

/// The first part of a sound that has become known.
struct Overview {
    std::int64_t rate;
    std::int64_t channels;
    std::optional<double> expected; // seconds in all, as the file tells or lets guess
    bool isTurned; // the channels cancel each other: every other one is turned round, as ReadSound does
    std::shared_ptr<const Waveform> waveform;
};
using Grown = std::function<void(const Overview& overview)>;

/// Reads all of a sound. `grown` gets what there is as soon as there is something, and again whenever there is more to
/// be seen.
[[nodiscard]] std::variant<sound::Stretch, sound::Refusal>
ReadOverview(const std::filesystem::path& path, const Grown& grown, const core::Progress& progress);

/// A stretch of a sound anew, as fine as it fits into a waveform.
[[nodiscard]] std::shared_ptr<const Waveform> ReadClosely(const std::filesystem::path& path, const Span& span,
                                                          bool isTurned, const core::Progress& progress);

/// The saved sound file at `path`; a Refusal where it is none, nothing where it can't be one or is ready for the
/// window.
using Opened = std::variant<std::monostate, preview::SoundFile, preview::Refusal, Event>;
[[nodiscard]] Opened OpenSaved(const std::filesystem::path& path);

/// What is asked for.
struct Request {
    std::filesystem::path path;
    files::FileState state; // of the file when it was opened
    Span part;
    bool toEnd; // the part goes on to the end, wherever that is
    Settings settings;
};

struct Made {
    std::shared_ptr<const Result> result;
    std::shared_ptr<const sound::Samples> samples; // of the part
};
[[nodiscard]] std::variant<Made, sound::Refusal, prepare::Refusal, Event> Make(const Request& request,
                                                                               const core::Progress& progress);
[[nodiscard]] std::shared_ptr<const Result> ResultOf(const preview::SoundFile& saved, const core::Progress& progress);

/// `samples` are those of the part; none of a saved file.
[[nodiscard]] std::shared_ptr<const Pictures> Draw(const Result& result, const sound::Samples& samples,
                                                   const core::Progress& progress);

/// What a saved file sounds like, sample by sample.
[[nodiscard]] std::shared_ptr<const Waveform> WaveformOf(const Playable& playable, const Span& span);

/// Seconds of sound that one file can be prepared of at most.
[[nodiscard]] double MostSecondsFor(const Settings& settings);

/// Of a sound file for `target`, as its room is counted.
[[nodiscard]] std::int64_t SizeOf(std::size_t runBytes, Target target);

/// Where a sound file for `target` is loaded; nowhere for PokEmul.
[[nodiscard]] std::optional<std::int64_t> AddressOf(Target target);

/// Whether the player of a saved file doesn't run where the file is loaded.
[[nodiscard]] bool IsLaidOutWrong(const preview::SoundFile& saved);
/// Four digits; empty for PokEmul.
[[nodiscard]] std::string AddressTextOf(const preview::SoundFile& saved);

/// The bytes to be saved of `result`, for a sound called `name`.
[[nodiscard]] std::string RecordingBytesOf(const Result& result);
[[nodiscard]] std::string SoundFileBytesOf(const Result& result, std::u32string_view name);
/// Laid out for its own address. Requires: it fits there.
[[nodiscard]] std::string SoundFileBytesOf(const preview::SoundFile& sound);

} // namespace studio
