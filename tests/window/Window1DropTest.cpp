// What a drop shows and what it leaves behind, at each of its ways out.
#include "core/SoundFileHeader.h"
#include "platform/Texts.h"
#include "support/WindowTest.h"

namespace {

/// The window after a drop. The values are those that a refused format leaves: all as the drop before left it, but for
/// the typed text and the listing.
struct State {
    std::string title = "tone.wav / 204 Bytes / 11.025 kHz";
    std::string label3 = "Wavefil";
    bool red = true;
    std::size_t listed = 0; // characters
    std::string typed{};
    std::string prompts = "TextFieldAudioAdresse Label1 Label2 Label4 ";
    std::size_t runBytes = 21;
    std::size_t samples = 204;
    bool unpatched = true;

    [[nodiscard]] auto Fields() const
    {
        return std::tie(title, label3, red, listed, typed, prompts, runBytes, samples, unpatched);
    }
};

class Dropping : public WindowTest {
protected:
    /// A finished conversion waits for its address, the listing is on, half an address is typed, the next file is
    /// coming.
    Dropping()
    {
        menuBar.OptionDefBWindow.SetHasCheckMark(true);
        DropTone();
        window.TextFieldAudioAdresse.SetText(U"80");
        window.Event_DragOver();
        dialogs.shown.clear();
    }

    void Expect(const State& expected)
    {
        const State now{.title = window.Title(),
                        .label3 = window.Label3.Text().substr(0, 7),
                        .red = window.LabelDragAndDrop.TextColor() == kRed,
                        .listed = window.TextAreaCodeAusgabe.Text().size(),
                        .typed = platform::Utf8(window.TextFieldAudioAdresse.Text()),
                        .prompts = Prompts(),
                        .runBytes = window.BinZeile.size() / 4,
                        .samples = window.strZeile.size(),
                        .unpatched = window.HeaderPC1600 == core::kLayoutPC1600.tokens};
        EXPECT_EQ(now.Fields(), expected.Fields());
    }
};

struct DropCase {
    const char* name;
    std::string file;
    std::string ger; // empty: no message
    std::string eng;
    State after;
};

void PrintTo(const DropCase& row, std::ostream* out)
{
    *out << row.name;
}

class DropEnds : public Dropping, public testing::WithParamInterface<DropCase> {};

TEST_P(DropEnds, WithItsMessageAndState)
{
    const auto& [name, file, ger, eng, after] = GetParam();
    Drop("a.wav", file);
    Expect(after);
    window.Language = "eng";
    Drop("a.wav", file);
    window.Language = "fra"; // another language: no message
    Drop("a.wav", file);
    EXPECT_EQ(dialogs.shown, ger.empty() ? std::vector<std::string>{} : (std::vector{ger, eng}));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Ways, DropEnds, testing::ValuesIn<DropCase>({
    {"OversizeFile", WaveBytes().length(500001), ".Wav Datei zu gross !", ".wav file size too large !",
     {.title = "Klangfloss PC1600", .label3 = "Benutze", .typed = "80", .prompts = "Label4 ", .samples = 500001, .unpatched = false}},
    {"NoWave", "no Wave file", "Falsches .Wav Format - Kein PCM !", "Wrong .wav format - No PCM !", {.samples = 12}},
    {"Stereo", WaveBytes().channels(2), "Falsches .Wav Format - Kein Mono !", "Wrong .wav format - No mono !", {}},
    {"Rate7000", WaveBytes().rate(7000), "Falsches .Wav Format - Benutze 6000 - 11025 Samples pro Sekunde !",
     "Wrong .wav format  - need 6000 - 11025 samples pro second !", {}},
    {"Bits16", WaveBytes().rate(8000).bits(16), "Falsches .Wav Format - Keine 8 Bit Encodierung!",
     "Wrong .wav format - no 8 bit encoding!", // when title and header are made
     {.title = "a.wav / 204 Bytes / 8 kHz", .unpatched = false}},
    {"LargestFile", WaveBytes().samples("").length(500000), "PC1600 Soundfilegrösse = 132 KB.", "PC-1600 sound file size = 132 KB.",
     {.title = "a.wav / 500000 Bytes / 11.025 kHz", .red = false, .listed = 17, .runBytes = 1, .samples = 499956, .unpatched = false}},
    {"Silent", WaveBytes().samples(Tone(2, 11959)), "", "", // the limit of a band itself
     {.title = "a.wav / 23963 Bytes / 11.025 kHz", .red = false, .listed = 28415, .runBytes = 11959, .samples = 23919, .unpatched = false}},
    {"NeedsExtension", WaveBytes().samples(Tone(2, 11960)),
     "PC-1600 Soundfilegrösse = 12091 KB.\nBenötigt wird eine 32 KB Erweiterung in Slot 1 ",
     "PC-1600 sound file size = 12091 KB.\nYou need a 32 KB memory extention in Slot 1 ",
     {.title = "a.wav / 23965 Bytes / 11.025 kHz", .red = false, .listed = 28417, .runBytes = 11960, .samples = 23921, .unpatched = false}},
    {"ImageTooLarge", WaveBytes().samples(Tone(2, 28348)),
     "PC1600 Soundfilegrösse = 28479KB. Soundfile ist zu gross! \n Soundfile wird nicht erstellt!",
     "PC-1600 sound file size = 28479KB. file size too large !\n Sound file is not created",
     {.title = "", .red = false, .runBytes = 28348, .samples = 56697, .unpatched = false}},
    {"LongerThanAnyLengthField", WaveBytes().samples(Tone(2, 70000)),
     "PC1600 Soundfilegrösse = 70131KB. Soundfile ist zu gross! \n Soundfile wird nicht erstellt!",
     "PC-1600 sound file size = 70131KB. file size too large !\n Sound file is not created",
     {.title = "", .red = false, .runBytes = 70000, .samples = 140001, .unpatched = false}},
}), [](const auto& row) { return row.param.name; });
// clang-format on

TEST_F(Dropping, MessageComesBeforeWhatFollowsFromIt)
{
    std::vector<std::string> whileItStands;
    dialogs.whileOpen = [&] {
        whileItStands.push_back(window.Label3.Text().substr(0, 7) + " " + Prompts() + window.LabelDragAndDrop.Text());
    };
    window.OptionAudioPokEmul_Action(); // and so no prompt is open
    window.LabelDragAndDrop.SetText("");
    window.Event_DragOver();
    DropTone();
    Drop("giant.wav", WaveBytes().length(500001));
    EXPECT_THAT(whileItStands, ElementsAre("Wavefil ", "Wavefil TextFieldAudioAdresse Label1 Label2 Label4 "));
}

TEST_F(Dropping, BeginsWithoutTheImageBefore)
{
    dialogs.answer = folder / "SOUND";
    Enter(U"80C5");
    EXPECT_EQ(window.BinStringPC1600.size(), 154U);
    Drop("refused.wav", "");
    EXPECT_EQ(window.BinStringPC1600, "");
}

TEST_F(Dropping, WithoutAFileEmptiesOnlyTheTexts)
{
    window.LabelDragAndDrop.SetTextColor(kBlack); // no file, no red
    Drop({});
    EXPECT_THAT(dialogs.shown, ElementsAre("Falsches .Wav Format - Kein PCM !"));
    Expect({.red = false, .samples = 0});
}

// What can be saved is the conversion whose prompts these are. A drop that was refused leaves them open, with the
// headers reset: the address is tested as ever, and then there is nothing to save. A file that couldn't be read resets
// nothing.
TEST_F(Dropping, RefusedLeavesNothingToSaveAndUnreadableAllThatWasThere)
{
    dialogs.answer = folder / "SOUND";
    for (const std::string& file :
         {std::string(), std::string(WaveBytes().channels(2)), std::string(WaveBytes().bits(16))}) {
        DropTone();
        Drop("refused.wav", file);
        Enter(U"80C4");
        EXPECT_EQ(dialogs.shown.back(), "Lade-/Startadresse >&80C5 <&EFFF");
        EXPECT_TRUE(window.TextFieldAudioAdresse.Visible());
        Enter(U"9123");
        EXPECT_EQ(dialogs.shown.back(), kNotSaved);
        EXPECT_EQ(dialogs.asked.Title, "");
        EXPECT_FALSE(window.TextFieldAudioAdresse.Visible() || std::filesystem::exists(folder / "SOUND"));
    }
    DropTone();
    window.TextFieldAudioAdresse.SetText(U"80");
    window.Event_DragOver();
    Drop({platform::FolderItemAt(folder)});
    EXPECT_EQ(dialogs.shown.back(), folder.filename().string() + ": Das ist keine gewöhnliche Datei.");
    Expect({.listed = 63, .typed = "80", .samples = 0, .unpatched = false});
    Enter(U"9123");
    EXPECT_EQ(Read(folder / "SOUND").substr(8, 2), "\x23\x91");
}

TEST_F(Dropping, ListsTheRunBytesWhereTheOptionIsOn)
{
    DropTone();
    EXPECT_FALSE(window.Canvas1.Visible());
    EXPECT_EQ(window.TextAreaCodeAusgabe.Text(),
              "DATEN:\r\tDEFB 5,8,8,8,8,8,8,8,8,8,8,8,8,8,8,8\r\tDEFB 8,8,8,8,255\r");
    window.Language = "eng";
    DropTone();
    EXPECT_THAT(window.TextAreaCodeAusgabe.Text(), testing::StartsWith("DATA:\r\tDEFB 5,"));
    menuBar.OptionDefBWindow.SetHasCheckMark(false);
    Drop("giant.wav", WaveBytes().length(500001));
    EXPECT_NE(window.TextAreaCodeAusgabe.Text(), ""); // the text of a listing that nobody wants any more
    DropTone();
    EXPECT_EQ(window.TextAreaCodeAusgabe.Text(), "");
    EXPECT_TRUE(window.Canvas1.Visible());
}

TEST_F(Dropping, CountsNoPlayerForPokEmul)
{
    window.OptionAudioPokEmul_Action();
    Drop("a.wav", WaveBytes().rate(6000).samples(Tone(2, 28478)));
    EXPECT_THAT(dialogs.shown, ElementsAre()); // on the upper limit: the player isn't counted here
    EXPECT_EQ(window.HeaderPokeMul.substr(292, 4), "&H06");
}

TEST_F(Dropping, ShowsTheNameLetterForLetter)
{
    window.Show();
    const auto shownTitle = [&] { return main->windowHandle()->title().toStdString(); };
    for (const auto* const name : {"<b>x<.wav", "a&b.wav", "a[*]b.wav", "\xC3\xBC.wav"}) {
        Drop(name, WaveBytes());
        EXPECT_EQ(shownTitle(), std::string(name) + " / 204 Bytes / 11.025 kHz");
    }
    Drop("u\xCC\x88.wav", WaveBytes()); // decomposed on the disk: one character all the same
    EXPECT_EQ(window.HeaderPC1600.substr(420, 8), "&HFC&H2E");
    Drop("\xFF.wav", WaveBytes()); // no UTF-8
    EXPECT_EQ(window.HeaderPC1600.substr(420, 8), "&H3F&H2E");
    window.SetTitle("");
    EXPECT_EQ(shownTitle(), " "); // not the program's name
}

} // namespace
