// The toolkit's events as they reach the window: one at a time, never as a move, by key and not by text.
#include "support/WindowTest.h"

#include <sys/stat.h>

namespace {

class Events : public WindowTest {
protected:
    static constexpr auto kRefused = Qt::TargetMoveAction;
    enum Steps { kOver, kDrop, kOverAndDrop, kMoveAndDrop, kDeadMoveAndDrop, kDeadDrop };

    /// Drags the addresses over the window and drops them there; the last answer.
    Qt::DropAction Drag(const std::vector<std::string>& urls,
                        Qt::DropActions possible = Qt::MoveAction | Qt::CopyAction, Steps steps = kOverAndDrop)
    {
        QMimeData data;
        data.setText("a text beside it");
        QList<QUrl> list;
        for (const auto& url : urls)
            list.append(QUrl::fromEncoded(QByteArray::fromStdString(url)));
        if (!list.isEmpty()) data.setUrls(list);
        if (steps >= kDeadMoveAndDrop) data.setData("text/uri-list", "\r\n");
        QDragEnterEvent enter({10, 10}, possible, &data, Qt::LeftButton, Qt::NoModifier);
        QDragMoveEvent move({10, 20}, possible, &data, Qt::LeftButton, Qt::NoModifier);
        QDropEvent drop({10, 20}, possible, &data, Qt::LeftButton, Qt::NoModifier);
        auto answer = kRefused;
        for (auto* const event : std::initializer_list<QDropEvent*>{&enter, &move, &drop}) {
            if (steps == (event == &drop ? kOver : kDrop) || (steps >= kMoveAndDrop && event == &enter)) continue;
            if (steps == kDeadDrop && event != &drop) continue; // its source has ended, and gives nothing any more
            event->setDropAction(Qt::MoveAction);               // what a file manager would rather do
            QApplication::sendEvent(main, event);
            if (!event->isAccepted()) return kRefused;
            answer = event->dropAction();
            EXPECT_NE(answer, Qt::MoveAction);
        }
        return answer;
    }

    const std::string tone = "file://" + Write("tone.wav", WaveBytes()).string();
};

TEST_F(Events, DropIsNeverAMoveAndRunsAfterItsEvent)
{
    EXPECT_EQ(Drag({tone}), Qt::CopyAction);
    EXPECT_EQ(dialogs.shown.size(), 0U);
    WaitForFile();
    EXPECT_EQ(dialogs.shown.size(), 1U);
    EXPECT_EQ(Drag({tone}, Qt::LinkAction | Qt::MoveAction), Qt::LinkAction);
    WaitForFile();
    EXPECT_EQ(dialogs.shown.size(), 2U);
    EXPECT_EQ(Drag({tone}, Qt::MoveAction), kRefused); // its source would delete the file
    EXPECT_EQ(Drag({}), kRefused);                     // a text alone is no file
    EXPECT_EQ(Drag({tone}, Qt::CopyAction, kOver), Qt::CopyAction);
    EXPECT_EQ(Drag({tone}, Qt::MoveAction, kDrop), kRefused); // it has come to offer nothing else
    WaitForFile();
    EXPECT_EQ(dialogs.shown.size(), 2U);
}

TEST_F(Events, DragShowsItsStatusAndTakesOnlyTheColourBack)
{
    window.Show();
    QDragLeaveEvent leave;
    QMouseEvent back(QEvent::MouseMove, {10, 10}, {10, 10}, {10, 10}, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    const std::pair<QObject*, QEvent*> ends[] = {{main, &leave},
                                                 {main->windowHandle(), &back}}; // or its source has died
    for (const auto& [receiver, end] : ends) {
        Drag({tone}, Qt::CopyAction, kOver);
        EXPECT_EQ(window.LabelDragAndDrop.TextColor(), kRed);
        QApplication::sendEvent(receiver, end);
        EXPECT_EQ(window.LabelDragAndDrop.TextColor(), kBlack);
        EXPECT_EQ(window.Label3.Text(), "Wavefile Format OK!                       ");
        EXPECT_FALSE(window.mDragInside);
    }
    Drag({"file://" + Write("stereo.wav", WaveBytes().channels(2)).string()});
    WaitForFile();
    QApplication::sendEvent(main->windowHandle(), &back); // the pointer moves on over the window
    EXPECT_EQ(window.LabelDragAndDrop.TextColor(), kRed); // as the refused file has left it
}

TEST_F(Events, DragBehindOneWhoseSourceHasDiedComesWithoutEntering)
{
    const auto other = "file://" + Write("other.wav", WaveBytes()).string();
    Drag({tone}, Qt::CopyAction, kOver);
    EXPECT_EQ(Drag({other}, Qt::CopyAction, kMoveAndDrop), Qt::CopyAction);
    WaitForFile();
    EXPECT_EQ(window.Title(), "other.wav / 204 Bytes / 11.025 kHz");
    for (const auto steps : {kMoveAndDrop, kDeadMoveAndDrop}) {
        Drag({tone}, Qt::CopyAction, kOver);
        EXPECT_EQ(Drag({}, Qt::CopyAction, steps), kRefused);
        EXPECT_EQ(window.LabelDragAndDrop.TextColor(), kBlack);
        EXPECT_EQ(Drag({}, Qt::CopyAction, kDeadDrop), kRefused);
    }
    Drag({tone}, Qt::CopyAction, kOver);
    EXPECT_EQ(Drag({}, Qt::CopyAction, kDeadDrop), Qt::CopyAction); // the same drag, whose source ended at the drop
    WaitForFile();
    EXPECT_EQ(window.Title(), "tone.wav / 204 Bytes / 11.025 kHz");
}

// Length and time are those that the file had when its own drag came over the window. Some programs let the pointer go
// before they drop.
TEST_F(Events, RecordingFinishedBetweenTwoDragsIsTakenAndWithinOneIsNot)
{
    window.Show();
    const auto changed = "tone.wav: Die Datei wird gerade von einem anderen Programm geändert.";
    QEnterEvent back({10, 10}, {10, 10}, {10, 10});
    for (const auto& [steps, message] :
         {std::pair(kMoveAndDrop, "PC1600 Soundfilegrösse = 133 KB."), {kDrop, changed}}) {
        Write("tone.wav", WaveBytes());
        Drag({tone}, Qt::CopyAction, kOver);
        QTest::qWait(50); // until it is noted
        Write("tone.wav", WaveBytes().samples(Tone(2, 2)));
        QApplication::sendEvent(main->windowHandle(), &back);
        EXPECT_EQ(window.LabelDragAndDrop.TextColor(), kBlack);
        EXPECT_EQ(Drag({tone}, Qt::CopyAction, steps), Qt::CopyAction);
        EXPECT_EQ(window.LabelDragAndDrop.TextColor(), kRed);
        WaitForFile();
        EXPECT_EQ(dialogs.shown.back(), message);
    }
    EXPECT_EQ(window.LabelDragAndDrop.TextColor(), kRed); // as the refusal left it
    QApplication::sendEvent(main->windowHandle(), &back);
    EXPECT_EQ(window.LabelDragAndDrop.TextColor(), kRed);
}

TEST_F(Events, EveryDropEndsInItsMessage)
{
    const auto good = "PC1600 Soundfilegrösse = 152 KB.";
    const auto noFile = "Falsches .Wav Format - Kein PCM !";
    const auto notOrdinary = "Das ist keine gewöhnliche Datei.";
    Write("a b#%.wav", WaveBytes());
    Write("\xFF.wav", WaveBytes());
    std::filesystem::resize_file(Write("giant.wav", WaveBytes()), 1ULL << 42U);
    ASSERT_EQ(mkfifo((folder / "fifo").c_str(), 0600), 0);
    const auto home = "file://" + folder.string();
    const auto host = QSysInfo::machineHostName().toLower().toStdString();
    for (const auto& [url, message] : std::initializer_list<std::pair<std::string, std::string>>{
             {"file://localhost" + folder.string() + "/a%20b%23%25.wav", good},
             {"file://" + host + folder.string() + "/tone.wav", good},
             {home + "/a%20b%23%25.wav/", good},
             {home + "/%FF.wav", good}, // no UTF-8
             {home + "/tone.wav%00.txt", noFile},
             {"http://localhost" + folder.string() + "/tone.wav", noFile},
             {"file://elsewhere.example.org/a.wav", noFile},
             {home + "/giant.wav", ".Wav Datei zu gross !"},
             {home, folder.filename().string() + ": " + notOrdinary},
             {"file:///", std::string("/: ") + notOrdinary},
             {home + "/fifo", std::string("fifo: ") + notOrdinary},
             {home + "/gone.wav", "gone.wav: Die Datei oder das Verzeichnis konnte nicht gefunden werden"},
         }) {
        Drag({url, home + "/fifo"}); // the first counts
        WaitForFile();
        EXPECT_EQ(dialogs.shown.back(), message) << url;
    }
    EXPECT_EQ(dialogs.shown.size(), 12U);
    Drag({"# two files", home + "/tone.wav", home + "/fifo"}); // RFC 2483 has comments
    WaitForFile();
    EXPECT_EQ(dialogs.shown.back(), good);
}

TEST_F(Events, NothingStartsWhileAnotherIsUnderWay)
{
    const auto disturb = [&] {
        EXPECT_EQ(Drag({tone}, Qt::CopyAction, kDrop), kRefused); // it came over the window before
        EXPECT_EQ(Drag({tone}), kRefused);
        for (const auto key : {Qt::Key_8, Qt::Key_Return})
            QTest::keyClick(&Find<QLineEdit>("TextFieldAudioAdresse"), key);
        Find<QRadioButton>("RadioButtonPokEmul").click();
        for (const auto* const item : {"OptionAudioPokEmul", "OptionDefBWindow", "InfoUeber", "EditPaste"})
            Find<QAction>(item).trigger();
    };
    int tried = 0;
    Drag({tone}, Qt::CopyAction, kOver);
    dialogs.onYield = dialogs.whileOpen = [&] {
        ++tried, disturb();
        EXPECT_FALSE(main->close());
    };
    Drop("noise.wav", WaveBytes().samples(Tone(2, 5000))); // yields within, then shows its message
    EXPECT_GT(tried, 2);
    EXPECT_THAT(dialogs.shown, ElementsAre("PC1600 Soundfilegrösse = 5131 KB."));
    EXPECT_EQ(window.TextFieldAudioAdresse.Text(), U"");
    EXPECT_FALSE(window.RadioButtonPokEmul.Value() || menuBar.OptionAudioPokEmul.HasCheckMark() ||
                 menuBar.OptionDefBWindow.HasCheckMark());

    tried = 0;
    dialogs.answer = folder / "SOUND";
    Enter(U"80C5"); // the save dialog, yields within the expansion, then the message
    EXPECT_GT(tried, 3);
    EXPECT_EQ(Read(folder / "SOUND").size(), 5000U + 133);

    dialogs.onYield = dialogs.whileOpen = [] {};
    EXPECT_EQ(Drag({tone}), Qt::CopyAction); // from its answer on a drop has its turn, also before it works
    disturb();
    EXPECT_EQ(dialogs.shown.size(), 2U);
    WaitForFile();
    EXPECT_EQ(window.Title(), "tone.wav / 204 Bytes / 11.025 kHz");
    EXPECT_EQ(Drag({tone}), Qt::CopyAction);
    EXPECT_TRUE(main->close()); // a file that doesn't answer holds nobody, and nothing comes of it later
    WaitForFile();
    QTest::qWait(50);
    EXPECT_EQ(dialogs.shown.size(), 3U);
}

TEST_F(Events, TitleBarIsOnTheScreenHoweverLowThatIs)
{
    window.SetTop(-75);
    window.Show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(main));
    EXPECT_EQ(main->frameGeometry().top(), 0);
}

TEST_F(Events, ReturnAndEnterAreToldByTheKey)
{
    DropTone();
    dialogs.answer = folder / "SOUND";
    auto& field = Find<QLineEdit>("TextFieldAudioAdresse");
    QKeyEvent ctrlM(QEvent::KeyPress, Qt::Key_M, Qt::ControlModifier, "\x0D");
    QKeyEvent ctrlC(QEvent::KeyPress, Qt::Key_C, Qt::ControlModifier, "\x03");
    for (auto* const neither : {&ctrlM, &ctrlC})
        QApplication::sendEvent(&field, neither);
    EXPECT_EQ(dialogs.shown.size(), 1U);
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_EQ(dialogs.shown.size(), 2U); // no address
    QTest::keyClicks(&field, "8999");
    EXPECT_EQ(window.TextFieldAudioAdresse.Text(), U"8999");
    QTest::keyClick(&field, Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(Read(folder / "SOUND").substr(8, 2), "\x99\x89");
}

TEST_F(Events, ExceptionsEndInAMessage)
{
    using Kind = files::IOException::Kind;
    const auto diskFull = std::make_error_code(std::errc::no_space_on_device);
    for (const auto* const language : {"ger", "eng", "fra"}) {
        window.Language = language;
        gate.Run([] { throw std::bad_alloc(); });
        for (const auto kind : {Kind::NoOrdinaryFile, Kind::BeingChanged, Kind::WriteProtected, Kind::FolderProtected,
                                Kind::Exists, Kind::System})
            gate.Run([&] { throw files::IOException(kind, "x/a<b", diskFull); });
    }
    gate.Run([] { throw std::runtime_error("What else?"); });
    EXPECT_THAT(dialogs.shown,
                ElementsAre("Dafür reicht der Speicher nicht.", "a<b: Das ist keine gewöhnliche Datei.",
                            "a<b: Die Datei wird gerade von einem anderen Programm geändert.",
                            "a<b: Diese Datei ist schreibgeschützt.",
                            "a<b: In diesem Ordner kann keine Datei angelegt werden.",
                            "a<b: Unter diesem Namen gibt es inzwischen eine Datei.",
                            "a<b: Kein freier Speicherplatz auf dem Gerät vorhanden",
                            "There is not enough memory for this.", "a<b: This is no ordinary file.",
                            "a<b: The file is being changed by another program.", "a<b: This file is write-protected.",
                            "a<b: No file can be made in this folder.", "a<b: By now there is a file of this name.",
                            "a<b: Kein freier Speicherplatz auf dem Gerät vorhanden", "What else?"));
    dialogs.whileOpen = [] { throw std::bad_alloc(); };
    window.Language = "ger";
    gate.Run([] { throw std::bad_alloc(); }); // no memory even for the message
    EXPECT_TRUE(main->close());               // and the turn is over
}

} // namespace
