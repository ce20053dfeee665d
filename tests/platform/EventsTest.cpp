// The toolkit's events as they reach the window: one at a time, as copies, by key and not by text.
#include "WindowTest.h"

#include <QAction>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QRadioButton>
#include <QTest>
#include <QUrl>

#include <sys/stat.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Events : public WindowTest {
protected:
    /// Drags `url` over the window and drops it, as a file manager that would rather move the file; its answer.
    Qt::DropAction DropUrl(const QUrl& url, Qt::DropActions possible = Qt::MoveAction | Qt::CopyAction)
    {
        QMimeData data;
        if (!url.isEmpty()) data.setUrls({url});
        data.setText("a text beside it");
        QDragEnterEvent enter({10, 10}, possible, &data, Qt::LeftButton, Qt::NoModifier);
        enter.setDropAction(Qt::MoveAction);
        QApplication::sendEvent(main, &enter);
        if (!enter.isAccepted()) return Qt::TargetMoveAction; // not taken at all
        QDropEvent drop({10, 10}, possible, &data, Qt::LeftButton, Qt::NoModifier);
        drop.setDropAction(Qt::MoveAction);
        QApplication::sendEvent(main, &drop);
        return drop.isAccepted() ? drop.dropAction() : Qt::TargetMoveAction;
    }
};

TEST_F(Events, DropIsNeverAMoveAndRunsAfterItsEvent)
{
    const QUrl tone("file://" + QString::fromStdString(Write("tone.wav", WaveBytes()).string()));
    EXPECT_EQ(DropUrl(tone), Qt::CopyAction);
    EXPECT_THAT(dialogs.shown, IsEmpty());
    QApplication::processEvents();
    EXPECT_EQ(dialogs.shown.size(), 1U);
    EXPECT_EQ(DropUrl(tone, Qt::MoveAction), Qt::IgnoreAction); // taken, and nothing is left to do for its source
    QApplication::processEvents();
    EXPECT_EQ(dialogs.shown.size(), 2U);
    EXPECT_EQ(DropUrl(QUrl()), Qt::TargetMoveAction); // a text alone is no file
}

TEST_F(Events, EveryDropEndsInItsMessage)
{
    const auto good = "PC1600 Soundfilegrösse = 132 KB.";
    const auto noFile = "Falsches .Wav Format - Kein PCM !";
    Write("a b#%.wav", WaveBytes());
    Write("\xFF.wav", WaveBytes());
    std::filesystem::resize_file(Write("giant.wav", WaveBytes()), 3ULL << 30U);
    ASSERT_EQ(mkfifo((folder / "fifo").c_str(), 0600), 0);
    const auto home = "file://" + folder.string();
    for (const auto& [url, message] : std::initializer_list<std::pair<std::string, std::string>>{
             {"file://localhost" + folder.string() + "/a%20b%23%25.wav", good},
             {home + "/a%20b%23%25.wav/", good},
             {home + "/%FF.wav", good}, // no UTF-8
             {"http://example.org/a.wav", noFile},
             {"file://elsewhere.example.org/a.wav", noFile},
             {home + "/giant.wav", ".Wav Datei zu gross !"},
             {home, "tonfloss-window-test: This is no ordinary file."},
             {home + "/fifo", "fifo: This is no ordinary file."},
             {home + "/gone.wav", "gone.wav: No such file or directory"},
             {"file:///dev/null", "null: This is no ordinary file."},
         }) {
        DropUrl(QUrl::fromEncoded(QByteArray::fromStdString(url)));
        QApplication::processEvents();
        EXPECT_EQ(dialogs.shown.back(), message) << url;
    }
    EXPECT_EQ(dialogs.shown.size(), 10U);
}

TEST_F(Events, NothingStartsWhileAnotherIsUnderWay)
{
    const QUrl tone("file://" + QString::fromStdString(Write("tone.wav", WaveBytes()).string()));
    int tried = 0;
    dialogs.onYield = dialogs.whileOpen = [&] {
        ++tried;
        EXPECT_EQ(DropUrl(tone), Qt::TargetMoveAction);
        for (const auto key : {Qt::Key_8, Qt::Key_Return})
            QTest::keyClick(&Find<QLineEdit>("TextFieldAudioAdresse"), key);
        Find<QRadioButton>("RadioButtonPokEmul").click();
        Find<QAction>("OptionAudioPokEmul").trigger();
        Find<QAction>("OptionDefBWindow").trigger();
        Find<QAction>("InfoUeber").trigger();
        EXPECT_FALSE(main->close());
    };
    Drop("noise.wav", WaveBytes().samples(Tone(2, 2000))); // yields within, then shows its message
    EXPECT_GT(tried, 2);
    EXPECT_THAT(dialogs.shown, ElementsAre("PC1600 Soundfilegrösse = 2131 KB."));
    EXPECT_EQ(window.TextFieldAudioAdresse.Text(), U"");
    EXPECT_TRUE(window.RadioButtonPC1600.Value());
    EXPECT_FALSE(Find<QRadioButton>("RadioButtonPokEmul").isChecked() || menuBar.OptionAudioPokEmul.HasCheckMark());
    EXPECT_FALSE(Find<QAction>("OptionDefBWindow").isChecked());

    tried = 0;
    dialogs.answer = folder / "SOUND";
    Enter(U"80C5"); // yields within the expansion, the save dialog, then the message
    EXPECT_GT(tried, 3);
    EXPECT_EQ(Read(folder / "SOUND").size(), 2000U + 133);

    dialogs.onYield = dialogs.whileOpen = [] {};
    EXPECT_TRUE(main->close());
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
    QTest::keyClicks(&field, "80C5");
    EXPECT_EQ(window.TextFieldAudioAdresse.Text(), U"80C5");
    QTest::keyClick(&field, Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_TRUE(std::filesystem::exists(folder / "SOUND"));
}

TEST_F(Events, ExceptionsEndInAMessage)
{
    EXPECT_TRUE(gate.Run([] { throw std::bad_alloc(); }));
    EXPECT_TRUE(gate.Run([] { throw platform::IOException("a<b.wav: reason"); }));
    EXPECT_THAT(dialogs.shown, ElementsAre("There is not enough memory for this.", "a<b.wav: reason"));
    EXPECT_FALSE(gate.Busy());
}

TEST_F(Events, TextsFitTheirBoxesAndBlackIsTheDesktopsOwnColour)
{
    EXPECT_EQ(main->centralWidget()->size(), QSize(600, 451));
    auto& label = Find<QLabel>("Label2");
    window.Label2.SetText("(Enter now)");
    EXPECT_LE(label.fontMetrics().horizontalAdvance(label.text()), label.width());
    window.Label2.SetTextColor(0xFF0000);
    EXPECT_EQ(label.palette().color(QPalette::WindowText), QColor(0xFF, 0, 0));
    window.Label2.SetTextColor(0);
    EXPECT_EQ(label.palette().color(QPalette::WindowText), QApplication::palette().color(QPalette::WindowText));
}

} // namespace
