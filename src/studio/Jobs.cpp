#include "studio/Jobs.h"

#include "core/ImageSize.h"
#include "core/RecordingBytes.h"
#include "core/SoundFileHeader.h"
#include "core/SoundFileImage.h"
#include "core/WaveAcceptance.h"
#include "machine/Memory.h"
#include "machine/Timing.h"
#include "prepare/PitchTrack.h"
#include "preview/SquareWave.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <numeric>

namespace studio {
namespace {

constexpr double kLongestSound = 1e6; // seconds: what the command takes for a time, too
constexpr float kFullScale = 32768;   // of 16 bits

/// Of all lanes of a processor at once.
float PowerOf(std::span<const float> samples)
{
    constexpr std::size_t kLanes = 8;
    std::array<float, kLanes> powers{};
    for (; samples.size() >= kLanes; samples = samples.subspan(kLanes))
        for (std::size_t lane = 0; lane < kLanes; ++lane)
            powers[lane] += samples[lane] * samples[lane];
    for (const auto sample : samples)
        powers.front() += sample * sample;
    return std::accumulate(powers.begin(), powers.end(), 0.0F);
}

/// The waveforms of a sound's channels as they are and with every other one turned round, until it is clear which of
/// them is heard.
class Growing {
public:
    explicit Growing(double from = 0) : from_(from) {}

    void Take(const sound::SoundSource& source, const sound::SoundSource::Block& block)
    {
        mixed_.Take(source, block.mixed, from_);
        turned_.Take(source, block.turned, from_);
    }
    [[nodiscard]] bool IsTurned() const
    {
        constexpr double kMuchMore = 100; // as ReadSound does
        return turned_.power > kMuchMore * mixed_.power;
    }
    [[nodiscard]] const std::optional<Waveform>& Of(bool isTurned) const
    {
        return isTurned ? turned_.waveform : mixed_.waveform;
    }

private:
    struct Side {
        std::optional<Waveform> waveform;
        double power = 0;

        void Take(const sound::SoundSource& source, std::span<const float> samples, double from)
        {
            if (samples.empty()) return;
            if (!waveform) waveform.emplace(source.Rate(), from);
            waveform->Take(samples);
            power += PowerOf(samples);
        }
    };

    double from_;
    Side mixed_;
    Side turned_;
};

/// What tonfloss-preview plays.
std::vector<std::int16_t> PlayedBy(std::span<const machine::RunByte> runBytes, const machine::Playback& playback,
                                   std::int64_t rate, const core::Progress& progress)
{
    constexpr std::size_t kPiece = 65536; // samples
    const preview::SquareWave wave(machine::PerformanceOf(runBytes, playback), playback.machine.clock, rate);
    std::vector<std::int16_t> samples(static_cast<std::size_t>(wave.SampleCount()));
    for (std::size_t first = 0; first < samples.size() && progress.GoesOn(); first += kPiece)
        wave.Read(static_cast<std::int64_t>(first),
                  std::span(samples).subspan(first, std::min(kPiece, samples.size() - first)));
    return samples;
}

machine::Playback PlaybackOf(const Settings& settings)
{
    return {.rate = settings.rate, .machine = {}};
}

std::vector<std::int16_t> Sixteen(const sound::Samples& samples)
{
    std::vector<std::int16_t> sixteen;
    sixteen.reserve(samples.size());
    for (const auto sample : samples)
        sixteen.push_back(
            static_cast<std::int16_t>(std::lround(std::clamp(sample * kFullScale, -kFullScale, kFullScale - 1))));
    return sixteen;
}

} // namespace

std::optional<std::int64_t> AddressOf(Target target)
{
    switch (target) {
    case Target::WithModule: return machine::kLowestAddress;
    case Target::WithoutModule: return machine::kLowestWithoutExtension;
    case Target::PokEmul: break;
    }
    return std::nullopt;
}

// As tonfloss-prepare has it: for PokEmul as many run bytes as for the PC-1600 with its player.
std::int64_t RoomOf(Target target)
{
    const auto lowest = AddressOf(target).value_or(machine::kLowestAddress);
    const auto runBytes = static_cast<std::int64_t>(core::RunBytesIn(machine::RoomAt(lowest)));
    return runBytes + SizeOf(0, target);
}

std::variant<sound::Stretch, sound::Refusal> ReadOverview(const std::filesystem::path& path, const Grown& grown,
                                                          const core::Progress& progress)
{
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds kPause{100}; // from one picture to the next
    Growing growing;
    Overview overview{};
    auto last = Clock::now() - kPause;
    const auto tell = [&] {
        overview.isTurned = growing.IsTurned();
        overview.waveform = std::make_shared<const Waveform>(*growing.Of(overview.isTurned));
        grown(overview);
    };
    const auto take = [&](const sound::SoundSource& source, const sound::SoundSource::Block& block) {
        growing.Take(source, block);
        if (const auto now = Clock::now(); now - last >= kPause) {
            last = now;
            overview.rate = source.Rate();
            overview.channels = source.Channels();
            const auto rate = static_cast<double>(source.Rate());
            if (const auto frames = source.Frames()) overview.expected = static_cast<double>(*frames) / rate;
            tell();
        }
    };
    auto read = sound::StreamSound(path, {}, kLongestSound, take, progress);
    if (overview.waveform) tell(); // the rest
    return read;
}

std::shared_ptr<const Waveform> ReadClosely(const std::filesystem::path& path, const Span& span, bool isTurned,
                                            const core::Progress& progress)
{
    Growing growing(span.from);
    const auto take = [&](const sound::SoundSource& source, const sound::SoundSource::Block& block) {
        growing.Take(source, block);
    };
    // What can't be read was told when the whole was.
    static_cast<void>(
        sound::StreamSound(path, {.from = span.from, .length = span.Length()}, kLongestSound, take, progress));
    const auto& waveform = growing.Of(isTurned);
    return waveform ? std::make_shared<const Waveform>(*waveform) : nullptr;
}

Opened OpenSaved(const std::filesystem::path& path)
{
    constexpr auto kLargestRecording = static_cast<std::uint64_t>(core::kLargestWaveFile);
    const auto bytes = files::ReadBytes(path, kLargestRecording + 1);
    if (core::IsRecordingOfOurs(bytes)) return Event::AlreadyPrepared;
    auto parsed = preview::ParseSoundFile(bytes);
    if (auto* const saved = std::get_if<preview::SoundFile>(&parsed)) return std::move(*saved);
    auto ending = path.extension().string();
    std::ranges::transform(ending, ending.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c; });
    if (ending == ".bin") return std::get<preview::Refusal>(parsed);
    return std::monostate();
}

double MostSecondsFor(const Settings& settings)
{
    return prepare::MostSeconds(PlaybackOf(settings));
}

std::variant<Made, sound::Refusal, prepare::Refusal, Event> Make(const Request& request, const core::Progress& progress)
{
    constexpr double kReading = 0.1; // of the time
    const auto& settings = request.settings;
    sound::Part part{.from = request.part.from, .length = {}};
    if (!request.toEnd) part.length = std::round(request.part.Length() * 1000) / 1000;
    auto read = sound::ReadSound(request.path, part, MostSecondsFor(settings), progress.Stage(0, kReading));
    if (files::StateOf(request.path) != request.state) return Event::FileChanged;
    if (const auto* const refusal = std::get_if<sound::Refusal>(&read)) return *refusal;
    const auto playback = PlaybackOf(settings);
    prepare::Job job{
        .recording = std::move(std::get<sound::Recording>(read)),
        .kind = settings.kind,
        .limits = {.playback = playback,
                   .runBytes = static_cast<std::size_t>(RoomOf(settings.target) - SizeOf(0, settings.target))}};
    auto made = prepare::Prepare(job, progress.Stage(kReading, 1));
    if (const auto* const refusal = std::get_if<prepare::Refusal>(&made)) return *refusal;
    auto& prepared = std::get<prepare::Prepared>(made);
    auto result = std::make_shared<Result>();
    result->part = request.part;
    result->settings = settings;
    result->source = {.from = request.part.from, .samples = Sixteen(sound::AtRate(job.recording.samples, kListenRate))};
    result->machine = {.from = prepared.from,
                       .samples = PlayedBy(prepared.runBytes, playback, kListenRate, progress.Stage(1, 1))};
    result->prepared = std::move(prepared);
    return Made{.result = std::move(result),
                .samples = std::make_shared<const sound::Samples>(std::move(job.recording.samples))};
}

std::shared_ptr<const Result> ResultOf(const preview::SoundFile& saved, const core::Progress& progress)
{
    auto result = std::make_shared<Result>();
    const machine::Playback playback{.rate = saved.sampleRate, .machine = {}};
    const auto seconds = machine::SecondsOf(saved.runBytes, playback);
    result->part = {.from = 0, .to = seconds};
    result->settings.rate = saved.sampleRate;
    if (!saved.loadAddress)
        result->settings.target = Target::PokEmul;
    else if (!machine::NeedsExtension(*saved.loadAddress))
        result->settings.target = Target::WithoutModule;
    result->prepared = {.kind = prepare::Kind::AnySound, .runBytes = saved.runBytes, .seconds = seconds, .from = 0};
    result->machine = {.from = 0, .samples = PlayedBy(saved.runBytes, playback, kListenRate, progress)};
    return result;
}

std::shared_ptr<const Pictures> Draw(const Result& result, const sound::Samples& samples,
                                     const core::Progress& progress)
{
    auto pictures = std::make_shared<Pictures>();
    const auto played = PlayedBy(result.prepared.runBytes, PlaybackOf(result.settings), sound::kRate, progress);
    sound::Samples machine(played.size());
    std::ranges::transform(played, machine.begin(),
                           [](std::int16_t sample) { return static_cast<float>(sample) / kFullScale; });
    pictures->source = Spectrogram(samples, result.part.from, progress);
    pictures->machine = Spectrogram(machine, result.machine.from, progress);
    if (result.prepared.kind == prepare::Kind::Melody) {
        pictures->pitch = prepare::PitchTrack(samples, progress);
        pictures->pitchStep = sound::SecondsAt(prepare::kPitchHop);
    }
    return pictures;
}

std::shared_ptr<const Waveform> WaveformOf(const Playable& playable, const Span& span)
{
    const auto rate = static_cast<double>(kListenRate);
    const auto sample = [&](double seconds) {
        return std::clamp<std::size_t>(static_cast<std::size_t>(std::max(0.0, (seconds - playable.from) * rate)), 0,
                                       playable.samples.size());
    };
    const auto first = sample(span.from);
    const auto behind = std::max(sample(span.to), first);
    auto waveform = std::make_shared<Waveform>(kListenRate, playable.from + static_cast<double>(first) / rate);
    sound::Samples samples;
    samples.reserve(behind - first);
    for (auto k = first; k < behind; ++k)
        samples.push_back(static_cast<float>(playable.samples[k]) / kFullScale);
    waveform->Take(samples);
    return waveform;
}

std::int64_t SizeOf(std::size_t runBytes, Target target)
{
    const auto player = target == Target::PokEmul ? 0 : core::kTokensPC1600;
    return player + static_cast<std::int64_t>(runBytes) + 1; // the end mark
}

bool IsLaidOutWrong(const preview::SoundFile& saved)
{
    return saved.loadAddress && *saved.loadAddress != saved.playerAddress;
}

std::string AddressTextOf(const preview::SoundFile& saved)
{
    return saved.loadAddress ? core::AddressText(*saved.loadAddress) : "";
}

std::string RecordingBytesOf(const Result& result)
{
    return core::RecordingBytes(result.prepared.runBytes, result.settings.rate);
}

std::string SoundFileBytesOf(const Result& result, std::u32string_view name)
{
    return SoundFileBytesOf({.loadAddress = AddressOf(result.settings.target),
                             .sampleRate = result.settings.rate,
                             .title = core::TitleOf(name),
                             .runBytes = result.prepared.runBytes});
}

// What was prepared for the room, or was saved there, fits.
std::string SoundFileBytesOf(const preview::SoundFile& sound)
{
    return std::get<std::string>(core::LaidOutFile(sound));
}

} // namespace studio
