// A Z80 runs the same sound wherever its player is laid out for.
#include "relocate/Relocate.h"
#include "support/RunBytesOf.h"
#include "support/Z80Machine.h"

#include <gtest/gtest.h>

namespace {

/// Without file header, and without the two zeros, which nobody asks for.
std::string ImageOf(const std::string& file)
{
    return file.substr(16, file.size() - 18);
}

TEST(PlayerAddress, ChangesNoWriteToThePort)
{
    const auto runBytes = RunBytesOf("02 05 80 fd fe 00 fe 01 fe fe 01 fe fe 02 00 01 fe fd 07 fe"); // a file of 152
    for (const auto& rate : machine::kSampleRates) {
        const core::SoundFile sound{0x80C5, rate, U"tone.wav", runBytes};
        const auto asEver = core::SoundFileImage(sound);
        const auto expected = RunAt(0x80C5, ImageOf(asEver), 1);
        ASSERT_EQ(expected.levels.size(), 40U);
        EXPECT_EQ(std::get<std::string>(core::LaidOutFile(sound)), asEver);
        for (const auto address : std::vector<Z80EX_WORD>{
                 0x80C5, 0xC0C5, 0x80C6,
                 0x80F0, // the end and the delay routine: their low bytes carry
                 0x9FB5, // the rate byte, the title, the run bytes: others don't carry
                 0xEF67, // the highest that 152 bytes allow
             }) {
            SCOPED_TRACE(testing::Message() << rate.hertz << " at " << std::hex << address);
            auto saved = sound;
            saved.loadAddress = address; // as by the window, which leaves the player at 80C5
            const auto left = RunAt(address, ImageOf(core::SoundFileImage(saved)), 1);
            EXPECT_EQ(!left.stray && left.levels == expected.levels, address == 0x80C5);

            const auto relocated = relocate::Relocate(core::SoundFileImage(saved), {});
            const auto run = RunAt(address, ImageOf(std::get<relocate::Relocated>(relocated).bytes), 1);
            EXPECT_EQ(run.stray, std::nullopt);
            EXPECT_EQ(run.levels, expected.levels);
        }
    }
}

} // namespace
