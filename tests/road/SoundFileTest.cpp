// From any sound to the saved file: tonfloss-prepare by itself, and the recording that it makes, dropped on the window.
#include "machine/Timing.h"
#include "prepare/Prepare.h"
#include "support/SoundFiles.h"
#include "support/WindowTest.h"

namespace {

class BothRoads : public WindowTest, public testing::WithParamInterface<prepare::Kind> {
protected:
    BothRoads() { dialogs.answer = folder / "SOUND"; }

    /// What `arguments` make the program answer; empty where it fails.
    std::string Prepare(const std::string& arguments) const
    {
        const auto command = "cd '" + folder.string() + "' && '" PREPARE_PROGRAM "' --force " + arguments + " >answer";
        return std::system(command.c_str()) == 0 ? Read(folder / "answer") : "";
    }
};
INSTANTIATE_TEST_SUITE_P(Kinds, BothRoads, testing::ValuesIn(prepare::kKinds),
                         [](const auto& kind) { return std::string(NameOf(kind.param)); });

TEST_P(BothRoads, LeadToTheSameFile)
{
    WriteTone(folder / "short.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_U8, {.rate = 8000, .seconds = 0.1});
    WriteTone(folder / "two.wav", SF_FORMAT_WAV | SF_FORMAT_FLOAT, {.seconds = 1.3, .overtone = 0.2});
    WriteTone(folder / "joint.mp3", kMp3, {.rate = 44100, .channels = 2, .seconds = 0.5});
    WriteTone(folder / "low.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, {.rate = 6000, .seconds = 0.7});
    WriteTone(folder / "loud.aiff", SF_FORMAT_AIFF | SF_FORMAT_PCM_16, {.seconds = 0.6, .overtone = 8});
    for (const auto* const sound : {"short.wav", "two.wav --size 1K", "joint.mp3 --size 28474", "low.flac --size 12090",
                                    "loud.aiff --size 900 --noise keep"})
        for (const auto& rate : machine::kSampleRates) {
            const auto arguments = std::string(sound) + " --for " + std::string(NameOf(GetParam())) + " --rate " +
                                   std::to_string(rate.hertz);
            SCOPED_TRACE(arguments);
            ASSERT_NE(Prepare(arguments + " -o A.wav"), "");
            for (const std::string target : {"pc1600", "pokemul"}) {
                target == "pc1600" ? window.OptionAudioSharp_Action() : window.OptionAudioPokEmul_Action();
                dialogs.shown.clear();
                Drop({platform::FolderItemAt(folder / "A.wav")});
                Enter(U"80C5");
                ASSERT_THAT(dialogs.shown, ElementsAre(testing::_, kSaved));
                const auto answer = Prepare(arguments + " -o A.bin --title A.wav --target " + target);
                const auto file = Read(folder / "A.bin");
                EXPECT_EQ(file, Read(folder / "SOUND"));

                const auto told = [&](const std::string& name) {
                    const auto from = answer.find('\n' + name + ": ") + name.size() + 3;
                    return answer.substr(from, answer.find('\n', from) - from);
                };
                EXPECT_EQ(dialogs.shown.front(), "PC1600 Soundfilegrösse = " + told("size") + " KB.");
                EXPECT_EQ(told("title on the machine"), "A.wav");
                const machine::RunBytes runBytes(file.begin() + (target == "pc1600" ? 131 : 115), file.end() - 3);
                EXPECT_NEAR(std::stod(told("seconds")), machine::SecondsOf(runBytes, {rate, {}}), 0.0006);
            }
        }
}

} // namespace
