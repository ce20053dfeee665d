// Start-up, drag feedback and the choice of the target.
#include "Colors.h"
#include "WindowTest.h"

namespace {

using testing::ElementsAre;

TEST(CentredOn, TruncatesTowardZero)
{
    EXPECT_EQ(CentredOn(1920, 600), 660);
    EXPECT_EQ(CentredOn(1080, 451), 314); // not 315
    EXPECT_EQ(CentredOn(450, 451), 0);
    EXPECT_EQ(CentredOn(430, 451), -10);
}

TEST_F(WindowTest, StartsInEnglishForThePC1600)
{
    EXPECT_EQ(window.Title(), "Tonfloss PC-1600");
    EXPECT_EQ(window.LabelDragAndDrop.Text(), "Drag .wav file into the window");
    EXPECT_EQ(window.Label3.Text(), "Use sample format 6000 Hz - 11025 Hz / 8 bit depth / PCM / mono");
    EXPECT_TRUE(menuBar.OptionAudioSharp.HasCheckMark() && window.RadioButtonPC1600.Value());
    EXPECT_FALSE(menuBar.OptionAudioPokEmul.HasCheckMark() || window.RadioButtonPokEmul.Value() ||
                 menuBar.OptionDefBWindow.HasCheckMark());
    EXPECT_TRUE(window.Canvas1.Visible() && window.TextAreaCodeAusgabe.Visible());
    EXPECT_FALSE(window.TextFieldAudioAdresse.Visible() || window.Label1.Visible() || window.Label2.Visible() ||
                 window.Label4.Visible());
}

TEST_F(WindowTest, DragShowsItsStatusAndTakesOnlyTheColourBack)
{
    EXPECT_FALSE(window.Event_DragEnter());
    EXPECT_TRUE(window.mDragInside);
    EXPECT_FALSE(window.Event_DragOver());
    EXPECT_FALSE(window.mDragInside);
    EXPECT_EQ(window.LabelDragAndDrop.TextColor(), kRed);
    EXPECT_EQ(window.Label3.Text(), "Wavefile Format OK!                       ");
    window.Event_DragExit();
    EXPECT_EQ(window.LabelDragAndDrop.TextColor(), kBlack);
    EXPECT_EQ(window.Label3.Text(), "Wavefile Format OK!                       ");
}

struct TargetCase {
    const char* name;
    std::string_view language;
    bool byMenu;
    const char* pokEmulTitle;
    const char* pc1600Title;
};

class Target : public WindowTest, public testing::WithParamInterface<TargetCase> {
protected:
    void ChoosePokEmul()
    {
        if (GetParam().byMenu) {
            EXPECT_TRUE(window.OptionAudioPokEmul_Action());
        } else {
            window.RadioButtonPokEmul.SetValue(true);
            window.RadioButtonPokEmul_Action();
        }
    }
    void ChoosePC1600()
    {
        if (GetParam().byMenu) {
            EXPECT_TRUE(window.OptionAudioSharp_Action());
        } else {
            window.RadioButtonPC1600.SetValue(true);
            window.RadioButtonPC1600_Action();
        }
    }
    void ExpectTarget(bool pokEmul)
    {
        EXPECT_EQ(menuBar.OptionAudioPokEmul.HasCheckMark(), pokEmul);
        EXPECT_EQ(window.RadioButtonPokEmul.Value(), pokEmul);
        EXPECT_EQ(menuBar.OptionAudioSharp.HasCheckMark(), !pokEmul);
        EXPECT_EQ(window.RadioButtonPC1600.Value(), !pokEmul);
    }
};

TEST_P(Target, MenuAndRadioButtonsStayInStep)
{
    window.Language = GetParam().language;
    DropTone();
    window.Label3.SetText("while the entry is open");
    ChoosePokEmul();
    ExpectTarget(true);
    EXPECT_EQ(window.Title(), GetParam().pokEmulTitle);
    // The image that waited was made for the other target.
    EXPECT_FALSE(window.TextFieldAudioAdresse.Visible() || window.Label4.Visible());
    EXPECT_NE(window.Label3.Text(), "while the entry is open");

    window.Label3.SetText("with no entry open");
    ChoosePC1600();
    ExpectTarget(false);
    EXPECT_EQ(window.Title(), GetParam().pc1600Title);
    EXPECT_EQ(window.Label3.Text(), "with no entry open");
}

INSTANTIATE_TEST_SUITE_P(Ways, Target,
                         testing::ValuesIn<TargetCase>({
                             {"MenuGer", "ger", true, "Klangfloss PokEmul", "Klangfloss PC-1600"},
                             {"MenuEng", "eng", true, "Tonfloss für PokEmul", "Tonfloss für PC-1600"},
                             {"RadioGer", "ger", false, "Klangfloss PokEmul", "Klangfloss PC-1600"},
                             {"RadioEng", "eng", false, "Tonfloss PokEmul", "Tonfloss PC-1600"},
                         }),
                         [](const auto& row) { return row.param.name; });

TEST_F(WindowTest, ChoosingTheChosenTargetChangesNothing)
{
    DropTone();
    EXPECT_TRUE(window.OptionAudioSharp_Action());
    EXPECT_EQ(window.Title(), "tone.wav / 204 Bytes / 11.025 kHz");
    EXPECT_TRUE(window.TextFieldAudioAdresse.Visible());
}

TEST_F(WindowTest, AboutHasTenLinesInEachLanguage)
{
    EXPECT_TRUE(window.InfoUeber_Action());
    window.Language = "eng";
    EXPECT_TRUE(window.InfoUeber_Action());
    EXPECT_THAT(dialogs.shown,
                ElementsAre("V.1.00 / 2023\n\n"
                            "Das Programm wandelt Microsoft Wave Soundfiles in Sharp PC-1600 Sondfiles.\n\n"
                            "Geschrieben von Jorin Falkenau\nErstellt mit C++ und Qt\n"
                            "Lauffähig ab Windows 7 und OS X ab 10.7\n\n"
                            "Mail: tonfloss@example.org\nWEB: https://tonfloss.example.org",
                            "V.1.00 / 2023\n\n"
                            "These application converts Microsoft Wave sound files into Sharp PC-1600 sound files.\n\n"
                            "The application was programmed by Jorin Falkenau\nMade with C++ and Qt\n"
                            "Run up Windows 7 and OS X up 10.7\n\n"
                            "Mail: tonfloss@example.org\nWEB: https://tonfloss.example.org"));
}

} // namespace
