#include "support/Program.h"
#include "core/PeriodEncoder.h"
#include "core/RecordingBytes.h"
#include "core/WaveAcceptance.h"
#include "machine/Timing.h"
#include "support/SoundFiles.h"

#include <tuple>

namespace {

class PrepareProgram : public Program {
protected:
    PrepareProgram() : Program(PREPARE_PROGRAM)
    {
        constexpr int kWave = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
        WriteTone(folder / "files/tone.wav", kWave, {.seconds = 2, .overtone = 0.2});
        WriteTone(folder / "files/high.wav", kWave, {.seconds = 5, .overtone = 8});
        WriteTone(folder / "files/odd.wav", kWave, {.channels = 3, .seconds = 2, .overtone = 0.2, .on = 2});
        WriteTone(folder / "files/ten.mp3", kMp3, {.seconds = 10});
        WriteTone(folder / "files/still.wav", kWave, {.seconds = 0});
        // In the odd one a sample is no number. An hour and 65 seconds of silence, 1000 bytes each.
        std::ofstream(folder / "files/ready.wav", std::ios::binary)
            << core::RecordingBytes(machine::RunBytes(20, 9), machine::kSampleRates.front());
        Shell(R"(printf '\377\377\377\377' | dd of=odd.wav bs=4 seek=9999 conv=notrunc
            printf '.snd\0\0\0\30\377\377\377\377\0\0\0\2\0\0\3\350\0\0\0\1' >hour.au; truncate -s 3665024 hour.au
            echo old | tee old.bin >old.wav; ln tone.wav hard.wav; ln old.wav high-ready.wav
            ln -s gone.wav dangling.wav; ln tone.wav tone.mp3; mkfifo pipe; mkdir folder; >empty)");
    }

    /// What the answer says behind `name`.
    std::string Told(const std::string& name) const
    {
        const auto from = out.find(name + ": ") + name.size() + 2;
        return out.substr(from, out.find('\n', from) - from);
    }
};

TEST_F(PrepareProgram, RefusesWithAMessageAndLeavesAllAsItWas)
{
    ExpectRefusals({
        {1, "P none.mp3", "none.mp3: No such file or directory"},
        {1, "P folder", "folder: This is a folder."},
        {1, "P 'x\x1B[2Jy\xE4'", "tonfloss-prepare: x?[2Jy\uFFFD: No such"}, // what a terminal would obey
        {1, "P pipe", "pipe: This is no ordinary file."},
        {1, "P empty", "empty: The file is empty."},
        {1, "P still.wav", "still.wav: There is no sound in it."},
        {1, "P '[tone,wav]' ++", "++: No such file or directory"}, // no list and no end of one
        {1, "P tone.wav --for sound --size 133", "for 133 bytes. Not a tenth of a second of it would fit."},
        {1, "P tone.wav --from 0.1 --size 296",
         "Its first 0:00.8 would fit: take a part, for example with --from 0:00.1 --length 0:00.8."},
        // Minutes and hours, and how long a recording the window takes: each time is told, too.
        {1, "P hour.au --from 1:05",
         "hour.au: It lasts 60:00.0, and at this rate the window takes 0:48.0 at most, with --rate 8000 1:03.0, with "
         "--rate 6000 1:23.0. Take a part of it, for example with --from 1:05.0 --length 0:48.0."},
        {1, "P hour.au --from 1:00:05.03", "It lasts 1:00.0, and"},
        {1, "P hour.au --length 48", "There is nothing to be heard in it."},
        {1, "P hour.au --length 48.1", "It lasts 0:48.1, and"},
        {1, "P hour.au --length 1:05 --rate 8000",
         "It lasts 1:05.0, and at this rate the window takes 1:03.0 at most, with --rate 6000 1:23.0. Take"},
        {1, "P hour.au --length 90 --rate 6000", "It lasts 1:30.0, and at this rate the window takes 1:23.0 at most."},
        {1, "P ten.mp3 --clock 20000000", "It lasts longer than 0:08.0, and"}, // which only decoding shows
        // What may not be written.
        {1, "P tone.wav -o old.wav", "old.wav: This file exists."},
        {1, "P tone.wav -o dangling.wav", "dangling.wav: "},
        {1, "P tone.wav -o hard.wav --force", "hard.wav: "},
        {1, "P tone.wav -o pipe --force", "pipe: This is no ordinary file."},
        {1, "P tone.wav -o folder", "folder: This is a folder."},
        {1, "P hour.au --length 40 -o none/new.wav", "none/new.wav: No such file or directory"}, // before the work
        {1, "P tone.wav --for music >/dev/full", "standard output: No space left on device"},
        {1, "ulimit -f 4; P tone.wav --for sound -o old.wav --force", "old.wav: File too large"},
        {1, "P high.wav high-ready.wav --force", "high-ready.wav: This is a sound file that is read."},
        {1, "P ready.wav", "ready.wav: This is prepared already: drop it on the window of Tonfloss."},
        // Wrong usage.
        {2, "P", "FILE is required"},
        {2, "P tone.wav ./tone.mp3 --force", "./tone.mp3: Its recording would have the same name as that of tone.wav."},
        {2, "P tone.wav -o new.bin --address 80C4", "--address: 80C4 isn't between 80C5 and EFFF"},
        {2, "P tone.wav -o new.bin --address F000", "--address: F000 isn't between 80C5 and EFFF"},
        {2, "P tone.wav -o new.bin --address xyz", "--address: xyz isn't four hexadecimal digits"},
        {2, "P tone.wav -o new.bin --address EF7B", "EF7B is too high: with the size, 133, it is above EFFF"},
        {2, "P tone.wav -o new.bin --address C0C5 --size 12091", "C0C5 is too high: with the size, 12091, it is above"},
        {2, "P tone.wav -o new.bin --address C0C5 --target pokemul", "--address: a file for PokEmul has none"},
        {2, "P tone.wav -o new.bin --target mz", "--target: mz is none of pc1600 and pokemul"},
        {2, "P tone.wav -o new.bin --title 12345678901234567890123456",
         "--title: 26 characters, and the machine shows"},
        {2, "P tone.wav -o new.bin --title \u0151", "--title: it has a character beyond Latin-1"},
        {2, "P tone.wav -o new.bin --title \xE4", "--title: it has a character beyond Latin-1"}, // no UTF-8
        {2, "P tone.wav -o new.wav --title x", "--title: it is for -o with a name that ends with .bin"},
        {2, "P tone.wav --address C0C5", "--address: it is for -o with a name that ends with .bin"},
        {2, "P tone.wav --target pc1600", "--target: it is for -o with a name that ends with .bin"},
        {1, "P tone.wav -o old.bin", "old.bin: This file exists."},
        {2, "P tone.wav --from 2 --to 0:02", "--to: nothing is left"},
        {2, "P tone.wav hard.wav -o new.wav", "--output: it can hold one recording"},
        {2, "P tone.wav --for noise", "--for: noise is none of speech, music, melody and sound"},
        {2, "P tone.wav --size 28475", "--size: 28475 is no whole number from 133 to 28474"},
        {2, "P tone.wav --from 1:60", "--from: 1:60 is no time"},
        {2, "P tone.wav --from -1", "--from: -1 is no time"},
        {2, "P tone.wav --from nan", "--from: nan is no time"},
        {2, "P tone.wav --length 0", "--length: nothing is left"},
        {2, "P tone.wav --rate 9600", "--rate: 9600 is none of the rates"},
    });
}

TEST_F(PrepareProgram, MakesWhatTheOptionsSayAndTellsTheTruthAboutIt)
{
    using Row = std::tuple<std::string, std::uint32_t, machine::Machine, double, int>;
    for (const auto& [options, hertz, machine, seconds, periods] : std::vector<Row>{
             {"tone.wav", 11025, {}, 2, 1616},             // speech: as much of each band
             {"tone.wav --for sound", 11025, {}, 2, 1564}, // as it is
             {"tone.wav --for music", 11025, {}, 2, 1318}, // the tune alone
             {"odd.wav --for sound", 11025, {}, 2, 1564},
             {"high.wav --for sound --size 28474", 11025, {}, 5, 13124},
             {"tone.wav --size 1500", 11025, {}, 2, 1330},
             {"tone.wav --for Music --from 1 --to 0:01,5 --size 20K", 11025, {}, 0.5, 440},
             {"tone.wav --for music --rate 8000", 8000, {}, 2, 1318},
             {"tone.wav --for music --rate 6000 --clock 2000000 --waits 0", 6000, {2'000'000, 0}, 2, 1318},
         }) {
        SCOPED_TRACE(options);
        ASSERT_EQ(Shell("P --force -o new.wav " + options), 0) << err;
        const auto wave = Read(folder / "files/new.wav");
        const auto fields = core::ReadWaveFields(wave);
        EXPECT_FALSE(core::RefusalOf(fields));
        EXPECT_EQ(fields.sampleRate, hertz);
        core::BackgroundTask yield([] {});
        const auto runBytes = core::EncodePeriods(core::SampleBytes(wave), yield).runBytes;
        EXPECT_NEAR(machine::SecondsOf(runBytes, {*machine::RateOfHertz(hertz), machine}), seconds, 0.05);
        EXPECT_NEAR(std::stod(Told("seconds")), seconds, 0.05);
        const auto count = static_cast<int>(runBytes.size()) + 1;
        EXPECT_NEAR(count, periods, 40);
        EXPECT_EQ(Told("run bytes"), std::to_string(count));
        EXPECT_EQ(Told("size"),
                  std::to_string(count + 131) + " for the PC-1600, " + std::to_string(count) + " for PokEmul");
    }
}

TEST_F(PrepareProgram, MakesTheSoundFileItself)
{
    // Rate, title and address stand where the machine looks for them; the window's road is held against this elsewhere.
    ASSERT_EQ(Shell("P tone.wav -o new.bin --for music --address c0c5 --rate 8000 --title '[\u00C4,b]'"), 0) << err;
    const auto file = Read(folder / "files/new.bin");
    EXPECT_EQ(file.substr(8, 2) + file.substr(11, 2) + file.substr(16, 3) + file.substr(89, 1),
              Bytes("C5 C0 C5 C0 CD 0F C1 08"));
    EXPECT_EQ(file.substr(105, 26), "[\xC4,b]" + std::string(20, '\0') + '\r');
    const auto size = file.size() - 2;
    std::ostringstream room;
    room << "NEW\"S0:\",&" << std::hex << std::uppercase << size + 0xC5;
    for (const auto& [name, told] : std::vector<std::pair<std::string, std::string>>{
             {"made", "new.bin, 8000 Hz"},
             {"target", "PC-1600"},
             {"load address", "C0C5"},
             {"title on the machine", "[\u00C4,b]"},
             {"size", std::to_string(size)},
             {"32 KB extension", "not needed"},
             {"room", room.str()},
             {"load", "SETCOM\"COM1:\",9600,8,N,1,N,N"},
             {"call", "CALL &C0C5"},
         })
        EXPECT_EQ(Told(name), told);

    // The title is the source's name by the window's rules; the extension is asked for by size and by address.
    Shell(R"sh(ln tone.wav "$(printf 'u\314\210\305\221-a-name-longer-than-its-place.wav')")sh");
    EXPECT_EQ(Shell("P u*.wav -o NEW.BIN --for music"), 0) << err;
    EXPECT_EQ(Told("title on the machine"), "\u00FC?-a-name-longer-than-its");
    EXPECT_EQ(Told("32 KB extension"), "needed for the address 80C5, not for the size");
    EXPECT_EQ(Shell("P high.wav -o long.bin --for sound"), 0) << err;
    EXPECT_EQ(Told("32 KB extension"), "needed for the size");
    EXPECT_EQ(Shell("P high.wav -o less.bin --for sound --address C0C5; wc -c <less.bin >&2"), 0);
    EXPECT_LE(std::stoi(err), 12092); // two behind the end mark aren't counted
    EXPECT_GT(std::stoi(err), 11000);
    EXPECT_EQ(Shell("P high.wav -o long.bin --force --for sound --address C0C4 --length 4 --title ''"), 0) << err;
    EXPECT_EQ(Read(folder / "files/long.bin").substr(105, 26), std::string(25, '\0') + '\r');
    EXPECT_EQ(Shell("P tone.wav -o pokemul.bin --target PokEmul --for music --title=++"), 0) << err;
    EXPECT_EQ(Read(folder / "files/pokemul.bin").substr(0, 3), Bytes("CD 0F 81"));
    EXPECT_EQ(Told("target") + Told("title on the machine") + Told("next"), "PokEmul++load it into PokEmul at 80C5");
}

TEST_F(PrepareProgram, ShowsABarOnTheTerminal)
{
    WriteTone(folder / "files/tone.au", SF_FORMAT_AU | SF_FORMAT_FLOAT, {}); // comes late enough for the bar
    Shell(R"(mkdir bin; printf '#!/bin/sh\nsleep 1.1; cat tone.au' >bin/ffmpeg; chmod +x bin/ffmpeg; echo no >strange
        PATH=$PWD/bin:$PATH script -qec "')" PREPARE_PROGRAM R"(' strange" /dev/null </dev/null | tr '\r' '|')");
    EXPECT_THAT(out, testing::MatchesRegex("(\\|\\[#*[.]*\\] (100|[1-9]?[0-9]) %)+\\| {75}\\|read: strange,.*"));
}

TEST_F(PrepareProgram, LeavesNoProgramBehind)
{
    Shell(
        R"(mkdir bin; echo no >new
        printf '#!/bin/sh\necho $$ >id; exec sleep 40\n' >bin/ffmpeg; chmod +x bin/ffmpeg)");
    for (const auto* const signal : {"TERM", "KILL"}) {
        Shell("PATH=$PWD/bin:$PATH " PREPARE_PROGRAM " new & until [ -s id ]; do sleep 0.05; done; kill -" +
              std::string(signal) + " $!; sleep 0.2; ps -o stat= -p $(cat id); rm id");
        EXPECT_EQ(out.find('S'), std::string::npos) << signal;
    }
}

TEST_F(PrepareProgram, PreparesSeveralFilesAndWaitsForReturn)
{
    Shell("mkdir there; ln tone.wav there/lang-längerer-name-als-der-platz.flac");
    EXPECT_EQ(Shell("printf '\\n' | P --for sound there/* tone.wav tone-ready.wav --from 0:00.5 --length 1 --wait"), 1);
    EXPECT_EQ(err, "tonfloss-prepare: tone-ready.wav: No such file or directory\n"); // and not one that it made
    EXPECT_EQ(Told("read"), "lang-längerer-name-als-der-platz.flac, 0:02.0, 48000 Hz, 1 channel");
    EXPECT_EQ(Told("taken"), "0:01.0 from 0:00.5");
    EXPECT_EQ(Told("made"), "there/lang-längerer-name-als-der-platz-ready.wav, 11025 Hz");
    EXPECT_EQ(Told("title on the machine"), "lang-längerer-name-als-de");
    EXPECT_NE(out.find("made: tone-ready.wav, "), std::string::npos);
    EXPECT_EQ(out.substr(out.size() - 35), "Press Return to close this window.\n");

    // No UTF-8, a decomposed umlaut, and a letter beyond Latin-1; the recording goes where it is told to.
    Shell(R"sh(ln tone.wav "$(printf 'x\344\303\244u\314\210\305\221.wav')")sh");
    EXPECT_EQ(Shell("P --for music x*.wav"), 0) << err;
    EXPECT_EQ(Told("title on the machine"), "x?\u00E4\u00FC?-ready.wav");
    EXPECT_EQ(Shell("P --for music tone.wav -o - | cmp - x*-ready.wav && ls -- -"), 2); // no file of that name
    EXPECT_EQ(err.substr(0, 6), "read: ");

    EXPECT_EQ(Shell("P --help | head -n 2 | tail -n 1; P --version"), 0);
    EXPECT_EQ(out, "Usage: tonfloss-prepare [OPTIONS] FILE...\ntonfloss-prepare 1.0.0\n");
}

} // namespace
