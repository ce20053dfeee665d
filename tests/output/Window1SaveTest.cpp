// From the prompt to the bytes of the file.
#include "WindowTest.h"

#include <initializer_list>

namespace {

using testing::ElementsAre;

std::string Bytes(std::initializer_list<int> values)
{
    return {values.begin(), values.end()};
}

// tone.wav at 11025 Hz: 20 periods and the end mark, load address 80C5.
const std::string kFileHeader =
    Bytes({0xff, 0x10, 0x00, 0x00, 0x10, 0x88, 0x00, 0x00, 0xc5, 0x80, 0x00, 0xc5, 0x80, 0x00, 0x00, 0x0f});
const std::string kPlayerAndRunBytes = Bytes({
    0xcd, 0x0f, 0x81, 0xf3, 0x21, 0x38, 0x81, 0x7e, 0xfe, 0xff, 0xca, 0xf3, 0x80, 0x47, 0x3e, 0xc0, //
    0xd3, 0x18, 0xcd, 0xf5, 0x80, 0x10, 0xfb, 0x7e, 0x47, 0xfe, 0xfe, 0x20, 0x04, 0x3e, 0xc0, 0x18, //
    0x02, 0x3e, 0x40, 0xd3, 0x18, 0xcd, 0xf5, 0x80, 0x10, 0xfb, 0x23, 0xc3, 0xcc, 0x80, 0xfb, 0xc9, //
    0xc5, 0xe5, 0x21, 0x0e, 0x81, 0x7e, 0x06, 0x0c, 0xfe, 0x06, 0x28, 0x08, 0x06, 0x05, 0xfe, 0x08, //
    0x28, 0x02, 0x06, 0x01, 0x10, 0xfe, 0xe1, 0xc1, 0xc9, 0x0b, 0xcd, 0x12, 0x01, 0xcd, 0x09, 0x01, //
    0x3e, 0x0d, 0x11, 0x1e, 0x81, 0xcd, 0xeb, 0x00, 0xc9,                                           // the title follows
    't',  'o',  'n',  'e',  '.',  'w',  'a',  'v',  0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, //
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x0d,                                     //
    0x05, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08, //
    0x08, 0x08, 0x08, 0x08, 0xff, 0x00, 0x00,
});

class Save : public WindowTest {
protected:
    Save() { dialogs.answer = folder / "SOUND"; }

    std::string Saved() const { return Read(folder / "SOUND"); }
};

TEST_F(Save, WritesThePC1600File)
{
    DropTone();
    Enter(U"80C5");
    EXPECT_EQ(Saved(), kFileHeader + kPlayerAndRunBytes);
    EXPECT_EQ(dialogs.shown.back(), "PC-1600 Soundfile erfogreich erstellt !");
    EXPECT_FALSE(window.TextFieldAudioAdresse.Visible() || window.Label1.Visible() || window.Label2.Visible() ||
                 window.Label4.Visible());
    EXPECT_EQ(window.Label3.Text(), "Benutze das Sampleformat 6000 Hz - 11025 Hz / 8 bit Encodierung / PCM / Mono");
}

TEST_F(Save, WritesThePokEmulFileWithoutHeaderAndAddress)
{
    window.OptionAudioPokEmul_Action();
    DropTone();
    Enter(U"a123");
    EXPECT_EQ(Saved(), kPlayerAndRunBytes);
}

TEST_F(Save, PatchesOnlyTheFileHeaderWithAnotherAddress)
{
    DropTone();
    Enter(U"c0fe"); // lower case does as well
    auto expected = kFileHeader + kPlayerAndRunBytes;
    for (const std::size_t field : {8U, 11U})
        expected.replace(field, 2, Bytes({0xfe, 0xc0}));
    EXPECT_EQ(Saved(), expected);
}

TEST_F(Save, WritesEndMarkRateAndLongName)
{
    Drop("abcdefghijklmnopqrstu.wav", WaveBytes().rate(8000)); // 25 characters
    Enter(U"80C5");
    EXPECT_EQ(Saved().substr(5, 2), Bytes({0x74, 0x00}));
    EXPECT_EQ(Saved().substr(89, 1), "\x08");
    EXPECT_EQ(Saved().substr(105), "abcdefghijklmnopqrstu.wav\x0d" + Bytes({0xff, 0x00, 0x00}));

    Drop("abcdefghijklmnopqrstuvw.wav", WaveBytes().rate(6000)); // 27
    Enter(U"80C5");
    EXPECT_EQ(Saved().substr(89, 1), "\x06");
    EXPECT_EQ(Saved().substr(105), "abcdefghijklmnopqrstuvw.w\x0d" + Bytes({0xff, 0x00, 0x00}));
}

TEST_F(Save, WritesALengthOfTwoBytesLowByteFirst)
{
    Drop("a.wav", WaveBytes().samples(Tone(2, 0x1234 - 115)));
    Enter(U"80C5");
    EXPECT_EQ(Saved().size(), 0x1234 + 18U);
    EXPECT_EQ(Saved().substr(5, 2), Bytes({0x34, 0x12}));
}

TEST_F(Save, AsksWithThePromptOfTheTarget)
{
    DropTone();
    Enter(U"80C5");
    EXPECT_EQ(dialogs.asked.PromptText, "Save PC-1600 Sound File");
    EXPECT_EQ(dialogs.asked.SuggestedFileName, "SOUND");
    EXPECT_EQ(dialogs.asked.Title, "Title Property");
    EXPECT_EQ(dialogs.asked.Filter, "Untitled (*.bin)");
    window.OptionAudioPokEmul_Action();
    DropTone();
    Enter(U"80C5");
    EXPECT_EQ(dialogs.asked.PromptText, "Save PokEmul Sound File");
}

TEST_F(Save, CancelledClosesTheEntryAndExpandsAllTheSame)
{
    dialogs.answer.reset();
    window.OptionAudioPokEmul_Action();
    DropTone();
    Enter(U"80C5");
    EXPECT_EQ(dialogs.shown.back(), "Ups! Da ist ein Fehler passiert.\nPC-1600 Soundfile nicht erstellt!");
    EXPECT_EQ(window.BinStringPC1600, kPlayerAndRunBytes);
    EXPECT_FALSE(window.TextFieldAudioAdresse.Visible());
    EXPECT_TRUE(std::filesystem::is_empty(folder) || !std::filesystem::exists(folder / "SOUND"));
}

TEST_F(Save, FailedKeepsTheEntryOpenForAnotherTry)
{
    dialogs.answer = folder / "missing" / "SOUND";
    DropTone();
    Enter(U"80C5");
    EXPECT_THAT(dialogs.shown, ElementsAre("PC1600 Soundfilegrösse = 152 KB.",
                                           "Ups! Da ist ein Fehler passiert.\nPC-1600 Soundfile nicht erstellt!",
                                           "SOUND: No such file or directory"));
    EXPECT_EQ(window.BinStringPC1600, "");
    EXPECT_TRUE(window.TextFieldAudioAdresse.Visible());

    dialogs.answer = folder / "SOUND";
    Enter(U"80C5");
    EXPECT_EQ(Saved(), kFileHeader + kPlayerAndRunBytes);
}

TEST_F(Save, SpeaksEnglish)
{
    window.Language = "eng";
    DropTone();
    Enter(U"80C5");
    EXPECT_EQ(dialogs.shown.back(), "PC-1600 soundfile successfully created !");
    EXPECT_EQ(window.Label3.Text(), "Use sample format 6000 Hz - 11025 Hz / 8 bit depth / PCM / mono");
    EXPECT_EQ(window.Label1.Text(), "Loading-/starting address audiofile (Hexadecimal):");
    EXPECT_EQ(window.Label4.Text(), "With 32KB extension > =80C5\r\nWithout 32KB extension >= C0C5");
    dialogs.answer.reset();
    DropTone();
    Enter(U"80C5");
    EXPECT_EQ(dialogs.shown.back(), "Oops! There's been a mistake.\nPC-1600 soundfile not created!");
}

struct AddressCase {
    const char* name;
    std::u32string_view typed;
    bool pokEmul;
    std::vector<std::string> ger; // empty: accepted
    std::vector<std::string> eng;
};

class Address : public Save, public testing::WithParamInterface<AddressCase> {};

TEST_P(Address, IsAcceptedOrRefusedWithAnEmptyField)
{
    if (GetParam().pokEmul) window.OptionAudioPokEmul_Action();
    for (const auto& [language, texts] : {std::pair("ger", GetParam().ger), std::pair("eng", GetParam().eng)}) {
        window.Language = language;
        DropTone();
        const auto header = window.HeaderPC1600;
        dialogs.shown.clear();
        Enter(GetParam().typed);
        const bool accepted = texts.empty();
        EXPECT_EQ(std::filesystem::exists(folder / "SOUND"), accepted);
        EXPECT_EQ(window.TextFieldAudioAdresse.Visible(), !accepted);
        if (accepted) continue;
        EXPECT_EQ(dialogs.shown, texts);
        EXPECT_EQ(window.TextFieldAudioAdresse.Text(), U"");
        EXPECT_EQ(window.AdresseAudioFile, U"");
        EXPECT_EQ(window.HeaderPC1600, header);
    }
}

const std::vector<std::string> kRangeGer = {"Lade-/Startadresse >&80C5 <&EFFF"};
const std::vector<std::string> kLengthEng = {"Loading-/starting adress >&80C5 <&EFFF"};
const std::vector<std::string> kRangeEng = {"Loading-/starting address >&80C5 <&EFFF"};
const std::vector<std::string> kSumGer = {"Lade-/Startadresse zu Hoch !"};
const std::vector<std::string> kSumEng = {"Loading-/starting address too high"};

INSTANTIATE_TEST_SUITE_P(Typed, Address,
                         testing::ValuesIn<AddressCase>({
                             {"Lowest", U"80C5", false, {}, {}},
                             {"BelowLowest", U"80C4", false, kRangeGer, kRangeEng},
                             {"AboveHighest", U"F000", false, kRangeGer, kRangeEng},
                             {"HighestIsInRangeButLeavesNoRoom", U"EFFF", false, kSumGer, kSumEng},
                             {"SumReachesEFFF", U"EF67", false, {}, {}}, // 152 bytes
                             {"SumPassesEFFF", U"EF68", false, kSumGer, kSumEng},
                             {"PokEmulCountsRunBytesOnly", U"EFEA", true, {}, {}}, // 21 bytes
                             {"PokEmulSumPassesEFFF", U"EFEB", true, kSumGer, kSumEng},
                             {"NoDigit", U"80G5", false, kRangeGer, kRangeEng},
                             {"Blank", U" 0C5", false, kRangeGer, kRangeEng},
                             {"Empty", U"", false, kRangeGer, kLengthEng},
                             {"TooShort", U"0C5", false, kRangeGer, kLengthEng},
                             {"TooLong", U"080C5", false, kRangeGer, kLengthEng},
                             {"FourCharactersInNineBytes", U"80C\U0001F600", false, kRangeGer, kRangeEng},
                         }),
                         [](const auto& row) { return row.param.name; });

TEST_F(Save, LengthRefusalEmptiesTheFieldBeforeItsMessageAndValueRefusalAfter)
{
    DropTone();
    std::vector<std::u32string> whileMessageStands;
    dialogs.whileOpen = [&] { whileMessageStands.push_back(window.TextFieldAudioAdresse.Text()); };
    Enter(U"80C");
    Enter(U"80C4");
    EXPECT_THAT(whileMessageStands, ElementsAre(U"", U"80C4"));
}

TEST_F(Save, OtherKeysForgetTheAddressAndAreNotConsumed)
{
    DropTone();
    window.AdresseAudioFile = U"&H80C5";
    EXPECT_FALSE(window.TextFieldAudioAdresse_KeyDown(U"8"));
    EXPECT_EQ(window.AdresseAudioFile, U"");
    window.TextFieldAudioAdresse.SetText(U"80C5");
    EXPECT_FALSE(window.TextFieldAudioAdresse_KeyDown(U"\x03")); // Enter on the keypad
    EXPECT_EQ(Saved(), kFileHeader + kPlayerAndRunBytes);
}

} // namespace
