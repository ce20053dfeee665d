// Any sound makes a list of run bytes that the encoder gives back, and any arguments options within their bounds.
// Input: a byte of switches, then samples of 16 bits, or of 32 bits with a fraction, or arguments that end with zeros.
#include "core/PeriodEncoder.h"
#include "core/RecordingBytes.h"
#include "prepare/Prepare.h"
#include "prepare/command/Options.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

using namespace prepare;

void TryArguments(const std::string& bytes)
{
    std::vector<std::string> arguments;
    for (std::size_t from = 0; from < bytes.size(); from += arguments.back().size() + 1)
        arguments.emplace_back(bytes.c_str() + from);
    const auto parsed = ParseOptions(arguments);
    if (const auto* const ending = std::get_if<command::Ending>(&parsed)) {
        if (ending->text.size() < 10 || (ending->status != 0 && ending->status != 2)) std::abort();
        return;
    }
    const auto& options = std::get<Options>(parsed);
    const bool isWithin = options.size >= 133 && options.size <= 28474 && options.part.from >= 0 &&
                          options.part.length.value_or(1) > 0 && options.playback.machine.clock >= 1'000'000;
    if (!isWithin || options.inputs.empty()) std::abort();
    if (!options.soundFile) return;
    const auto address = options.soundFile->loadAddress.value_or(0x80C5);
    const auto title = options.soundFile->title.value_or(U"");
    const bool isLatin1 = std::ranges::all_of(title, [](char32_t character) { return character < 0x100; });
    if (address < 0x80C5 || address + options.size > 0xEFFF || title.size() > 25 || !isLatin1) std::abort();
}

void TrySound(int switches, const std::string& bytes)
{
    sound::Samples samples;
    if ((switches & 64) != 0) {
        std::vector<std::int16_t> whole(bytes.size() / 2);
        std::memcpy(whole.data(), bytes.data(), whole.size() * 2);
        for (const auto sample : whole)
            samples.push_back(static_cast<float>(sample) / 32768);
    } else {
        samples.resize(bytes.size() / 4);
        std::memcpy(samples.data(), bytes.data(), samples.size() * 4);
        for (auto& sample : samples) // as they are read of a file
            sample = std::isfinite(sample) ? std::clamp(sample, -32768.0F, 32768.0F) : 0;
    }
    sound::Samples sound;
    for (const auto sample : samples)
        sound.insert(sound.end(), (switches & 128) != 0 ? 40 : 1, sample);
    const auto choice = static_cast<std::size_t>(switches) % 32;
    const auto kind = kKinds.at(choice / 2 % kKinds.size());
    const auto& rate = machine::kSampleRates.at(choice / 2 / kKinds.size() % machine::kSampleRates.size());
    const machine::Playback playback{rate, {.clock = 3'580'000, .waits = switches & 1}};
    const Job job{.recording = {.rate = 1, .channels = 1, .seconds = {}, .from = 0, .samples = std::move(sound)},
                  .kind = kind,
                  .limits = {.playback = playback, .runBytes = 2000}};
    const auto made = Prepare(job, core::Progress([](double /*done*/) { return true; }));
    if (const auto* const refusal = std::get_if<Refusal>(&made)) {
        if (refusal->kind != Refusal::Kind::Inaudible && refusal->kind != Refusal::Kind::TooManyBytes) std::abort();
        return;
    }
    const auto& runBytes = std::get<Prepared>(made).runBytes;

    core::BackgroundTask yield([] {});
    const auto recording = core::RecordingBytes(runBytes, playback.rate);
    const auto encoded = core::EncodePeriods(std::string_view(recording).substr(44), yield);
    if (encoded.runBytes != runBytes) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    const std::string rest(data + 1, data + size);
    (data[0] & 32) != 0 ? TryArguments(rest) : TrySound(data[0], rest);
    return 0;
}
