// What a drop shows and what it leaves behind, at each of its ways out.
#include "Colors.h"
#include "SoundFileHeader.h"
#include "WindowTest.h"

#include <QWindow>

namespace {

using testing::ElementsAre;
using testing::StartsWith;

class Dropping : public WindowTest {
protected:
    /// A finished conversion waits for its address, the listing is on, half an address is typed, the next file is coming.
    Dropping()
    {
        menuBar.OptionDefBWindow.SetHasCheckMark(true);
        DropTone();
        window.TextFieldAudioAdresse.SetText(U"80");
        window.Event_DragOver();
        dialogs.shown.clear();
    }

    /// title|Label3|drag label's colour|picture, listing's length|field, Label1, Label2, Label4|run bytes|samples|header
    std::string State()
    {
        const auto sign = [](const platform::Control& control) { return control.Visible() ? "+" : "-"; };
        const bool fresh = window.HeaderPC1600 == conversion::TemplatePC1600();
        return window.Title() + "|" + window.Label3.Text().substr(0, 7) + "|" +
               (window.LabelDragAndDrop.TextColor() == kRed ? "red" : "black") + "|" + sign(window.Canvas1) +
               std::to_string(window.TextAreaCodeAusgabe.Text().size()) + "|" + sign(window.TextFieldAudioAdresse) +
               platform::Utf8(window.TextFieldAudioAdresse.Text()) + sign(window.Label1) + sign(window.Label2) +
               sign(window.Label4) + "|" + std::to_string(window.BinZeile.size() / 4) + "|" +
               std::to_string(window.strZeile.size()) + "|" + (fresh ? "fresh" : "patched");
    }
};

struct DropCase {
    const char* name;
    std::string file;
    std::string ger; // empty: no message
    std::string eng;
    std::string state;
};

class DropEnds : public Dropping, public testing::WithParamInterface<DropCase> {};

TEST_P(DropEnds, WithItsMessageAndState)
{
    const auto& [name, file, ger, eng, state] = GetParam();
    Drop("a.wav", file);
    EXPECT_EQ(State(), state);
    window.Language = "eng";
    Drop("a.wav", file);
    window.Language = "fra"; // another language: no message
    Drop("a.wav", file);
    EXPECT_EQ(dialogs.shown, ger.empty() ? std::vector<std::string>{} : (std::vector{ger, eng}));
}

std::string RunBytes(std::size_t count)
{
    return WaveBytes().samples(Tone(2, count));
}

INSTANTIATE_TEST_SUITE_P(
    Ways, DropEnds,
    testing::ValuesIn<DropCase>({
        {"OversizeFile", WaveBytes().length(500001), ".Wav Datei zu gross !", ".wav file size too large !",
         "Klangfloss PC1600|Benutze|red|-0|-80--+|21|500001|patched"},
        {"LargestFile", WaveBytes().length(500000), "PC1600 Soundfilegrösse = 132 KB.",
         "PC-1600 sound file size = 132 KB.",
         "a.wav / 500000 Bytes / 11.025 kHz|Wavefil|black|-17|++++|1|499956|patched"},
        {"NoWave", "no Wave file", "Falsches .Wav Format - Kein PCM !", "Wrong .wav format - No PCM !",
         "tone.wav / 204 Bytes / 11.025 kHz|Wavefil|red|-0|++++|21|12|fresh"},
        {"Stereo", WaveBytes().channels(2), "Falsches .Wav Format - Kein Mono !", "Wrong .wav format - No mono !",
         "tone.wav / 204 Bytes / 11.025 kHz|Wavefil|red|-0|++++|21|44|fresh"},
        {"Rate7000", WaveBytes().rate(7000), "Falsches .Wav Format - Benutze 6000 - 11025 Samples pro Sekunde !",
         "Wrong .wav format  - need 6000 - 11025 samples pro second !",
         "tone.wav / 204 Bytes / 11.025 kHz|Wavefil|red|-0|++++|21|44|fresh"},
        {"Bits16", WaveBytes().rate(8000).bits(16), "Falsches .Wav Format - Keine 8 Bit Encodierung!",
         "Wrong .wav format - no 8 bit encoding!", "a.wav / 44 Bytes / 8 kHz|Wavefil|red|-0|++++|21|44|patched"},
        {"Size12089", RunBytes(11958), "PC1600 Soundfilegrösse = 12089 KB.", "PC-1600 sound file size = 12089 KB.",
         "a.wav / 23961 Bytes / 11.025 kHz|Wavefil|black|-28413|++++|11958|23917|patched"},
        {"Size12090", RunBytes(11959), "", "",
         "a.wav / 23963 Bytes / 11.025 kHz|Wavefil|black|-28415|++++|11959|23919|patched"},
        {"Size12091", RunBytes(11960),
         "PC-1600 Soundfilegrösse = 12091 KB.\nBenötigt wird eine 32 KB Erweiterung in Slot 1 ",
         "PC-1600 sound file size = 12091 KB.\nYou need a 32 KB memory extention in Slot 1 ",
         "a.wav / 23965 Bytes / 11.025 kHz|Wavefil|black|-28417|++++|11960|23921|patched"},
        {"Size28477", RunBytes(28346),
         "PC-1600 Soundfilegrösse = 28477 KB.\nBenötigt wird eine 32 KB Erweiterung in Slot 1 ",
         "PC-1600 sound file size = 28477 KB.\nYou need a 32 KB memory extention in Slot 1 ",
         "a.wav / 56737 Bytes / 11.025 kHz|Wavefil|black|-67333|++++|28346|56693|patched"},
        {"Size28478", RunBytes(28347), "", "",
         "a.wav / 56739 Bytes / 11.025 kHz|Wavefil|black|-67335|++++|28347|56695|patched"},
        {"Size28479", RunBytes(28348),
         "PC1600 Soundfilegrösse = 28479KB. Soundfile ist zu gross! \n Soundfile wird nicht erstellt!",
         "PC-1600 sound file size = 28479KB. file size too large !\n Sound file is not created",
         "|Wavefil|black|-0|++++|28348|56697|patched"},
    }),
    [](const auto& row) { return row.param.name; });

TEST_F(Dropping, JudgesTheFourFieldsByAllTheirBytesAndInTheirOrder)
{
    for (const auto& [file, message] : std::vector<std::pair<std::string, std::string>>{
             {WaveBytes().rate(8000).length(36), "PC1600 Soundfilegrösse = 132 KB."}, // nothing else is looked at
             {"", "Falsches .Wav Format - Kein PCM !"},                               // past the end reads as 0
             {WaveBytes().formatTag(0x0101), "Falsches .Wav Format - Kein PCM !"},
             {WaveBytes().channels(2).rate(7000), "Falsches .Wav Format - Kein Mono !"},
             {WaveBytes().rate(11025 + (1U << 24U)),
              "Falsches .Wav Format - Benutze 6000 - 11025 Samples pro Sekunde !"},
             {WaveBytes().length(34), "Falsches .Wav Format - Keine 8 Bit Encodierung!"},
         }) {
        Drop("a.wav", file);
        EXPECT_EQ(dialogs.shown.back(), message);
    }
}

TEST_F(Dropping, WithoutAFileEmptiesOnlyTheTexts)
{
    window.LabelDragAndDrop.SetTextColor(kBlack); // no file, no red
    Drop({});
    EXPECT_THAT(dialogs.shown, ElementsAre("Falsches .Wav Format - Kein PCM !"));
    EXPECT_EQ(State(), "tone.wav / 204 Bytes / 11.025 kHz|Wavefil|black|-0|++++|21|0|fresh");
}

TEST_F(Dropping, UnreadableFileRunsNothingOfTheConversion)
{
    Drop({platform::FolderItemAt(folder)});
    EXPECT_THAT(dialogs.shown, ElementsAre("tonfloss-window-test: This is no ordinary file."));
    EXPECT_EQ(State(), "tone.wav / 204 Bytes / 11.025 kHz|Wavefil|red|-63|+80+++|21|0|patched");
}

TEST_F(Dropping, ListsTheRunBytesWhereTheOptionIsOn)
{
    DropTone();
    EXPECT_EQ(window.TextAreaCodeAusgabe.Text(),
              "DATEN:\r\tDEFB 5,8,8,8,8,8,8,8,8,8,8,8,8,8,8,8\r\tDEFB 8,8,8,8,255\r");
    window.Language = "eng";
    DropTone();
    EXPECT_THAT(window.TextAreaCodeAusgabe.Text(), StartsWith("DATA:\r\tDEFB 5,"));
    const auto withListing = window.BinZeile;
    menuBar.OptionDefBWindow.SetHasCheckMark(false);
    DropTone();
    EXPECT_EQ(window.TextAreaCodeAusgabe.Text(), "");
    EXPECT_TRUE(window.Canvas1.Visible());
    EXPECT_EQ(window.BinZeile, withListing);
}

TEST_F(Dropping, PatchesOnlyTheHeaderOfTheTarget)
{
    EXPECT_EQ(window.HeaderPokeMul, conversion::TemplatePokeMul());
    window.OptionAudioPokEmul_Action();
    Drop("a.wav", WaveBytes().rate(6000).samples(Tone(2, 28478)));
    EXPECT_THAT(dialogs.shown, ElementsAre()); // on the upper limit: the player isn't counted here
    EXPECT_EQ(window.HeaderPC1600, conversion::TemplatePC1600());
    EXPECT_EQ(window.HeaderPokeMul.substr(292, 4), "&H06");
}

TEST_F(Dropping, ShowsTheNameLetterForLetter)
{
    window.Show();
    for (const auto* const name : {"<b>x<.wav", "a&b.wav", "a[*]b.wav", "\xC3\xBC.wav"}) {
        Drop(name, WaveBytes());
        EXPECT_EQ(main->windowHandle()->title().toStdString(), std::string(name) + " / 44 Bytes / 11.025 kHz");
    }
    Drop("u\xCC\x88.wav", WaveBytes()); // decomposed on the disk: one character all the same
    EXPECT_EQ(window.HeaderPC1600.substr(420, 8), "&HFC&H2E");
    Drop("\xFF.wav", WaveBytes()); // no UTF-8
    EXPECT_EQ(window.HeaderPC1600.substr(420, 8), "&H3F&H2E");
}

} // namespace
