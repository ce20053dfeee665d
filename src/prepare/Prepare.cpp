#include "prepare/Prepare.h"

#include "core/WaveAcceptance.h"
#include "machine/Timing.h"
#include "prepare/Melody.h"
#include "prepare/SpeechTarget.h"

#include <cmath>

namespace prepare {
namespace {

Periods PeriodsFor(const Job& job, const core::Progress& progress)
{
    const auto& sound = job.recording.samples;
    switch (job.kind) {
    case Kind::Speech: return SpeechPeriods(sound, job.noise, job.limits, progress);
    case Kind::Music: return MelodyPeriods(sound, job.limits, progress);
    case Kind::AnySound: return SoundPeriods(sound, job.noise, job.limits, progress);
    }
    return {};
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
    auto periods = PeriodsFor(job, progress);
    if (!progress.GoesOn(1)) return Refusal{.kind = Refusal::Kind::Stopped};
    if (periods.runBytes.empty()) return Refusal{.kind = Refusal::Kind::Inaudible};
    const auto seconds = machine::SecondsOf(periods.runBytes, job.limits.playback);
    const auto most = static_cast<double>(job.limits.runBytes);
    const auto bytes = static_cast<double>(periods.runBytes.size());
    if (bytes > most) return Refusal{.kind = Refusal::Kind::TooManyBytes, .seconds = seconds * most / bytes};
    return Prepared{
        .runBytes = std::move(periods.runBytes), .seconds = seconds, .from = job.recording.from + periods.start};
}

} // namespace prepare
