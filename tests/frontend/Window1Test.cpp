// Start-up, drag feedback and the choice of the target.
#include "Colors.h"
#include "WindowTest.h"

#include <QAction>
#include <QRadioButton>

#include <algorithm>

namespace {

TEST(CentredOn, TruncatesTowardZero)
{
    EXPECT_EQ(CentredOn(1920, 600), 660);
    EXPECT_EQ(CentredOn(1080, 451), 314); // not 315
    EXPECT_EQ(CentredOn(450, 451), 0);
    EXPECT_EQ(CentredOn(430, 451), -10);
}

class Target : public WindowTest {
protected:
    void ExpectTarget(bool pokEmul, const char* title)
    {
        EXPECT_EQ(window.Title(), title);
        EXPECT_THAT((std::vector{menuBar.OptionAudioPokEmul.HasCheckMark(), window.RadioButtonPokEmul.Value(),
                                 !menuBar.OptionAudioSharp.HasCheckMark(), !window.RadioButtonPC1600.Value()}),
                    testing::Each(pokEmul));
    }
};

TEST_F(Target, StartsInEnglishForThePC1600)
{
    ExpectTarget(false, "Tonfloss PC-1600");
    EXPECT_EQ(window.LabelDragAndDrop.Text(), "Drag .wav file into the window");
    EXPECT_EQ(window.Label3.Text(), "Use sample format 6000 Hz - 11025 Hz / 8 bit depth / PCM / mono");
    EXPECT_TRUE(window.Canvas1.Visible() && window.TextAreaCodeAusgabe.Visible());
    EXPECT_FALSE(window.TextFieldAudioAdresse.Visible() || window.Label1.Visible() || window.Label2.Visible() ||
                 window.Label4.Visible() || menuBar.OptionDefBWindow.HasCheckMark());
}

TEST_F(Target, MenuAndRadioButtonsStayInStep)
{
    auto& sharp = Find<QAction>("OptionAudioSharp");
    auto& pokEmul = Find<QAction>("OptionAudioPokEmul");
    auto& radioPC1600 = Find<QRadioButton>("RadioButtonPC1600");
    auto& radioPokEmul = Find<QRadioButton>("RadioButtonPokEmul");
    DropTone();
    sharp.trigger(); // the chosen target once more, in both ways
    radioPC1600.click();
    ExpectTarget(false, "tone.wav / 204 Bytes / 11.025 kHz");
    EXPECT_TRUE(sharp.isChecked() && window.TextFieldAudioAdresse.Visible());

    pokEmul.trigger();
    ExpectTarget(true, "Klangfloss PokEmul");
    // The image that waited for its address was made for the other target.
    EXPECT_FALSE(window.TextFieldAudioAdresse.Visible() || window.Label4.Visible());
    EXPECT_EQ(window.Label3.Text(), "Benutze das Sampleformat 6000 Hz - 11025 Hz / 8 bit Encodierung / PCM / Mono");
    window.Label3.SetText("no entry is open");
    radioPC1600.click();
    ExpectTarget(false, "Klangfloss PC-1600");
    EXPECT_EQ(window.Label3.Text(), "no entry is open");
    radioPokEmul.click();
    ExpectTarget(true, "Klangfloss PokEmul");
    sharp.trigger();
    ExpectTarget(false, "Klangfloss PC-1600");

    window.Language = "eng"; // here menu and radio buttons differ
    pokEmul.trigger();
    ExpectTarget(true, "Tonfloss für PokEmul");
    sharp.trigger();
    ExpectTarget(false, "Tonfloss für PC-1600");
    radioPokEmul.click();
    ExpectTarget(true, "Tonfloss PokEmul");
    radioPC1600.click();
    ExpectTarget(false, "Tonfloss PC-1600");
}

TEST_F(WindowTest, DragShowsItsStatusAndTakesOnlyTheColourBack)
{
    EXPECT_FALSE(window.Event_DragEnter());
    EXPECT_FALSE(window.Event_DragOver());
    EXPECT_EQ(window.LabelDragAndDrop.TextColor(), kRed);
    window.Event_DragExit();
    EXPECT_EQ(window.LabelDragAndDrop.TextColor(), kBlack);
    EXPECT_EQ(window.Label3.Text(), "Wavefile Format OK!                       ");
}

TEST_F(WindowTest, AboutHasTenLinesInEachLanguage)
{
    for (const auto* const language : {"ger", "eng"}) {
        window.Language = language;
        EXPECT_TRUE(window.InfoUeber_Action());
        EXPECT_EQ(std::ranges::count(dialogs.shown.back(), '\n'), 9);
    }
    EXPECT_NE(dialogs.shown.front(), dialogs.shown.back());
}

} // namespace
