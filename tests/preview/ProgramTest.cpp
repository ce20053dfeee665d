#include "support/Program.h"
#include "core/SoundFileImage.h"

namespace {

class PreviewProgram : public Program {
protected:
    PreviewProgram() : Program(PREVIEW_PROGRAM)
    {
        core::SoundFile sound{{}, *machine::RateOfHertz(6000), U"", {}};
        std::ofstream(folder / "files/SOUND.bin", std::ios::binary) << kSoundFile;
        std::ofstream(folder / "files/silent.bin", std::ios::binary) << core::SoundFileImage(sound);
        sound.runBytes.assign(200, machine::kStaysHigh);
        std::ofstream(folder / "files/long.bin", std::ios::binary) << core::SoundFileImage(sound);
        Shell("echo old >old.wav; ln SOUND.bin hard.bin; ln -s SOUND.bin soft.bin; "
              "ln -s old.wav link.wav; mkfifo pipe; truncate -s 5G giant");
    }
};

TEST_F(PreviewProgram, RefusesWithAMessageAndLeavesAllAsItWas)
{
    ExpectRefusals({
        // What can't be read, or is none of ours.
        {1, "P none.bin", "none.bin: No such file or directory"},
        {1, "P pipe", "pipe: This is no ordinary file."},
        {1, "P giant", "giant: no sound file: more than 28591 bytes"},
        {1, "P old.wav -o new.wav", "old.wav: no sound file: it begins neither with a file header nor"},
        // What may not be written.
        {1, "P SOUND.bin -o old.wav", "old.wav: This file exists. --force replaces it."},
        {1, "P soft.bin -o hard.bin --force", "hard.bin: This is a sound file that is read."},
        {1, "P SOUND.bin -o pipe --force", "pipe: This is no ordinary file."},
        {1, "P SOUND.bin -o none/new.wav", "none/new.wav: No such file or directory"},
        // What breaks off: a full disk, a reader that goes away.
        {1, "ulimit -f 8; P long.bin -o new.wav", "new.wav: File too large"},
        {1, "P SOUND.bin -o new.wav >/dev/full", "standard output: No space left on device"},
        {1, "P SOUND.bin -o new.wav >&-", "standard output: Bad file descriptor"},
        {1, "P long.bin -o - >/dev/full", "standard output: No space left on device"},
        {1, "P SOUND.bin >/dev/full", "standard output: No space left on device"},
        {1, "{ P long.bin -o -; echo $? >../status; } | :; exit $(cat ../status)", "output: Broken pipe"},
        // Wrong usage.
        {2, "P", "tonfloss-preview: SOUND.bin is required\nTry 'tonfloss-preview --help'.\n"},
        {2, "P SOUND.bin soft.bin", "not expected: soft.bin"},
        {2, "P SOUND.bin --loud", "not expected: --loud"},
        {2, "P SOUND.bin -o ''", "--output: the name is empty"},
        {2, "P SOUND.bin --play --volume 101", "--volume: 101 is no whole number from 0 to 100"},
        {2, "P SOUND.bin --rate 7999", "--rate: 7999 is no whole number from 8000 to 192000"},
        {2, "P SOUND.bin --rate 44100k", "--rate: 44100k is no whole number"},
        {2, "P SOUND.bin --clock 20000001", "--clock: 20000001 is no whole number from 1000000 to 20000000"},
        {2, "P SOUND.bin --waits 2", "--waits: 2 is no whole number from 0 to 1"},
    });
}

TEST_F(PreviewProgram, WritesTheWaveFileAndTheReport)
{
    // 56602 cycles: 697.2 samples at 44100 Hz and 126.5 at 8000 Hz, two bytes each, behind 44.
    EXPECT_EQ(Shell("P SOUND.bin -o new.wav && wc -c <new.wav"), 0);
    EXPECT_EQ(out.substr(0, 16) + out.substr(out.size() - 6), "target: PC-1600\n\n1440\n");
    EXPECT_EQ(Shell("env -i '" PREVIEW_PROGRAM "' --output - SOUND.bin | cmp - new.wav"), 0); // no display, nothing
    EXPECT_EQ(err.substr(0, 16), "target: PC-1600\n");

    // 50984 cycles without waits are 56.97 samples; the zero in front makes no octal number.
    Shell("P SOUND.bin -o timed.wav --rate 08000 --clock 7160000 --waits 0 >report; wc -c <timed.wav; "
          "od -An -tu4 -j24 -N4 timed.wav");
    EXPECT_EQ(out, "158\n       8000\n");

    // Over a link: the file keeps its place.
    Shell("P SOUND.bin -o link.wav --force --rate 8000 >report; stat -c '%F %s' link.wav old.wav");
    EXPECT_EQ(out, "symbolic link 7\nregular file 298\n");

    // A warning stands in the report, and where the report may not be read.
    EXPECT_EQ(Shell("P silent.bin"), 0);
    EXPECT_THAT(out, testing::EndsWith("\nwarning: there is no period in it; the machine plays nothing\n"));
    EXPECT_EQ(err, "tonfloss-preview: silent.bin: " + out.substr(out.rfind("warning")));

    // 8 samples last 2882 cycles with waits and 2596 without.
    EXPECT_EQ(Shell("P SOUND.bin --clock 7160000 --waits 0 | tail -n 1; P --help | sed -n 2p; P --version"), 0);
    EXPECT_EQ(out, "longest period: 8 samples, +100.13 %, +1201 cents\n"
                   "Usage: tonfloss-preview [OPTIONS] SOUND.bin\ntonfloss-preview 1.0.0\n");
}

TEST_F(PreviewProgram, PlaysWhatItWrites)
{
    // Through the driver that writes to a file, which has silence around it.
    constexpr auto kPlay = "SDL_AUDIODRIVER=disk SDL_DISKAUDIOFILE=heard.raw P SOUND.bin --play --force -o new.wav ";
    for (const auto* const rate : {"--rate 8000", "", "--rate 192000"}) {
        EXPECT_EQ(Shell(std::string(kPlay) + "--volume 100 " + rate), 0);
        EXPECT_NE(Read(folder / "files/heard.raw").find(Read(folder / "files/new.wav").substr(44)), std::string::npos);
        EXPECT_THAT(out, testing::StartsWith("target: PC-1600\n"));
    }
    // Softer, if nothing is said: the fourths of what goes from -18857 to 18813.
    Shell(std::string(kPlay) + R"(>report
        od -An -td2 -v -w2 heard.raw | sort -n | sed -n '1p;$p'
        od -An -td2 -v -w2 -j44 new.wav | sort -n | sed -n '1p;$p')");
    EXPECT_EQ(out, "  -4714\n   4703\n -18857\n  18813\n");

    EXPECT_EQ(Shell("SDL_AUDIODRIVER=none P SOUND.bin --play"), 1);
    EXPECT_EQ(err, "tonfloss-preview: SOUND.bin: It can't be played: Audio target 'none' not available\n");
    EXPECT_EQ(Shell("SDL_AUDIODRIVER=none P silent.bin --play"), 0); // nothing to be played

    // Ctrl+C, as soon as it can be heard.
    Shell(R"(SDL_AUDIODRIVER=disk SDL_DISKAUDIOFILE=long.raw env --default-signal=INT ')" PREVIEW_PROGRAM
          R"(' long.bin \
            --play >report 2>&1 &
        until [ -s long.raw ]; do sleep 0.1; done
        kill -INT $!; wait $!; echo $?)");
    EXPECT_EQ(out, "130\n");
}

TEST_F(PreviewProgram, LeavesNothingWhenASignalEndsItAndGoesOnWhereItIsIgnored)
{
    // Nobody takes the report away: the file waits for it, half done. With standard error closed it might become that.
    Shell(R"(exec 3<>pipe
        for how in default-signal=HUP default-signal=INT default-signal=TERM ignore-signal=HUP ignore-signal=INT; do
            dd if=/dev/zero of=pipe oflag=nonblock
            env --$how ')" PREVIEW_PROGRAM R"(' SOUND.bin -o new.wav >&3 2>&- &
            until [ -e .tonfloss-part-* ]; do sleep 0.1; done
            errors=$(readlink /proc/$!/fd/2)
            kill -${how#*=} $!
            dd if=pipe of=../report iflag=nonblock
            wait $!; echo $how $? $errors $(ls -A | grep -e new -e part)
            rm -f new.wav .tonfloss-part-*
        done)");
    EXPECT_EQ(out, "default-signal=HUP 129 /dev/null\n"
                   "default-signal=INT 130 /dev/null\n"
                   "default-signal=TERM 143 /dev/null\n"
                   "ignore-signal=HUP 0 /dev/null new.wav\n" // as under nohup
                   "ignore-signal=INT 0 /dev/null new.wav\n");
}

} // namespace
