#include "prepare/Prepare.h"

#include "core/WaveAcceptance.h"
#include "machine/Timing.h"
#include "prepare/Melody.h"
#include "prepare/OneVoice.h"
#include "prepare/PitchTrack.h"
#include "prepare/Song.h"
#include "prepare/SpeechTarget.h"

#include <cmath>

namespace prepare {
namespace {

struct Taken {
    Kind kind;
    Periods periods;
};

Taken MusicPeriods(const Job& job, const core::Progress& progress)
{
    const auto& sound = job.recording.samples;
    const auto tracking = job.kind == Kind::Melody ? 0.95 : 0.15; // of the time that all takes
    const auto track = PitchTrack(sound, progress.Stage(0, tracking));
    const auto rest = progress.Stage(tracking, 1);
    if (job.kind == Kind::Melody || IsOneVoice(sound, track, rest.Stage(0, 0.05)))
        return {Kind::Melody, MelodyPeriods(track, job.limits, rest)};
    return {Kind::Music, SongPeriods(sound, job.limits, rest.Stage(0.05, 1))};
}

Taken PeriodsFor(const Job& job, const core::Progress& progress)
{
    const auto& sound = job.recording.samples;
    switch (job.kind) {
    case Kind::Speech: return {job.kind, SpeechPeriods(sound, job.noise, job.limits, progress)};
    case Kind::Music:
    case Kind::Melody: return MusicPeriods(job, progress);
    case Kind::AnySound: break;
    }
    return {job.kind, SoundPeriods(sound, job.noise, job.limits, progress)};
}

/// How much of the sound from its beginning on fits, in whole tenths of a second, where the whole takes so many
/// `bytes`. It is tried, since a beginning may take more than its share.
double SecondsThatFit(const Job& job, std::size_t bytes, const core::Progress& progress)
{
    const auto& samples = job.recording.samples;
    const auto share = static_cast<double>(job.limits.runBytes) / static_cast<double>(bytes);
    auto tenths = static_cast<int>(10 * sound::SecondsAt(samples.size()) * share);
    for (; tenths > 0; tenths = tenths * 9 / 10) {
        auto beginning = job;
        beginning.recording.samples.resize(std::min(samples.size(), sound::SamplesIn(tenths / 10.0)));
        const auto size = PeriodsFor(beginning, progress).periods.runBytes.size();
        if (progress.IsStopped() || (size > 0 && size <= job.limits.runBytes)) break;
    }
    return tenths / 10.0;
}

} // namespace

// Each sample of the recording is played for two delay steps at least.
double MostSeconds(const machine::Playback& playback)
{
    constexpr double kSamples = core::kLargestWaveFile - 1000; // the header, and a list may end behind its sound
    const auto cyclesPerSample = 2 * machine::StepCycles(playback);
    return std::floor(kSamples * static_cast<double>(cyclesPerSample) / static_cast<double>(playback.machine.clock));
}

std::variant<Prepared, Refusal> Prepare(const Job& job, const core::Progress& progress)
{
    auto [kind, periods] = PeriodsFor(job, progress);
    if (!progress.GoesOn(1)) return Refusal{.kind = Refusal::Kind::Stopped};
    if (periods.runBytes.empty()) return Refusal{.kind = Refusal::Kind::Inaudible};
    if (const auto bytes = periods.runBytes.size(); bytes > job.limits.runBytes) {
        const auto fit = SecondsThatFit(job, bytes, progress.Stage(1, 1));
        if (progress.IsStopped()) return Refusal{.kind = Refusal::Kind::Stopped};
        return Refusal{.kind = Refusal::Kind::TooManyBytes, .seconds = fit};
    }
    const auto seconds = machine::SecondsOf(periods.runBytes, job.limits.playback);
    return Prepared{.kind = kind,
                    .runBytes = std::move(periods.runBytes),
                    .seconds = seconds,
                    .from = job.recording.from + periods.start};
}

} // namespace prepare
