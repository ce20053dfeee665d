// The program as a shell starts it: what it says, with which status, and what it leaves in the folder.
#include "core/PeriodEncoder.h"
#include "core/WaveAcceptance.h"
#include "support/KnownFile.h"
#include "support/SoundFiles.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <tuple>

namespace {

class PrepareProgram : public testing::Test {
protected:
    PrepareProgram()
    {
        std::filesystem::create_directories(folder / "files");
        WriteTone(folder / "files/tone.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, {.seconds = 2});
        WriteTone(folder / "files/still.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, {.channels = 1, .seconds = 0});
        Shell(
            "echo old >old.wav; ln tone.wav hard.wav; ln -s gone.wav dangling.wav; mkfifo pipe; mkdir folder; >empty");
    }
    ~PrepareProgram() override { std::filesystem::remove_all(folder); }

    /// The status of a command in which P is the program. `out` and `err` then hold what it said.
    int Shell(const std::string& command)
    {
        const auto prepare = "P() { timeout 60 '" PREPARE_PROGRAM "' \"$@\"; }; run() { " + command + "\n}; run";
        const int status =
            std::system(("cd " + folder.string() + "/files && (" + prepare + ") >../out 2>../err").c_str());
        out = Read(folder / "out");
        err = Read(folder / "err");
        return WEXITSTATUS(status);
    }
    std::string State() { return Shell("ls -A; cksum *.wav"), out; }

    /// What the answer says behind `name`.
    std::string Told(const std::string& name) const
    {
        const auto from = out.find(name + ": ") + name.size() + 2;
        return out.substr(from, out.find('\n', from) - from);
    }

    const std::filesystem::path folder = NewFolder();
    std::string out;
    std::string err;
};

TEST_F(PrepareProgram, RefusesWithAMessageAndLeavesAllAsItWas)
{
    const auto before = State();
    for (const auto& [status, command, message] : std::vector<std::tuple<int, std::string, std::string>>{
             {1, "P none.mp3", "none.mp3: No such file or directory"},
             {1, "P folder", "folder: This is no ordinary file."},
             {1, "P pipe", "pipe: This is no ordinary file."},
             {1, "P empty", "empty: The file is empty."},
             {1, "P still.wav", "still.wav: There is no sound in it."},
             {1, "P '[tone,wav]' ++", "++: No such file or directory"}, // no list and no end of one
             {1, "P tone.wav --for sound --size 150", "It is too long for 150 bytes. About 0:0"},
             // What may not be written.
             {1, "P tone.wav -o old.wav", "old.wav: This file exists."},
             {1, "P tone.wav -o dangling.wav", "dangling.wav: "},
             {1, "P tone.wav -o hard.wav --force", "hard.wav: "},
             {1, "P tone.wav -o pipe --force", "pipe: This is no ordinary file."},
             {1, "P tone.wav --for sound -o none/new.wav", "none/new.wav: No such file or directory"},
             {1, "ulimit -f 4; P tone.wav --for sound -o old.wav --force", "old.wav: File too large"},
             // Wrong usage.
             {2, "P", "FILE is required"},
             {2, "P tone.wav --loud", "not expected: --loud"},
             {2, "P tone.wav hard.wav -o new.wav", "--output: it can hold one recording"},
             {2, "P tone.wav -o ''", "--output: the name is empty"},
             {2, "P tone.wav --for noise", "--for: noise is none of speech, music and sound"},
             {2, "P tone.wav --size 28475", "--size: 28475 is no whole number from 133 to 28474"},
             {2, "P tone.wav --from 1:60", "--from: 1:60 is no time"},
             {2, "P tone.wav --from -1", "--from: -1 is no time"},
             {2, "P tone.wav --from nan", "--from: nan is no time"},
             {2, "P tone.wav --length 0", "--length: nothing is left"},
             {2, "P tone.wav --rate 9600", "--rate: 9600 is none of the rates"},
             {2, "P tone.wav --clock 3.58", "--clock: 3.58 is no whole number from 1000000 to 20000000"},
             {2, "P tone.wav --waits 2", "--waits: 2 is no whole number from 0 to 1"},
         }) {
        EXPECT_EQ(Shell(command), status) << command;
        EXPECT_NE(err.find(message), std::string::npos) << command << " says " << err;
        EXPECT_EQ(out, "") << command;
        EXPECT_EQ(State(), before) << command;
    }
}

TEST_F(PrepareProgram, TellsTheSizeThatTheWindowGetsFromItsRecording)
{
    for (const auto& [options, hertz] : std::vector<std::pair<std::string, std::uint32_t>>{
             {"", 11025}, {"--size 1500", 11025}, {"--rate 8000", 8000}, {"--rate 6000 --clock 2000000", 6000}}) {
        ASSERT_EQ(Shell("P tone.wav --force --for music " + options), 0) << err;
        const auto wave = Read(folder / "files/tone-ready.wav");
        const auto fields = core::ReadWaveFields(wave);
        EXPECT_FALSE(core::RefusalOf(fields)) << options;
        EXPECT_EQ(fields.sampleRate, hertz) << options;
        core::BackgroundTask yield([] {});
        const auto runBytes = core::EncodePeriods(core::SampleBytes(wave), yield).runBytes.size() + 1;
        EXPECT_EQ(Told("run bytes"), std::to_string(runBytes)) << options;
        EXPECT_EQ(Told("size"),
                  std::to_string(runBytes + 131) + " for the PC-1600, " + std::to_string(runBytes) + " for PokEmul")
            << options;
        EXPECT_NEAR(std::stod(Told("seconds")), 2, 0.05) << options;
    }
}

TEST_F(PrepareProgram, PreparesSeveralFilesAndWaitsForReturn)
{
    Shell("mkdir there; ln tone.wav there/lang-längerer-name-als-der-platz.flac");
    EXPECT_EQ(Shell("printf '\\n' | P --for sound there/* none tone.wav --from 0:00.5 --length 1 --wait"), 1);
    EXPECT_EQ(err, "tonfloss-prepare: none: No such file or directory\n"); // and it goes on
    EXPECT_EQ(Told("read"), "lang-längerer-name-als-der-platz.flac, 0:02.0, 48000 Hz, 1 channel");
    EXPECT_EQ(Told("taken"), "0:01.0 from 0:00.5");
    EXPECT_EQ(Told("made"), "there/lang-längerer-name-als-der-platz-ready.wav, 11025 Hz");
    EXPECT_EQ(Told("title on the machine"), "lang-längerer-name-als-de");
    EXPECT_NE(out.find("made: tone-ready.wav, "), std::string::npos);
    EXPECT_EQ(out.substr(out.size() - 35), "Press Return to close this window.\n");

    EXPECT_EQ(Shell("P --help | head -n 2 | tail -n 1; P --version"), 0);
    EXPECT_EQ(out, "Usage: tonfloss-prepare [OPTIONS] FILE...\ntonfloss-prepare 1.0.0\n");
}

} // namespace
