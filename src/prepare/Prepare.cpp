#include "prepare/Prepare.h"

#include "core/ImageSize.h"
#include "core/SoundFileHeader.h"
#include "core/WaveAcceptance.h"
#include "files/Files.h"
#include "machine/Timing.h"
#include "prepare/Melody.h"
#include "prepare/RecordingBytes.h"
#include "prepare/Refusal.h"
#include "prepare/SpeechTarget.h"
#include "prepare/TimeText.h"

#include <cmath>
#include <iomanip>
#include <sstream>

namespace prepare {
namespace {

namespace fs = std::filesystem;

std::string Utf8(const std::u8string& text)
{
    return {text.begin(), text.end()};
}

fs::path OutputBeside(const fs::path& input)
{
    auto name = input.stem();
    name += "-ready.wav";
    return input.parent_path() / name;
}

/// How long, in whole seconds, a sound may be for its recording to be one that the window takes, whatever periods it is
/// made of: each sample of it is played for two delay steps at least.
double MostSeconds(const machine::Playback& playback)
{
    constexpr double kSamples = core::kLargestWaveFile - 1000; // the header, and a list may end behind its sound
    const auto cyclesPerSample = machine::CyclesOf(3, playback) - machine::CyclesOf(2, playback);
    return std::floor(kSamples * static_cast<double>(cyclesPerSample) / static_cast<double>(playback.machine.clock));
}

machine::RunBytes PeriodsFor(const Sound& sound, const Options& options, std::size_t mostRunBytes,
                             const Progress& progress)
{
    switch (options.kind) {
    case Kind::Speech: return SpeechPeriods(sound, options.playback, mostRunBytes, progress);
    case Kind::Music: return MelodyPeriods(sound, options.playback, mostRunBytes, progress);
    case Kind::AnySound: break;
    }
    return SoundPeriods(sound, options.playback, mostRunBytes, progress);
}

/// The run bytes of what was read, as many as `options` allow.
machine::RunBytes FittingPeriods(const Sound& sound, const Options& options, const Progress& progress)
{
    const auto most = static_cast<std::size_t>(options.size - core::kTokensPC1600 - 1); // the end mark
    auto runBytes = PeriodsFor(sound, options, most, progress);
    if (runBytes.empty()) throw Refusal("There is nothing to be heard in it.");
    if (runBytes.size() <= most) return runBytes;
    const auto fit = machine::SecondsOf(runBytes, options.playback) * static_cast<double>(most) /
                     static_cast<double>(runBytes.size());
    throw Refusal("It is too long for " + std::to_string(options.size) + " bytes. About " + TimeText(fit) +
                  " of it would fit: take a part, for example with --from 0:30 --length " + TimeText(fit) + ".");
}

std::string Answer(const fs::path& input, const fs::path& output, const Options& options, const Recording& recording,
                   const machine::RunBytes& runBytes)
{
    const auto inPokEmul = static_cast<std::int64_t>(runBytes.size()) + 1; // the end mark
    const auto inPC1600 = inPokEmul + core::kTokensPC1600;
    const bool needsExtension = core::SizeBandOf(inPC1600) == core::SizeBand::NeedsExtension;
    const auto title = output.filename().u32string().substr(0, core::kTitleTokens);

    std::ostringstream text;
    text << "read: " << Utf8(input.filename().u8string());
    if (recording.seconds) text << ", " << TimeText(*recording.seconds);
    text << ", " << recording.rate << " Hz, " << recording.channels
         << (recording.channels == 1 ? " channel" : " channels")
         << "\ntaken: " << TimeText(static_cast<double>(recording.sound.size()) / kSoundRate) << " from "
         << TimeText(options.part.from) << "\nmade: " << Utf8(output.u8string()) << ", " << options.playback.rate.hertz
         << " Hz\nseconds: " << std::fixed << std::setprecision(3) << machine::SecondsOf(runBytes, options.playback)
         << "\nrun bytes: " << inPokEmul << "\nsize: " << inPC1600 << " for the PC-1600, " << inPokEmul
         << " for PokEmul\n32 KB extension: " << (needsExtension ? "needed" : "not needed for the size")
         << "\ntitle on the machine: " << Utf8(fs::path(title).u8string())
         << "\nnext: drop the recording on the window of Tonfloss\n";
    return text.str();
}

} // namespace

std::string Prepare(const fs::path& input, const Options& options, const Progress& progress)
{
    const auto output = options.output.empty() ? OutputBeside(input) : options.output;
    std::error_code error;
    const auto existing = options.force ? files::Existing::Replace : files::Existing::Refuse;
    if (!options.force && fs::exists(fs::symlink_status(output, error))) // asked again when it is written
        throw files::IOException(files::IOException::Kind::Exists, output);

    const auto recording = ReadSound(input, options.part, MostSeconds(options.playback));
    const auto runBytes = FittingPeriods(recording.sound, options, progress);
    const auto bytes = RecordingBytes(runBytes, options.playback.rate);
    files::Write(
        output, existing, [&](const files::ByteSink& sink) { sink(bytes); }, input);
    return Answer(input, output, options, recording, runBytes);
}

} // namespace prepare
