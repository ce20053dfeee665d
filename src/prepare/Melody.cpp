#include "prepare/Melody.h"

#include "prepare/PitchTrack.h"
#include "sound/Sound.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

namespace prepare {
namespace {

/// Pitches of the track that make one tone: from `first` to before `last`.
struct Note {
    std::size_t first;
    std::size_t last;
};

/// A note ends with its sound, or where the pitch leaps.
std::vector<Note> NotesOf(const std::vector<float>& track)
{
    constexpr float kLeap = 1.04F; // 68 cents within 10 ms: no vibrato is as fast, and a semitone is more
    std::vector<Note> notes;
    for (std::size_t k = 0; k < track.size(); ++k) {
        if (track[k] == 0) continue;
        const bool goesOn = k > 0 && track[k] < track[k - 1] * kLeap && track[k - 1] < track[k] * kLeap;
        if (!goesOn) notes.push_back({k, k});
        notes.back().last = k + 1;
    }
    return notes;
}

class PeriodWriter {
public:
    explicit PeriodWriter(const machine::Playback& playback)
        : clock_(static_cast<double>(playback.machine.clock)),
          silenceCycles_(static_cast<double>(machine::CyclesOf(machine::kStaysHigh, playback))),
          countCycles_(static_cast<double>(2 * machine::StepCycles(playback))),
          overheadCycles_(static_cast<double>(machine::CyclesOf(1, playback)) - countCycles_)
    {}

    /// Writes periods of this pitch up to a time, in seconds.
    void Tone(double hertz, double until)
    {
        constexpr double kCatchUp = 0.3; // of what the periods before are late, within one
        const double cycles = PeriodWithinBytes(hertz);
        while (due_ + cycles / 2 < until * clock_) {
            const double counts = (cycles + kCatchUp * (due_ - written_) - overheadCycles_) / countCycles_;
            const double byte = std::clamp<double>(std::round(counts + kSpread * Chance()), machine::kShortestPeriod,
                                                   machine::kLongestPeriod);
            runBytes_.push_back(static_cast<machine::RunByte>(byte));
            due_ += cycles;
            written_ += byte * countCycles_ + overheadCycles_;
        }
    }

    /// Writes silence up to a time, in seconds: so many bytes at least.
    void Silence(double until, int least)
    {
        for (; least > 0 || written_ + silenceCycles_ / 2 < until * clock_; --least) {
            runBytes_.push_back(machine::kStaysHigh);
            written_ += silenceCycles_;
        }
        due_ = written_;
    }

    [[nodiscard]] machine::RunBytes Take()
    {
        while (!runBytes_.empty() && runBytes_.back() == machine::kStaysHigh) // a note that is too short for a period
            runBytes_.pop_back();
        return std::move(runBytes_);
    }

private:
    /// In cycles: of the pitch, or of that by octaves away which a byte can hold, with a count for dither.
    [[nodiscard]] double PeriodWithinBytes(double hertz) const
    {
        double cycles = clock_ / hertz;
        while (cycles < overheadCycles_ + (machine::kShortestPeriod + kSpread / 2 - 0.5) * countCycles_)
            cycles *= 2;
        while (cycles > overheadCycles_ + (machine::kLongestPeriod - 1) * countCycles_)
            cycles /= 2;
        return cycles;
    }

    static constexpr double kSpread = 1.5; // counts, of the dither

    /// From -0.5 to 0.5, any of them as likely.
    double Chance()
    {
        constexpr double kMost = std::minstd_rand::max();
        return static_cast<double>(random_()) / kMost - 0.5;
    }

    double clock_;
    double silenceCycles_;
    double countCycles_;    // for each count of a period
    double overheadCycles_; // for each period, on top
    double due_ = 0;        // cycles, when the last period was to end
    double written_ = 0;    // cycles, when it ends
    machine::RunBytes runBytes_;
    std::minstd_rand random_; // the same for each melody, so that it is prepared the same each time
};

/// Where a pitch of the track lies in the sound.
double SecondsOf(std::size_t pitch)
{
    return sound::SecondsAt(pitch * kPitchHop);
}

/// The run bytes of the notes, of each only that part from its beginning on.
machine::RunBytes Play(const std::vector<float>& track, const std::vector<Note>& notes, double part,
                       const machine::Playback& playback)
{
    PeriodWriter writer(playback);
    auto end = notes.front().first; // of what has been written
    for (const auto& [first, last] : notes) {
        // However long a 254 is on this machine, a gap between two notes is heard.
        writer.Silence(SecondsOf(first - notes.front().first), first - end >= kPitchGap ? 1 : 0);
        const auto kept = static_cast<std::size_t>(std::ceil(static_cast<double>(last - first) * part));
        for (auto k = first; k < first + kept; ++k)
            writer.Tone(track[k], SecondsOf(k + 1 - notes.front().first));
        end = first + kept;
    }
    return writer.Take();
}

} // namespace

Periods MelodyPeriods(std::span<const float> sound, const Limits& limits, const core::Progress& progress)
{
    constexpr int kParts = 30; // of 3 percent each, so that few of the bytes asked for stay unused
    constexpr int kFewestParts = 12;
    const auto track = PitchTrack(sound, progress.Stage(0, 0.95)); // of the time that all takes
    const auto notes = NotesOf(track);
    if (notes.empty()) return {};
    Periods periods{.runBytes = {}, .start = SecondsOf(notes.front().first)};
    int parts = kParts;
    do {
        periods.runBytes = Play(track, notes, static_cast<double>(parts) / kParts, limits.playback);
    } while (periods.runBytes.size() > limits.runBytes && --parts >= kFewestParts && progress.GoesOn(0.95));
    return periods;
}

} // namespace prepare
