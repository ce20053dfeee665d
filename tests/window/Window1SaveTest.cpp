// From the prompt to the bytes of the file.
#include "preview/SoundFile.h"
#include "support/WindowTest.h"
#include "window/Targets.h"

#include <sys/syscall.h>

namespace {

std::atomic<bool> hangs = false; // the file system

} // namespace

extern "C" int fsync(int file) // in place of the C library's, for the whole program
{
    for (int ms = 0; hangs && ms < 3000; ++ms)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return static_cast<int>(syscall(SYS_fsync, file));
}

namespace {

class Save : public WindowTest {
protected:
    Save()
    {
        dialogs.answer = folder / "SOUND";
        qputenv("HOME", folder.c_str());
    }

    std::string Saved() const { return Read(folder / "SOUND"); }
};

TEST_F(Save, WritesTheFileOfTheTargetAndClosesTheEntry)
{
    DropTone();
    EXPECT_EQ(window.Label1.Text(), "Lade-/Startaddresse Audiofile (Hexadezimal):");
    EXPECT_EQ(window.Label4.Text(), "Mit 32KB Erweiterung > =80C5\r\nOhne 32KB Erweiterung > =C0C5");
    Enter(U"80c5");
    EXPECT_EQ(Saved(), kFileHeader + kPlayer + kRunBytes);
    EXPECT_EQ(dialogs.shown.back(), kSaved);
    EXPECT_EQ(Prompts(), "");
    EXPECT_EQ(window.Label3.Text(), "Benutze das Sampleformat 6000 Hz - 11025 Hz / 8 bit Encodierung / PCM / Mono");
    const auto& asked = dialogs.asked;
    EXPECT_THAT((std::vector{asked.PromptText, asked.SuggestedFileName, asked.Title, asked.Filter}),
                ElementsAre("Save PC-1600 Sound File", "SOUND", "Title Property", "Untitled (*.bin)"));
    EXPECT_EQ(asked.InitialDirectory, folder); // without a folder for documents

    std::filesystem::create_directory(folder / "Documents");
    window.OptionAudioPokEmul_Action();
    DropTone();
    Enter(U"A123");
    EXPECT_EQ(Saved(), kPlayer + kRunBytes); // without header and address
    EXPECT_EQ(asked.InitialDirectory, folder / "Documents");
}

TEST_F(Save, EveryTargetsFileIsOneThatThePreviewTakes)
{
    std::set<std::string_view> differs;
    for (const auto* const row : kTargets) {
        differs.insert({row->savePrompt, row->title.ger, row->title.eng, row->menuTitle.eng});
        window.SetTarget(*row);
        DropTone();
        Enter(U"80C5");
        EXPECT_EQ(dialogs.asked.PromptText, row->savePrompt);
        const auto parsed = preview::ParseSoundFile(Saved());
        ASSERT_TRUE(std::holds_alternative<preview::SoundFile>(parsed)) << row->savePrompt;
        const auto& sound = std::get<preview::SoundFile>(parsed);
        EXPECT_TRUE(sound.title == U"tone.wav" && sound.sampleRate.hertz == 11025) << row->savePrompt;
        EXPECT_EQ(sound.loadAddress.has_value(), row->layout.HasFileHeader());
    }
    EXPECT_EQ(differs.size(), 4 * std::size(kTargets)); // no row repeats another's texts

    menuBar.OptionAudioSharp.SetHasCheckMark(false);
    menuBar.OptionAudioPokEmul.SetHasCheckMark(false);
    dialogs.asked = {};
    DropTone();
    Enter(U"80C5"); // for no target: nothing is made, nothing asked
    EXPECT_EQ(dialogs.shown.back() + dialogs.asked.Title, kNotSaved);
    EXPECT_EQ(Prompts(), "");
}

TEST_F(Save, CancelledClosesTheEntryAndFailedKeepsItOpen)
{
    dialogs.answer.reset();
    DropTone();
    Enter(U"80C5");
    EXPECT_EQ(dialogs.shown.back(), kNotSaved);
    EXPECT_EQ(window.BinStringPC1600, kFileHeader + kPlayer + kRunBytes); // made all the same
    EXPECT_EQ(Prompts(), "");

    dialogs.answer = folder / "missing" / "SOUND";
    dialogs.shown.clear();
    DropTone();
    Enter(U"80C5");
    EXPECT_THAT(dialogs.shown, ElementsAre("PC1600 Soundfilegrösse = 152 KB.", kNotSaved,
                                           "SOUND: Die Datei oder das Verzeichnis konnte nicht gefunden werden"));
    EXPECT_NE(Prompts(), "");
    dialogs.answer = folder / "SOUND";
    Enter(U"80C5");
    EXPECT_EQ(Saved(), kFileHeader + kPlayer + kRunBytes);
}

TEST_F(Save, ReplacesNoFileThatTheUserWasNotAskedAbout)
{
    Drop("long.wav", WaveBytes().samples(Tone(2, 5000)));
    dialogs.onYield = [this] { Write("SOUND", "another program's"); }; // after the dialog
    Enter(U"80C5");
    EXPECT_EQ(dialogs.shown.back(), "SOUND: Unter diesem Namen gibt es inzwischen eine Datei.");
    EXPECT_EQ(Saved(), "another program's");
    EXPECT_NE(Prompts(), "");
    dialogs.onYield = [] {};
    Enter(U"80C5"); // the dialog asks now
    EXPECT_EQ(Saved().size(), 5000U + 133);
}

TEST_F(Save, FileSystemThatHangsHoldsNeitherWindowNorUser)
{
    ShowPrompts();
    int drawn = 0;
    const auto meanwhile = [&](const std::function<void()>& work) {
        hangs = true;
        QTimer::singleShot(50, main, [&, work] {
            drawn = main->grab().isNull() ? 0 : drawn + 1;
            QTest::keyClick(&Find<QLineEdit>("TextFieldAudioAdresse"), Qt::Key_Return); // nothing else begins
            Find<QAction>("OptionAudioPokEmul").trigger();
            work();
        });
        Enter(U"80C5");
        hangs = false;
    };
    meanwhile([] { hangs = false; });
    EXPECT_THAT(dialogs.shown, ElementsAre(kSaved));
    EXPECT_EQ(Saved(), kFileHeader + kPlayer + kRunBytes);
    DropTone();
    meanwhile([&] { EXPECT_TRUE(main->close()); });
    EXPECT_EQ(dialogs.shown.size(), 2U); // there is nobody to tell
    EXPECT_EQ(drawn, 2);
    EXPECT_TRUE(QTest::qWaitFor([&] { return std::distance(std::filesystem::directory_iterator(folder), {}) == 2; }));
}

TEST_F(Save, AddressIsRefusedWithAnEmptyField)
{
    struct Row {
        std::u32string_view typed;
        const char* ger;
        const char* eng;
    };
    constexpr auto kGer = "Lade-/Startadresse >&80C5 <&EFFF";
    constexpr auto kEngRange = "Loading-/starting address >&80C5 <&EFFF";
    constexpr auto kEngLength = "Loading-/starting adress >&80C5 <&EFFF";
    DropTone();
    for (const auto& [typed, ger, eng] : std::vector<Row>{
             {U"80C4", kGer, kEngRange},
             {U"080C5", kGer, kEngLength},
             {U"EF68", "Lade-/Startadresse zu Hoch !", "Loading-/starting address too high"}, // EF67 would do
         }) {
        dialogs.shown.clear();
        std::u32string whileMessageStands;
        dialogs.whileOpen = [&] { whileMessageStands = window.TextFieldAudioAdresse.Text(); };
        for (const auto* const language : {"ger", "eng"}) {
            window.Language = language;
            Enter(typed);
            EXPECT_EQ(whileMessageStands, eng == kEngLength ? U"" : typed); // a wrong length goes before its message
            EXPECT_EQ(window.TextFieldAudioAdresse.Text(), U"");
        }
        EXPECT_THAT(dialogs.shown, ElementsAre(ger, eng));
        EXPECT_NE(Prompts(), "");
    }
    dialogs.whileOpen = [] {};
    Enter(U"EF67");
    EXPECT_EQ(dialogs.shown.back(), "PC-1600 soundfile successfully created !");
    EXPECT_EQ(Saved().substr(8, 2), "\x67\xEF");
}

} // namespace
