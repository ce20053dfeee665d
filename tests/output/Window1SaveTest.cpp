// From the prompt to the bytes of the file.
#include "KnownFile.h"
#include "WindowTest.h"

namespace {

using testing::ElementsAre;

const std::string kPlayerAndRunBytes = kPlayer + kRunBytes;
constexpr auto kNotSaved = "Ups! Da ist ein Fehler passiert.\nPC-1600 Soundfile nicht erstellt!";

class Save : public WindowTest {
protected:
    Save() { dialogs.answer = folder / "SOUND"; }

    std::string Saved() const { return Read(folder / "SOUND"); }
    bool EntryShows() { return window.TextFieldAudioAdresse.Visible(); }
};

TEST_F(Save, WritesThePC1600FileAndClosesTheEntry)
{
    DropTone();
    EXPECT_EQ(window.Label1.Text(), "Lade-/Startaddresse Audiofile (Hexadezimal):");
    EXPECT_EQ(window.Label4.Text(), "Mit 32KB Erweiterung > =80C5\r\nOhne 32KB Erweiterung > =C0C5");
    Enter(U"80C5");
    EXPECT_EQ(Saved(), kFileHeader + kPlayerAndRunBytes);
    EXPECT_EQ(dialogs.shown.back(), "PC-1600 Soundfile erfogreich erstellt !");
    EXPECT_FALSE(EntryShows() || window.Label1.Visible() || window.Label2.Visible() || window.Label4.Visible());
    EXPECT_EQ(window.Label3.Text(), "Benutze das Sampleformat 6000 Hz - 11025 Hz / 8 bit Encodierung / PCM / Mono");
    const auto& asked = dialogs.asked;
    EXPECT_THAT((std::vector{asked.PromptText, asked.SuggestedFileName, asked.Title, asked.Filter}),
                ElementsAre("Save PC-1600 Sound File", "SOUND", "Title Property", "Untitled (*.bin)"));
}

TEST_F(Save, WritesThePokEmulFileWithoutHeaderAndAddress)
{
    window.OptionAudioPokEmul_Action();
    DropTone();
    Enter(U"a123");
    EXPECT_EQ(Saved(), kPlayerAndRunBytes);
    EXPECT_EQ(dialogs.asked.PromptText, "Save PokEmul Sound File");
}

TEST_F(Save, WritesRateNameLengthAndAddress)
{
    Drop("abcdefghijklmnopqrstu.wav", WaveBytes().rate(8000)); // 25 characters, and no period
    Enter(U"c0fe");
    EXPECT_EQ(Saved().substr(0, 16), Bytes("ff 10 00 00 10 74 00 00 fe c0 00 fe c0 00 00 0f"));
    EXPECT_EQ(Saved()[89], 8);
    EXPECT_EQ(Saved().substr(105), "abcdefghijklmnopqrstu.wav\x0d" + Bytes("ff 00 00"));

    Drop("abcdefghijklmnopqrstuvw.wav", WaveBytes().rate(6000).samples(Tone(2, 0x1234 - 115))); // 27 characters
    Enter(U"80C5");
    EXPECT_EQ(Saved().size(), 0x1234 + 18U);
    EXPECT_EQ(Saved().substr(5, 2), Bytes("34 12"));
    EXPECT_EQ(Saved()[89], 6);
    EXPECT_EQ(Saved().substr(105, 26), "abcdefghijklmnopqrstuvw.w\x0d");
}

TEST_F(Save, CancelledClosesTheEntryAndExpandsAllTheSame)
{
    dialogs.answer.reset();
    window.OptionAudioPokEmul_Action();
    DropTone();
    Enter(U"80C5");
    EXPECT_EQ(dialogs.shown.back(), kNotSaved);
    EXPECT_EQ(window.BinStringPC1600, kPlayerAndRunBytes);
    EXPECT_FALSE(EntryShows());
}

TEST_F(Save, FailedKeepsTheEntryOpenForAnotherTry)
{
    dialogs.answer = folder / "missing" / "SOUND";
    DropTone();
    Enter(U"80C5");
    EXPECT_THAT(dialogs.shown,
                ElementsAre("PC1600 Soundfilegrösse = 152 KB.", kNotSaved, "SOUND: No such file or directory"));
    EXPECT_TRUE(EntryShows());
    dialogs.answer = folder / "SOUND";
    Enter(U"80C5");
    EXPECT_EQ(Saved(), kFileHeader + kPlayerAndRunBytes);
}

TEST_F(Save, AddressIsAcceptedOrRefusedWithAnEmptyField)
{
    const std::string range = "Lade-/Startadresse >&80C5 <&EFFF|Loading-/starting address >&80C5 <&EFFF";
    const std::string length = "Lade-/Startadresse >&80C5 <&EFFF|Loading-/starting adress >&80C5 <&EFFF";
    const std::string sum = "Lade-/Startadresse zu Hoch !|Loading-/starting address too high";
    const std::string saved = "PC-1600 Soundfile erfogreich erstellt !|PC-1600 soundfile successfully created !";
    struct Row {
        std::u32string_view typed;
        bool pokEmul;
        std::string messages; // German and English
    };
    for (const auto& [typed, pokEmul, messages] : std::vector<Row>{
             {U"80C5", false, saved},
             {U"80C4", false, range},
             {U"F000", false, range},
             {U"EFFF", false, sum},   // in the range, but no file is so short
             {U"EF67", false, saved}, // with 152 bytes EFFF is reached
             {U"EF68", false, sum},
             {U"EFEA", true, saved}, // here they are 21
             {U"EFEB", true, sum},
             {U"80G5", false, range},
             {U" 0C5", false, range},
             {U"80C\U0001F600", false, range}, // four characters in seven bytes
             {U"", false, length},
             {U"0C5", false, length},
             {U"080C5", false, length},
         }) {
        std::string heard;
        std::u32string whileMessageStands;
        for (const auto* const language : {"ger", "eng"}) {
            window.Language = language;
            if (pokEmul) window.OptionAudioPokEmul_Action();
            DropTone();
            dialogs.whileOpen = [&] { whileMessageStands = window.TextFieldAudioAdresse.Text(); };
            Enter(typed);
            dialogs.whileOpen = [] {};
            heard += (heard.empty() ? "" : "|") + dialogs.shown.back();
        }
        EXPECT_EQ(heard, messages);
        EXPECT_EQ(std::filesystem::remove(folder / "SOUND"), messages == saved);
        EXPECT_EQ(EntryShows(), messages != saved);
        EXPECT_EQ(whileMessageStands, messages == length ? U"" : typed); // a wrong length goes before its message
        EXPECT_EQ(window.TextFieldAudioAdresse.Text(), messages == saved ? typed : U"");
        if (pokEmul) window.OptionAudioSharp_Action();
    }
}

} // namespace
