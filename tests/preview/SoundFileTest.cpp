// What is taken for a sound file, and what the report tells about it.
#include "preview/Report.h"
#include "support/KnownFile.h"
#include "support/WaveBytes.h"

#include <gmock/gmock.h>

#include <tuple>
#include <utility>
#include <vector>

namespace {

using namespace preview;

std::string With(std::string file, std::size_t offset, const std::string& bytes)
{
    return file.replace(offset, bytes.size(), bytes);
}

/// Empty where `file` is taken.
std::string RefusalOf(const std::string& file)
{
    const auto parsed = ParseSoundFile(file);
    const auto* const refusal = std::get_if<Refusal>(&parsed);
    return refusal == nullptr ? "" : refusal->reason;
}

const std::string kPC1600 = kFileHeader + kPlayer + kRunBytes; // 154 bytes, the end mark is byte 151
/// kPC1600 for another address, low byte first.
std::string At(const std::string& address)
{
    return With(With(kPC1600, 8, address), 11, address);
}
const std::string kLaidOut =
    core::SoundFileImage({0xC0C5, *machine::RateOfHertz(11025), U"tone.wav", {5, 8, 8}, 0xC0C5});
const std::string kPokEmul = kPlayer + kRunBytes;

TEST(SoundFile, IsRefusedForWhatIsWrong)
{
    for (const auto& [file, reason] : std::vector<std::pair<std::string, std::string>>{
             {"", "it is empty"},
             {kPC1600.substr(0, 133), "only 133 bytes, less than a player and an end mark"},
             {kPC1600.substr(0, 134), "the end mark is missing"},
             {With(kPC1600, 13, "\1"), "the file header's bytes differ at 13"},
             {With(kPC1600, 30, "\1"), "the player's bytes differ at 30"},
             {With(kPC1600, 89, "\x0C"), "the rate byte is 12, which the player doesn't know"},
             {kPC1600 + '\0', "the end mark at 151 isn't followed by two zeros and the end"},
             {With(kPC1600, 5, "\x89"), "the file header tells a program of 137 bytes, but it has 136"},
             {With(kPC1600, 8, "\xC4"), "the load address 80C4 isn't between 80C5 and EFFF"},
             {With(kPC1600, 9, "\xF0"), "the load address F0C5 isn't between 80C5 and EFFF"},
             {With(kPC1600, 12, "\xC0"), "the start address C0C5 isn't the load address 80C5"},
             {At("\x68\xEF"), "the load address EF68 is too high: with the size, 152, it is above EFFF"},
             {With(kLaidOut, 100, "\x81"), "the player's bytes differ at 18"}, // one operand is for 80C5
             {kLaidOut.substr(16), "the player's bytes differ at 2"},          // nothing tells that address
             {At("\xFF\xEF"), "the load address EFFF is too high: with the size, 152, it is above EFFF"},
             {kPlayer + std::string(28474, '\2') + kRunBytes.substr(20), "more than 28591 bytes"},
             {"RIFF", "it begins neither with a file header nor with the player"},
             {"ID3\3", "it is a sound for tonfloss-prepare, which makes a recording of it"},
             {std::string("RIFF\0\0\0\0WAVE", 12), "it is a sound for tonfloss-prepare, which makes a recording of it"},
             {std::string(WaveBytes()).replace(8, 4, "WAVE") + std::string(500'000, '\0'),
              "it is a recording; drop it on the window of tonfloss, and name the file that you save there"},
         })
        EXPECT_EQ(RefusalOf(file), "no sound file: " + reason);
    for (const auto& taken : {At("\x67\xEF"), kPlayer + std::string(28473, '\2') + kRunBytes.substr(20)})
        EXPECT_EQ(RefusalOf(taken), "");
}

TEST(SoundFile, StaysOneOnlyWhereATitleOrARunByteChanges)
{
    for (const auto& [whole, title, runBytes] : {std::tuple(kPC1600, 105U, 131U), std::tuple(kPokEmul, 89U, 115U)})
        for (std::size_t offset = 0; offset < whole.size(); ++offset) {
            const bool inTitle = offset >= title && offset < title + 25;
            const bool inRunBytes = offset >= runBytes && offset < runBytes + 20;
            for (int other = 1; other < 256; ++other) {
                const auto byte = static_cast<char>(whole[offset] ^ other);
                const bool isRate = offset == title - 16 && (byte == 6 || byte == 8);
                const bool isTaken = isRate || inTitle || (inRunBytes && byte != '\xFF');
                EXPECT_EQ(RefusalOf(With(whole, offset, {byte})).empty(), isTaken) << offset << " made " << int{byte};
            }
            EXPECT_NE(RefusalOf(whole.substr(0, offset)), "") << "cut at " << offset;
        }
}

TEST(Report, TellsWhatTheMachineWillPlay)
{
    const auto report = [](const std::string& file, const machine::Machine& machine = {}) {
        return ReportOn(std::get<SoundFile>(ParseSoundFile(file)), machine);
    };
    // 346 cycles a sample and 114 a period: 1844 for 5 samples, 2882 for 8.
    EXPECT_EQ(report(kPC1600), "target: PC-1600\ntitle: tone.wav\nload address: 80C5\nsample rate: 11025 Hz\n"
                               "periods: 20\nseconds: 0.016\npitch: -9.93 %, -181 cents\n"
                               "shortest period: 5 samples, -11.95 %, -220 cents\n"
                               "longest period: 8 samples, -9.86 %, -180 cents\n");
    // A title with controls, umlauts and a zero amid it; a clock at which 8 samples last as long as in the recording.
    const std::u32string title(U"\x1B[\0\u00E4\x9B\x7F\u00FFv", 8);
    EXPECT_EQ(report(core::SoundFileImage({{}, *machine::RateOfHertz(8000), title, {8, 254, 0}}),
                     {.clock = 3'396'000, .waits = 0}),
              "target: PokEmul\ntitle: ?[?\xC3\xA4??\xC3\xBFv\nsample rate: 8000 Hz\n"
              "periods: 2\nseconds: 0.063\npitch: -47.96 %, -1131 cents\n"
              "shortest period: 8 samples, +0.00 %, +0 cents\nlongest period: 254 samples, -48.74 %, -1157 cents\n");
    EXPECT_EQ(report(core::SoundFileImage({{}, *machine::RateOfHertz(6000), U"", {}})),
              "target: PokEmul\ntitle: \nsample rate: 6000 Hz\nperiods: 0\nseconds: 0.000\n"
              "pitch: none\nshortest period: none\nlongest period: none\n"
              "warning: there is no period in it; the machine plays nothing\n");
    EXPECT_THAT(report(At("\xC5\xC0")),
                testing::EndsWith("cents\nwarning: the player is laid out for 80C5; at C0C5 it calls and reads what "
                                  "happens to stand around 80C5; tonfloss-relocate lays it out for its address\n"));
    EXPECT_THAT(report(kLaidOut), testing::EndsWith("longest period: 8 samples, -9.86 %, -180 cents\n"));
    EXPECT_THAT(report(With(With(kLaidOut, 9, "\xD0"), 12, "\xD0")),
                testing::HasSubstr("\nwarning: the player is laid out for C0C5; at D0C5 it calls"));
}

} // namespace
