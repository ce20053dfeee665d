// What a drop shows and what it leaves behind, at each of its ways out.
#include "Colors.h"
#include "SoundFileHeader.h"
#include "WindowTest.h"

#include <functional>

namespace {

using testing::ElementsAre;
using testing::StartsWith;

class Dropping : public WindowTest {
protected:
    /// A finished conversion that waits for its address, with the listing on, half an address typed and the next file
    /// over the window.
    Dropping()
    {
        menuBar.OptionDefBWindow.SetHasCheckMark(true);
        DropTone();
        window.TextFieldAudioAdresse.SetText(U"80");
        window.Event_DragOver();
        dialogs.shown.clear();
    }

    std::string State()
    {
        const auto visible = [](const platform::Control& control) { return control.Visible() ? "+" : "-"; };
        const bool unpatched = window.HeaderPC1600 == conversion::TemplatePC1600();
        return window.Title() + "\n" + window.Label3.Text().substr(0, 19) + "\n" +
               (window.LabelDragAndDrop.TextColor() == kRed ? "red" : "black") + ", picture" + visible(window.Canvas1) +
               ", listing " + std::to_string(window.TextAreaCodeAusgabe.Text().size()) + ", field" +
               visible(window.TextFieldAudioAdresse) + " " + platform::Utf8(window.TextFieldAudioAdresse.Text()) +
               ", labels" + visible(window.Label1) + visible(window.Label2) + visible(window.Label4) + "\n" +
               std::to_string(window.Datengroesse) + " of " + std::to_string(window.BinZeile.size() / 4) +
               ", samples " + std::to_string(window.strZeile.size()) + ", header " + (unpatched ? "fresh" : "patched") +
               ", image " + std::to_string(window.BinStringPC1600.size());
    }
};

TEST_F(Dropping, SuccessShowsThePromptsAndTheListing)
{
    DropTone();
    EXPECT_THAT(dialogs.shown, ElementsAre("PC1600 Soundfilegrösse = 152 KB."));
    EXPECT_EQ(State(), "tone.wav / 204 Bytes / 11.025 kHz\nWavefile Format OK!\n"
                       "black, picture-, listing 63, field+ , labels+++\n"
                       "152 of 21, samples 160, header patched, image 0");
    EXPECT_EQ(window.TextAreaCodeAusgabe.Text(),
              "DATEN:\r\tDEFB 5,8,8,8,8,8,8,8,8,8,8,8,8,8,8,8\r\tDEFB 8,8,8,8,255\r");
    EXPECT_EQ(window.Label1.Text(), "Lade-/Startaddresse Audiofile (Hexadezimal):");
    EXPECT_EQ(window.Label4.Text(), "Mit 32KB Erweiterung > =80C5\r\nOhne 32KB Erweiterung > =C0C5");
}

TEST_F(Dropping, OversizeFileHidesTheEntryButNotLabel4)
{
    Drop("long.wav", WaveBytes().length(500001));
    EXPECT_THAT(dialogs.shown, ElementsAre(".Wav Datei zu gross !"));
    EXPECT_EQ(State(), "Klangfloss PC1600\nBenutze das Samplef\n"
                       "red, picture-, listing 0, field- 80, labels--+\n"
                       "152 of 21, samples 500001, header patched, image 0");
}

TEST_F(Dropping, LargestFilePasses)
{
    Drop("long.wav", WaveBytes().length(500000));
    EXPECT_THAT(dialogs.shown, ElementsAre("PC1600 Soundfilegrösse = 132 KB."));
    EXPECT_EQ(window.Title(), "long.wav / 500000 Bytes / 11.025 kHz");
}

TEST_F(Dropping, WrongFormatLeavesTheEarlierRunBytes)
{
    Drop("text.wav", "no Wave file");
    EXPECT_THAT(dialogs.shown, ElementsAre("Falsches .Wav Format - Kein PCM !"));
    EXPECT_EQ(State(), "tone.wav / 204 Bytes / 11.025 kHz\nWavefile Format OK!\n"
                       "red, picture-, listing 0, field+ , labels+++\n"
                       "152 of 21, samples 12, header fresh, image 0");
}

TEST_F(Dropping, SixteenBitsAreRefusedAfterTheTitleAndTheHeader)
{
    Drop("deep.wav", WaveBytes().rate(8000).bits(16));
    EXPECT_THAT(dialogs.shown, ElementsAre("Falsches .Wav Format - Keine 8 Bit Encodierung!"));
    EXPECT_EQ(State(), "deep.wav / 44 Bytes / 8 kHz\nWavefile Format OK!\n"
                       "red, picture-, listing 0, field+ , labels+++\n"
                       "152 of 21, samples 44, header patched, image 0");
    EXPECT_EQ(window.HeaderPC1600.substr(356, 4), "&H08");
}

TEST_F(Dropping, WithoutAFileEmptiesOnlyTheTexts)
{
    window.LabelDragAndDrop.SetTextColor(kBlack); // no file, no red
    window.Event_DropObject({});
    EXPECT_THAT(dialogs.shown, ElementsAre("Falsches .Wav Format - Kein PCM !"));
    EXPECT_EQ(State(), "tone.wav / 204 Bytes / 11.025 kHz\nWavefile Format OK!\n"
                       "black, picture-, listing 0, field+ , labels+++\n"
                       "152 of 21, samples 0, header fresh, image 0");
}

TEST_F(Dropping, UnreadableFileRunsNothingOfTheConversion)
{
    const platform::DragItem aFolder{platform::FolderItemAt(folder)};
    gate.Run([&] { window.Event_DropObject(aFolder); });
    EXPECT_THAT(dialogs.shown, ElementsAre("tonfloss-window-test: This is no ordinary file."));
    EXPECT_EQ(State(), "tone.wav / 204 Bytes / 11.025 kHz\nWavefile Format OK!\n"
                       "red, picture-, listing 63, field+ 80, labels+++\n"
                       "152 of 21, samples 0, header patched, image 0");
}

TEST_F(Dropping, OversizeImageIsRefusedWithTheEntryStillOpen)
{
    Drop("much.wav", WaveBytes().samples(Tone(2, 28348)));
    EXPECT_THAT(
        dialogs.shown,
        ElementsAre("PC1600 Soundfilegrösse = 28479KB. Soundfile ist zu gross! \n Soundfile wird nicht erstellt!"));
    EXPECT_EQ(State(), "\nWavefile Format OK!\n"
                       "black, picture-, listing 0, field+ , labels+++\n"
                       "28479 of 28348, samples 56697, header patched, image 0");
}

TEST_F(Dropping, WithoutListingShowsThePicture)
{
    menuBar.OptionDefBWindow.SetHasCheckMark(false);
    DropTone();
    EXPECT_EQ(window.TextAreaCodeAusgabe.Text(), "");
    EXPECT_TRUE(window.Canvas1.Visible());
    EXPECT_EQ(window.BinZeile.substr(0, 12), "&H05&H08&H08"); // the same as with it
}

TEST_F(Dropping, MatchesTheHeaderToTheTarget)
{
    Drop("a.wav", WaveBytes().rate(6000));
    EXPECT_EQ(window.HeaderPC1600.substr(356, 4), "&H06");
    EXPECT_EQ(window.HeaderPokeMul, conversion::TemplatePokeMul());

    window.OptionAudioPokEmul_Action();
    Drop("a.wav", WaveBytes().rate(6000));
    EXPECT_EQ(window.HeaderPC1600, conversion::TemplatePC1600());
    EXPECT_EQ(window.HeaderPokeMul.substr(292, 4), "&H06");
    EXPECT_EQ(window.HeaderLaenge, 115);
}

TEST_F(Dropping, ShowsTheNameLetterForLetter)
{
    for (const auto* const name : {"<b>x<.wav", "a&b.wav", "a[*]b.wav", "\xC3\xBC.wav"}) {
        Drop(name, WaveBytes());
        EXPECT_THAT(window.Title(), StartsWith(std::string(name) + " / "));
    }
    Drop("u\xCC\x88.wav", WaveBytes()); // decomposed on the disk: one character all the same
    EXPECT_EQ(window.HeaderPC1600.substr(420, 8), "&HFC&H2E");
    Drop("\xFF.wav", WaveBytes()); // no UTF-8
    EXPECT_EQ(window.HeaderPC1600.substr(420, 8), "&H3F&H2E");
}

struct MessageCase {
    const char* name;
    std::string file;
    bool pokEmul;
    std::vector<std::string> ger;
    std::vector<std::string> eng;
};

class DropMessage : public WindowTest, public testing::WithParamInterface<MessageCase> {};

TEST_P(DropMessage, InBothLanguagesAndInNoOther)
{
    if (GetParam().pokEmul) window.OptionAudioPokEmul_Action();
    Drop("a.wav", GetParam().file);
    EXPECT_EQ(dialogs.shown, GetParam().ger);
    dialogs.shown.clear();
    window.Language = "eng";
    Drop("a.wav", GetParam().file);
    EXPECT_EQ(dialogs.shown, GetParam().eng);
    dialogs.shown.clear();
    window.Language = "fra";
    Drop("a.wav", GetParam().file);
    EXPECT_THAT(dialogs.shown, testing::IsEmpty());
}

std::string WithRunBytes(std::size_t count)
{
    return WaveBytes().samples(Tone(2, count));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, DropMessage,
    testing::ValuesIn<MessageCase>({
        {"File", WaveBytes().length(500001), false, {".Wav Datei zu gross !"}, {".wav file size too large !"}},
        {"Tag", "", false, {"Falsches .Wav Format - Kein PCM !"}, {"Wrong .wav format - No PCM !"}},
        {"Channels",
         WaveBytes().channels(2),
         false,
         {"Falsches .Wav Format - Kein Mono !"},
         {"Wrong .wav format - No mono !"}},
        {"Rate",
         WaveBytes().rate(7000),
         false,
         {"Falsches .Wav Format - Benutze 6000 - 11025 Samples pro Sekunde !"},
         {"Wrong .wav format  - need 6000 - 11025 samples pro second !"}},
        {"Bits",
         WaveBytes().bits(16),
         false,
         {"Falsches .Wav Format - Keine 8 Bit Encodierung!"},
         {"Wrong .wav format - no 8 bit encoding!"}},
        {"EndMarkOnly",
         WithRunBytes(1),
         false,
         {"PC1600 Soundfilegrösse = 132 KB."},
         {"PC-1600 sound file size = 132 KB."}},
        {"EndMarkOnlyPokEmul",
         WithRunBytes(1),
         true,
         {"PC1600 Soundfilegrösse = 1 KB."},
         {"PC-1600 sound file size = 1 KB."}},
        {"Small",
         WithRunBytes(11958),
         false,
         {"PC1600 Soundfilegrösse = 12089 KB."},
         {"PC-1600 sound file size = 12089 KB."}},
        {"FillsTheRoomWithoutExtension", WithRunBytes(11959), false, {}, {}},
        {"NeedsExtension",
         WithRunBytes(11960),
         false,
         {"PC-1600 Soundfilegrösse = 12091 KB.\nBenötigt wird eine 32 KB Erweiterung in Slot 1 "},
         {"PC-1600 sound file size = 12091 KB.\nYou need a 32 KB memory extention in Slot 1 "}},
        {"LargestWithExtension",
         WithRunBytes(28346),
         false,
         {"PC-1600 Soundfilegrösse = 28477 KB.\nBenötigt wird eine 32 KB Erweiterung in Slot 1 "},
         {"PC-1600 sound file size = 28477 KB.\nYou need a 32 KB memory extention in Slot 1 "}},
        {"OnTheUpperLimit", WithRunBytes(28347), false, {}, {}},
        {"OnTheUpperLimitPokEmul", WithRunBytes(28478), true, {}, {}}, // the player isn't counted
        {"TooLarge",
         WithRunBytes(28348),
         false,
         {"PC1600 Soundfilegrösse = 28479KB. Soundfile ist zu gross! \n Soundfile wird nicht erstellt!"},
         {"PC-1600 sound file size = 28479KB. file size too large !\n Sound file is not created"}},
    }),
    [](const auto& row) { return row.param.name; });

} // namespace
