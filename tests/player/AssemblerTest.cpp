// What the program lists, held against an assembler that nobody here wrote.
#include "WindowTest.h"

#include <QClipboard>
#include <QPlainTextEdit>

#include <cstdlib>
#include <random>

namespace {

TEST_F(WindowTest, ListingAsAUserCopiesItIsTheRunBytesOfTheFile)
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

    const auto command = "cd " + folder.string() + " && pasmo listing.asm listing.bin";
    ASSERT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(Read(folder / "listing.bin") + std::string(2, '\0'), Read(folder / "SOUND").substr(131));
}

} // namespace
