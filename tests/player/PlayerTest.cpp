// The saved files, run by a Z80. What leaves the port, and when, is told by the preview's tests.
#include "WindowTest.h"
#include "Z80Machine.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::Field;

TEST_F(WindowTest, SavedFileShowsItsTitlePlaysAndLeavesTheMachineAsItWas)
{
    dialogs.answer = folder / "SOUND";
    for (const bool pokEmul : {false, true}) {
        if (pokEmul) window.OptionAudioPokEmul_Action();
        for (const auto& samples : {ToneOf160(), std::string()}) {
            Drop("tone.wav", WaveBytes().samples(samples));
            Enter(U"80C5");
            const auto heard = Play(Read(folder / "SOUND").substr(pokEmul ? 0 : 16));
            EXPECT_EQ(heard.levels.size(), samples.empty() ? 0U : 40U);
            EXPECT_THAT(heard.levels, Each(Field(&Level::interrupts, false)));
            EXPECT_TRUE(heard.interruptsAfterwards);
            EXPECT_FALSE(heard.otherPorts);
            EXPECT_THAT(heard.calls, ElementsAre("0112", "0109", "00EB 13 tone.wav" + std::string(17, '\0') + "\x0D"));
        }
    }
}

} // namespace
