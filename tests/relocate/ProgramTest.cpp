#include "support/Program.h"

namespace {

class RelocateProgram : public Program {
protected:
    RelocateProgram() : Program(RELOCATE_PROGRAM)
    {
        auto atC0C5 = kSoundFile;
        atC0C5[9] = atC0C5[12] = '\xC0'; // as the window saves it
        Save("SOUND.bin", kSoundFile);
        Save("window.bin", atC0C5);
        Save("pokemul.bin", kPlayer + kRunBytes);
        Save("full.bin", Long(11938)); // 12090 bytes, as the address rule counts
        Save("over.bin", Long(11939));
        Shell("echo old >old.bin; ln SOUND.bin hard.bin; ln -s SOUND.bin soft.bin");
    }

    void Save(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(folder / "files" / name, std::ios::binary) << bytes;
    }
    /// SOUND.bin with so many run bytes more.
    static std::string Long(std::size_t more)
    {
        auto file = kSoundFile;
        file.insert(131, more, '\2');
        const auto length = file.size() - 18;
        file[5] = static_cast<char>(length & 0xFF);
        file[6] = static_cast<char>(length >> 8);
        return file;
    }
};

TEST_F(RelocateProgram, RefusesWithAMessageAndLeavesAllAsItWas)
{
    ExpectRefusals({
        {1, "P none.bin", "none.bin: No such file or directory"},
        {1, "P old.bin", "old.bin: no sound file: it begins neither with a file header nor with the player"},
        {1, "P pokemul.bin", "pokemul.bin: it is a file for PokEmul, which has no address"},
        {1, "P over.bin --address C0C5", "the address C0C5 is too high: with the size, 12091, it is above EFFF"},
        {1, "P window.bin -o old.bin", "old.bin: This file exists. --force replaces it."},
        {1, "P SOUND.bin --address C0C5 -o hard.bin --force", "hard.bin: This is a sound file that is read."},
        {1, "P window.bin -o new.bin >/dev/full", "standard output: No space left on device"},
        {2, "P SOUND.bin --address 80C4", "--address: 80C4 isn't between 80C5 and EFFF"},
        {2, "P SOUND.bin --address EFFF", "--address: EFFF is too high: with the size, 133, it is above EFFF"},
    });
}

TEST_F(RelocateProgram, LaysAFileOutAndTellsWhatToType)
{
    // The player's operands; load and start address are the window's already.
    auto expected = Read(folder / "files/window.bin");
    for (const auto& [offset, high] : std::vector<std::pair<std::size_t, char>>{{18, '\xC1'},
                                                                                {22, '\xC1'},
                                                                                {28, '\xC0'},
                                                                                {36, '\xC0'},
                                                                                {55, '\xC0'},
                                                                                {61, '\xC0'},
                                                                                {68, '\xC1'},
                                                                                {100, '\xC1'}})
        expected[offset] = high;
    EXPECT_EQ(Shell("P window.bin"), 0) << err;
    EXPECT_EQ(Read(folder / "files/window-C0C5.bin"), expected);
    EXPECT_EQ(out, "made: window-C0C5.bin\nbefore: load address C0C5, player laid out for 80C5\nload address: C0C5\n"
                   "size: 152\n32 KB extension: not needed\nroom: NEW\"S0:\",&15D\n"
                   "load: SETCOM\"COM1:\",9600,8,N,1,N,N\nload: OUTSTAT\"COM1:\"\nload: SNDSTAT\"COM1:\",28\n"
                   "load: RCVSTAT\"COM1:\",28\nload: INIT\"COM1:\",8192\nload: BLOAD\"COM1:\"\ncall: CALL &C0C5\n");

    // From one address to another, over a link, and back: only the file's own name is told, and no byte is lost.
    EXPECT_EQ(Shell("P soft.bin --address c0c5 -o new.bin && cmp new.bin window-C0C5.bin &&"
                    "P new.bin --address 80C5 -o old.bin --force && cmp old.bin SOUND.bin"),
              0);
    EXPECT_THAT(out, testing::HasSubstr("made: old.bin\nbefore: load address C0C5, player laid out for C0C5\n"
                                        "load address: 80C5\nsize: 152\n"
                                        "32 KB extension: needed for the address 80C5, not for the size\n"
                                        "room: from 80C5 up; which command that is with the extension isn't known"));

    EXPECT_EQ(
        Shell("mkdir new; P full.bin --address C0C5 -o new/full.bin && P over.bin --address C0C4 -o new/over.bin"),
        0); // the last ones that fit
    EXPECT_THAT(out,
                testing::AllOf(testing::HasSubstr("\nsize: 12090\n32 KB extension: not needed\nroom: NEW\"S0:\",&2FFF"),
                               testing::HasSubstr("\nsize: 12091\n32 KB extension: needed for the size\n")));

    for (const auto* const command : {"P SOUND.bin --address 80C5 -o none.bin", "P window-C0C5.bin --force"}) {
        EXPECT_EQ(Shell(std::string(command) + "; ls none.bin window-C0C5-C0C5.bin 2>&1 | grep -c cannot"), 0);
        EXPECT_THAT(out, testing::MatchesRegex("[^ ]+ is laid out for [8C]0C5 already. Nothing was written.\n2\n"));
    }
}

} // namespace
