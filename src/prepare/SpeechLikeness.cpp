#include "prepare/SpeechLikeness.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace prepare {
namespace {

constexpr double kLeast = 1e-9; // added to a norm, for what doesn't move at all

/// Values of one frame, or of one band.
struct Line {
    float* first;
    std::size_t count;
    std::size_t stride;

    float& operator[](std::size_t i) const { return first[i * stride]; }
};

std::size_t FramesOf(const BandTable& table)
{
    return table.values.size() / table.bands;
}

Line FrameOf(BandTable& table, std::size_t frame)
{
    return {.first = &table.values[frame * table.bands], .count = table.bands, .stride = 1};
}

Line BandOf(BandTable& table, std::size_t band)
{
    return {.first = &table.values[band], .count = FramesOf(table), .stride = table.bands};
}

double Product(const Line& a, const Line& b)
{
    double sum = 0;
    for (std::size_t i = 0; i < a.count; ++i)
        sum += static_cast<double>(a[i]) * b[i];
    return sum;
}

double Product(const BandTable& a, const BandTable& b)
{
    return std::inner_product(a.values.begin(), a.values.end(), b.values.begin(), 0.0);
}

void TakeMeanOut(const Line& line)
{
    double sum = 0;
    for (std::size_t i = 0; i < line.count; ++i)
        sum += line[i];
    const auto mean = static_cast<float>(sum / static_cast<double>(line.count));
    for (std::size_t i = 0; i < line.count; ++i)
        line[i] -= mean;
}

/// Without its mean, and of norm 1; the norm that it had.
float Normalise(const Line& line)
{
    TakeMeanOut(line);
    const auto norm = static_cast<float>(std::sqrt(Product(line, line)) + kLeast);
    for (std::size_t i = 0; i < line.count; ++i)
        line[i] /= norm;
    return norm;
}

/// How a value changes with what a line was, given how it changes with what Normalise made of it.
void ThroughNormalise(const Line& normalised, float norm, const Line& slope)
{
    const auto along = static_cast<float>(Product(slope, normalised));
    for (std::size_t i = 0; i < slope.count; ++i)
        slope[i] = (slope[i] - along * normalised[i]) / norm;
    TakeMeanOut(slope);
}

/// The powers of the frames that count.
BandTable PowersIn(const Bands& bands, std::span<const std::size_t> frames, const Spectra& spectra,
                   const core::Progress& progress)
{
    BandTable powers{.bands = bands.count, .values = {}};
    powers.values.reserve(frames.size() * bands.count);
    for (const auto frame : frames) {
        const auto inFrame = progress.GoesOn() ? bands.PowersOf(spectra[frame]) : Powers(bands.count);
        powers.values.insert(powers.values.end(), inFrame.begin(), inFrame.end());
    }
    return powers;
}

/// The power of each frame in all bands.
Powers PowersOfFrames(const Bands& bands, const Spectra& spectra, const core::Progress& progress)
{
    Powers powers(spectra.Size());
    for (std::size_t frame = 0; frame < spectra.Size() && progress.GoesOn(); ++frame) {
        const auto inFrame = bands.PowersOf(spectra[frame]);
        powers[frame] = std::accumulate(inFrame.begin(), inFrame.end(), 0.0F);
    }
    return powers;
}

std::vector<std::size_t> FramesFrom(float least, const Powers& powers)
{
    std::vector<std::size_t> frames;
    for (std::size_t frame = 0; frame < powers.size(); ++frame)
        if (powers[frame] >= least) frames.push_back(frame);
    return frames;
}

double MeanOf(const std::vector<float>& values)
{
    return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

/// A value, and how it changes with each power.
struct Slope {
    double value = 0;
    BandTable ofPowers;
};

// --- rhythm

BandTable AmplitudesOf(BandTable powers)
{
    constexpr double kFloor = 1e-7; // of the mean power, -70 dB: softer is silence
    const auto silent = static_cast<float>(kFloor * MeanOf(powers.values));
    for (auto& value : powers.values)
        value = std::sqrt(value + silent);
    return powers;
}

/// Some frames in a row: each band of them normalised, then each frame of that.
struct Segment {
    BandTable byBand;
    std::vector<float> bandNorms;
    BandTable byFrame;
    std::vector<float> frameNorms;
};

Segment SegmentOf(const BandTable& amplitudes, std::size_t frame, std::size_t frames)
{
    Segment segment;
    const auto first = amplitudes.values.begin() + static_cast<std::ptrdiff_t>(frame * amplitudes.bands);
    segment.byBand = {.bands = amplitudes.bands,
                      .values = {first, first + static_cast<std::ptrdiff_t>(frames * amplitudes.bands)}};
    for (std::size_t band = 0; band < amplitudes.bands; ++band)
        segment.bandNorms.push_back(Normalise(BandOf(segment.byBand, band)));
    segment.byFrame = segment.byBand;
    for (std::size_t i = 0; i < frames; ++i)
        segment.frameNorms.push_back(Normalise(FrameOf(segment.byFrame, i)));
    return segment;
}

Slope RhythmOf(const BandTable& speech, const BandTable& powers, const core::Progress& progress)
{
    constexpr std::size_t kFrames = 33; // of a segment: 384 ms, as ESTOI has them
    constexpr std::size_t kHop = 4;     // frames from segment to segment; ESTOI's 1 is four times the work
    const auto frames = std::min(kFrames, FramesOf(powers));
    const auto segments = (FramesOf(powers) - frames) / kHop + 1;
    const auto share = 1 / static_cast<double>(frames * segments); // of each frame
    const auto amplitudes = AmplitudesOf(powers);
    Slope slope{.ofPowers = {.bands = powers.bands, .values = std::vector<float>(powers.values.size())}};
    for (std::size_t i = 0; i < segments && progress.GoesOn(); ++i) {
        auto change = SegmentOf(speech, i * kHop, frames).byFrame;
        auto played = SegmentOf(amplitudes, i * kHop, frames);
        slope.value += share * Product(change, played.byFrame);
        for (std::size_t frame = 0; frame < frames; ++frame)
            ThroughNormalise(FrameOf(played.byFrame, frame), played.frameNorms[frame], FrameOf(change, frame));
        for (std::size_t band = 0; band < powers.bands; ++band)
            ThroughNormalise(BandOf(played.byBand, band), played.bandNorms[band], BandOf(change, band));
        auto* const sum = &slope.ofPowers.values[i * kHop * powers.bands];
        for (std::size_t k = 0; k < change.values.size(); ++k)
            sum[k] +=
                static_cast<float>(share) * change.values[k] / (2 * amplitudes.values[i * kHop * powers.bands + k]);
    }
    return slope;
}

// --- colour

struct Colours {
    BandTable shares;          // of each frame's power, and a floor
    std::vector<float> powers; // of each frame
    BandTable normalised;
    double norm = 0;
};

Colours ColoursOf(BandTable powers)
{
    constexpr float kSoft = 1e-3F;   // of a frame's power, -30 dB: what is softer in it isn't its colour
    constexpr double kSilent = 1e-4; // of a frame's mean power, -40 dB: a softer frame has none
    Colours colours;
    const auto silent = static_cast<float>(kSilent * static_cast<double>(powers.bands) * MeanOf(powers.values));
    for (std::size_t frame = 0; frame < FramesOf(powers); ++frame) {
        const auto line = FrameOf(powers, frame);
        colours.powers.push_back(std::accumulate(line.first, line.first + line.count, silent));
        for (std::size_t band = 0; band < line.count; ++band)
            line[band] = line[band] / colours.powers.back() + kSoft;
    }
    colours.normalised = powers;
    colours.shares = std::move(powers);
    auto& logs = colours.normalised;
    for (auto& value : logs.values)
        value = std::log(value);
    for (std::size_t frame = 0; frame < FramesOf(logs); ++frame)
        TakeMeanOut(FrameOf(logs, frame));
    for (std::size_t band = 0; band < logs.bands; ++band)
        TakeMeanOut(BandOf(logs, band));
    colours.norm = std::sqrt(Product(logs, logs)) + kLeast;
    for (auto& value : logs.values)
        value /= static_cast<float>(colours.norm);
    return colours;
}

Slope ColourOf(const BandTable& speech, const BandTable& powers)
{
    const auto played = ColoursOf(powers);
    Slope slope{.value = Product(speech, played.normalised), .ofPowers = speech};
    auto& change = slope.ofPowers;
    for (std::size_t i = 0; i < change.values.size(); ++i)
        change.values[i] =
            static_cast<float>((change.values[i] - slope.value * played.normalised.values[i]) / played.norm);
    for (std::size_t band = 0; band < change.bands; ++band)
        TakeMeanOut(BandOf(change, band));
    for (std::size_t frame = 0; frame < FramesOf(change); ++frame) {
        const auto line = FrameOf(change, frame);
        TakeMeanOut(line);
        float along = 0; // the frame's power changes with each
        for (std::size_t band = 0; band < line.count; ++band) {
            const auto i = frame * change.bands + band;
            line[band] /= played.shares.values[i] * played.powers[frame];
            along += line[band] * powers.values[i] / played.powers[frame];
        }
        for (std::size_t band = 0; band < line.count; ++band)
            line[band] -= along;
    }
    return slope;
}

} // namespace

SpeechLikeness::SpeechLikeness(std::span<const float> speech, const core::Progress& progress)
    : rhythm_{.bands = ThirdOctaves(15, 150), .frames = {}, .speech = {}}, // ESTOI's
      colour_{.bands = MelBands(24, 100, 5500), .frames = {}, .speech = {}}
{
    constexpr float kSoftest = 1e-4F;    // of the loudest frame's power, -40 dB: ESTOI's
    constexpr float kColourless = 1e-3F; // of the loud frames' power, -30 dB
    const Spectra spectra(speech, progress);
    auto powers = PowersOfFrames(rhythm_.bands, spectra, progress);
    rhythm_.frames = FramesFrom(kSoftest * *std::ranges::max_element(powers), powers);
    rhythm_.speech = AmplitudesOf(PowersIn(rhythm_.bands, rhythm_.frames, spectra, progress));
    powers = PowersOfFrames(colour_.bands, spectra, progress);
    colour_.frames = FramesFrom(kColourless * Quantile(powers, 0.95), powers);
    colour_.speech = ColoursOf(PowersIn(colour_.bands, colour_.frames, spectra, progress)).normalised;
}

SpeechLikeness::Place SpeechLikeness::At(std::span<const float> sound, const core::Progress& progress) const
{
    Spectra spectra(sound, progress);
    const auto rhythm = RhythmOf(rhythm_.speech, PowersIn(rhythm_.bands, rhythm_.frames, spectra, progress), progress);
    const auto colour = ColourOf(colour_.speech, PowersIn(colour_.bands, colour_.frames, spectra, progress));
    const auto gainsIn = [](const Measure& measure, const Slope& slope, std::size_t& next, std::size_t frame) {
        Powers gains(measure.bands.count + 1); // and one for what belongs to none
        if (next < measure.frames.size() && measure.frames[next] == frame) {
            const auto* const first = &slope.ofPowers.values[next++ * measure.bands.count];
            std::copy(first, first + measure.bands.count, gains.begin());
        }
        return gains;
    };
    std::size_t rhythmFrame = 0;
    std::size_t colourFrame = 0;
    for (std::size_t frame = 0; frame < spectra.Size() && progress.GoesOn(); ++frame) {
        const auto rhythmGains = gainsIn(rhythm_, rhythm, rhythmFrame, frame);
        const auto colourGains = gainsIn(colour_, colour, colourFrame, frame);
        for (std::size_t k = 0; k < Spectra::kBins; ++k)
            spectra[frame][k] *= rhythmGains[rhythm_.bands.ofBin[k]] + colourGains[colour_.bands.ofBin[k]];
    }
    return {.value = rhythm.value + colour.value, .direction = spectra.Sound(progress)};
}

} // namespace prepare
