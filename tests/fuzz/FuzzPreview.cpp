// Any bytes, and any bytes behind a good player: refused with a reason, or reported on and played to the end.
// Input: a byte of switches, then the file; or the run bytes and the end, for a player of ours in front.
#include "preview/Report.h"
#include "preview/SquareWave.h"
#include "support/KnownFile.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    const bool whole = (data[0] & 1) != 0;
    const machine::Machine machine{.clock = (data[0] & 2) != 0 ? 20'000'000 : 1'000'000, .waits = (data[0] & 4) / 4};
    const auto file = (whole ? "" : kPlayer) + std::string(data + 1, data + size);
    const auto parsed = preview::ParseSoundFile(file);
    const auto* const sound = std::get_if<preview::SoundFile>(&parsed);
    if (sound == nullptr) return std::get<preview::Refusal>(parsed).reason.size() > 20 ? 0 : (std::abort(), 1);

    const auto performance = machine::PerformanceOf(sound->runBytes, {sound->sampleRate, machine});
    std::size_t bytes = 0;
    preview::WriteWave(performance, machine.clock, 8000, [&](auto piece) { bytes += piece.size(); });
    const auto samples = static_cast<double>(performance.end) * 8000 / static_cast<double>(machine.clock);
    const auto missing = static_cast<double>(bytes) - 44 - 2 * samples;
    if (file.find(std::string(sound->runBytes.begin(), sound->runBytes.end()) + Bytes("ff 00 00")) ==
            std::string::npos ||
        missing < -2 || missing > 2 ||
        preview::ReportOn(*sound, machine).find("\nlongest period: ") == std::string::npos)
        std::abort();
    return 0;
}
