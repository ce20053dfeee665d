#include "preview/Report.h"

#include "core/LoadAddress.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <sstream>

namespace preview {
namespace {

/// Of characters up to FF, as UTF-8.
std::string ReadableTitle(std::u32string_view title)
{
    std::string utf8;
    for (const auto code : title) {
        const bool isControl = code < 0x20 || (code >= 0x7F && code < 0xA0);
        if (code < 0x80 || isControl)
            utf8 += isControl ? '?' : static_cast<char>(code);
        else
            utf8.append({static_cast<char>(0xC0 | code >> 6), static_cast<char>(0x80 | (code & 0x3F))});
    }
    return utf8;
}

std::string PitchText(double pitch)
{
    std::ostringstream text;
    text << std::fixed << std::showpos << std::setprecision(2) << (pitch - 1) * 100 << " %, " << std::setprecision(0)
         << 1200 * std::log2(pitch) << " cents";
    return text.str();
}

} // namespace

std::vector<std::string> WarningsOf(const SoundFile& sound)
{
    std::vector<std::string> warnings;
    const auto runsAt = core::AddressText(sound.playerAddress);
    if (sound.loadAddress && *sound.loadAddress != sound.playerAddress)
        warnings.push_back("the player is laid out for " + runsAt + "; at " + core::AddressText(*sound.loadAddress) +
                           " it calls and reads what happens to stand around " + runsAt +
                           "; tonfloss-relocate lays it out for its address");
    if (sound.runBytes.empty()) warnings.emplace_back("there is no period in it; the machine plays nothing");
    return warnings;
}

std::string ReportOn(const SoundFile& sound, const machine::Machine& onMachine)
{
    const machine::Playback playback{.rate = sound.sampleRate, .machine = onMachine};
    const auto periods = machine::PeriodsOf(sound.runBytes, playback);
    const auto pitchOf = [&](const machine::Period& period) { return machine::PitchOf(period, playback); };
    machine::Period whole{};
    for (const auto& period : periods) {
        whole.samples += period.samples;
        whole.cycles += period.cycles;
    }

    std::ostringstream text;
    text << "target: " << (sound.loadAddress ? "PC-1600" : "PokEmul") << "\ntitle: " << ReadableTitle(sound.title);
    if (sound.loadAddress) text << "\nload address: " << core::AddressText(*sound.loadAddress);
    text << "\nsample rate: " << sound.sampleRate.hertz << " Hz\nperiods: " << periods.size()
         << "\nseconds: " << std::fixed << std::setprecision(3) << machine::SecondsOf(whole.cycles, onMachine);
    if (periods.empty()) {
        text << "\npitch: none\nshortest period: none\nlongest period: none\n";
    } else {
        const auto [shortest, longest] = std::minmax_element(
            periods.begin(), periods.end(), [](const auto& a, const auto& b) { return a.samples < b.samples; });
        text << "\npitch: " << PitchText(pitchOf(whole));
        text << "\nshortest period: " << shortest->samples << " samples, " << PitchText(pitchOf(*shortest));
        text << "\nlongest period: " << longest->samples << " samples, " << PitchText(pitchOf(*longest)) << '\n';
    }
    for (const auto& warning : WarningsOf(sound))
        text << "warning: " << warning << '\n';
    return text.str();
}

} // namespace preview
