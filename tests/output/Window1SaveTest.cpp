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

TEST_F(Save, SpeaksEnglish)
{
    window.Language = "eng";
    DropTone();
    EXPECT_EQ(window.Label1.Text(), "Loading-/starting address audiofile (Hexadecimal):");
    EXPECT_EQ(window.Label4.Text(), "With 32KB extension > =80C5\r\nWithout 32KB extension >= C0C5");
    Enter(U"80C5");
    EXPECT_EQ(dialogs.shown.back(), "PC-1600 soundfile successfully created !");
    EXPECT_EQ(window.Label3.Text(), "Use sample format 6000 Hz - 11025 Hz / 8 bit depth / PCM / mono");
    dialogs.answer.reset();
    DropTone();
    Enter(U"80C5");
    EXPECT_EQ(dialogs.shown.back(), "Oops! There's been a mistake.\nPC-1600 soundfile not created!");
}

struct AddressCase {
    const char* name;
    std::u32string_view typed;
    bool pokEmul;
    std::string ger; // empty: accepted
    std::string eng;
};

class Address : public Save, public testing::WithParamInterface<AddressCase> {};

TEST_P(Address, IsAcceptedOrRefusedWithAnEmptyField)
{
    const auto& [name, typed, pokEmul, ger, eng] = GetParam();
    if (pokEmul) window.OptionAudioPokEmul_Action();
    for (const auto& [language, text] : {std::pair("ger", ger), std::pair("eng", eng)}) {
        window.Language = language;
        DropTone();
        const auto header = window.HeaderPC1600;
        std::u32string whileMessageStands;
        dialogs.whileOpen = [&] { whileMessageStands = window.TextFieldAudioAdresse.Text(); };
        Enter(typed);
        dialogs.whileOpen = [] {};
        EXPECT_EQ(std::filesystem::exists(folder / "SOUND"), text.empty());
        EXPECT_EQ(EntryShows(), !text.empty());
        if (text.empty()) continue;
        EXPECT_EQ(dialogs.shown.back(), text);
        EXPECT_EQ(whileMessageStands, typed.size() == 4 ? typed : U""); // a wrong length is gone before its message
        EXPECT_EQ(window.TextFieldAudioAdresse.Text() + window.AdresseAudioFile, U"");
        EXPECT_EQ(window.HeaderPC1600, header);
    }
}

constexpr auto kRangeGer = "Lade-/Startadresse >&80C5 <&EFFF";
constexpr auto kRangeEng = "Loading-/starting address >&80C5 <&EFFF";
constexpr auto kLengthEng = "Loading-/starting adress >&80C5 <&EFFF";
constexpr auto kSumGer = "Lade-/Startadresse zu Hoch !";
constexpr auto kSumEng = "Loading-/starting address too high";

INSTANTIATE_TEST_SUITE_P(Typed, Address,
                         testing::ValuesIn<AddressCase>({
                             {"Lowest", U"80C5", false, "", ""},
                             {"BelowLowest", U"80C4", false, kRangeGer, kRangeEng},
                             {"AboveHighest", U"F000", false, kRangeGer, kRangeEng},
                             {"HighestLeavesNoRoom", U"EFFF", false, kSumGer, kSumEng},
                             {"SumReachesEFFF", U"EF67", false, "", ""}, // 152 bytes
                             {"SumPassesEFFF", U"EF68", false, kSumGer, kSumEng},
                             {"PokEmulSumReachesEFFF", U"EFEA", true, "", ""}, // 21 bytes
                             {"PokEmulSumPassesEFFF", U"EFEB", true, kSumGer, kSumEng},
                             {"NoDigit", U"80G5", false, kRangeGer, kRangeEng},
                             {"Blank", U" 0C5", false, kRangeGer, kRangeEng},
                             {"FourCharacters", U"80C\U0001F600", false, kRangeGer, kRangeEng},
                             {"Empty", U"", false, kRangeGer, kLengthEng},
                             {"TooShort", U"0C5", false, kRangeGer, kLengthEng},
                             {"TooLong", U"080C5", false, kRangeGer, kLengthEng},
                         }),
                         [](const auto& row) { return row.param.name; });

} // namespace
