// What the program shows and saves, held against assemblers that nobody here wrote.
#include "WindowTest.h"

#include <QClipboard>
#include <QPlainTextEdit>

#include <cstdlib>
#include <random>

namespace {

class Assembler : public WindowTest {
protected:
    /// Runs a tool in the scratch folder.
    void Run(const std::string& command)
    {
        ASSERT_EQ(std::system(("cd '" + folder.string() + "' && " + command).c_str()), 0) << command;
    }
};

TEST_F(Assembler, ListingAsAUserCopiesItIsTheRunBytesOfTheFile)
{
    std::mt19937 random(1600);
    std::string samples;
    for (int i = 0; i < 3000; ++i)
        samples += std::string(random() % 5 != 0 ? 1 + random() % 40 : random() % 800, '\xC8') + '\x32';
    menuBar.OptionDefBWindow.SetHasCheckMark(true);
    dialogs.answer = folder / "SOUND";
    Drop("noise.wav", WaveBytes().samples(samples));
    auto& area = Find<QPlainTextEdit>("TextAreaCodeAusgabe");
    area.selectAll();
    area.copy();
    Write("listing.asm", QApplication::clipboard()->text().toStdString());
    Enter(U"80C5");

    Run("pasmo listing.asm listing.bin");
    EXPECT_EQ(Read(folder / "listing.bin") + std::string(2, '\0'), Read(folder / "SOUND").substr(131));
}

TEST_F(Assembler, PlayerDisassembledAndAssembledAgainIsThePlayer)
{
    dialogs.answer = folder / "SOUND";
    DropTone();
    Enter(U"80C5");
    const auto player = Read(folder / "SOUND").substr(16, 115);
    Write("player.bin", player);
    Run("z80dasm --origin=0x80C5 --labels --output=player.asm player.bin && z80asm --output=again.bin player.asm");
    EXPECT_EQ(Read(folder / "again.bin"), player);
}

} // namespace
