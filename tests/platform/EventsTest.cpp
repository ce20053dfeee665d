// The toolkit's events as they reach the window: one at a time, as copies, by key and not by text.
#include "WindowTest.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
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
    Events()
    {
        window.Show();
        for (auto* const each : QApplication::topLevelWidgets())
            if (auto* const found = qobject_cast<QMainWindow*>(each)) main = found;
    }

    template <class Widget>
    Widget& Find(const char* name)
    {
        return *main->findChild<Widget*>(name);
    }

    /// Drags `url` over the window and drops it as a file manager that proposes a move; the action that it is told.
    /// Ignore: not taken, or nothing is left to do for the file manager.
    Qt::DropAction DropUrl(const QUrl& url, Qt::DropActions possible = Qt::MoveAction | Qt::CopyAction)
    {
        QMimeData data;
        if (!url.isEmpty()) data.setUrls({url});
        data.setText("a text beside it");
        QDragEnterEvent enter({10, 10}, possible, &data, Qt::LeftButton, Qt::NoModifier);
        enter.setDropAction(Qt::MoveAction);
        QApplication::sendEvent(main, &enter);
        if (!enter.isAccepted()) return Qt::IgnoreAction;
        QDropEvent drop({10, 10}, possible, &data, Qt::LeftButton, Qt::NoModifier);
        drop.setDropAction(Qt::MoveAction);
        QApplication::sendEvent(main, &drop);
        return drop.isAccepted() ? drop.dropAction() : Qt::IgnoreAction;
    }
    Qt::DropAction DropUrl(const path& file) { return DropUrl(QUrl::fromLocalFile(QString::fromStdString(file))); }

    QMainWindow* main = nullptr;
};

TEST_F(Events, DropIsACopyAndRunsAfterItsEvent)
{
    EXPECT_EQ(DropUrl(Write("tone.wav", WaveBytes().samples(ToneOf160()))), Qt::CopyAction);
    EXPECT_THAT(dialogs.shown, IsEmpty());
    QApplication::processEvents();
    EXPECT_THAT(dialogs.shown, ElementsAre("PC1600 Soundfilegrösse = 152 KB."));
}

TEST_F(Events, DropThatCanOnlyBeAMoveIsTakenAndNotReportedAsOne)
{
    const auto file = Write("tone.wav", WaveBytes().samples(ToneOf160()));
    EXPECT_EQ(DropUrl(QUrl::fromLocalFile(QString::fromStdString(file)), Qt::MoveAction), Qt::IgnoreAction);
    QApplication::processEvents();
    EXPECT_EQ(dialogs.shown.size(), 1U);
}

TEST_F(Events, UrlsAreReadAsTheDesktopWritesThem)
{
    const auto file = "file://localhost" + Write("a b#%.wav", WaveBytes()).parent_path().string();
    for (const auto& url : {file + "/a%20b%23%25.wav", file + "/a%20b%23%25.wav/"}) {
        DropUrl(QUrl(QString::fromStdString(url)));
        QApplication::processEvents();
        EXPECT_EQ(window.Title(), "a b#%.wav / 44 Bytes / 11.025 kHz");
        window.SetTitle("");
    }
    Write("\xFF.wav", WaveBytes());
    DropUrl(QUrl::fromEncoded(QByteArray::fromStdString(file + "/%FF.wav")));
    QApplication::processEvents();
    EXPECT_EQ(window.Title(), "\xEF\xBF\xBD.wav / 44 Bytes / 11.025 kHz");
}

TEST_F(Events, WhatIsNoLocalFileCountsAsNoFile)
{
    for (const auto* const url : {"http://example.org/a.wav", "file://elsewhere.example.org/a.wav"}) {
        EXPECT_EQ(DropUrl(QUrl(url)), Qt::CopyAction);
        QApplication::processEvents();
        EXPECT_EQ(dialogs.shown.back(), "Falsches .Wav Format - Kein PCM !");
    }
    EXPECT_EQ(DropUrl(QUrl()), Qt::IgnoreAction); // a text alone is no file drag
}

TEST_F(Events, OnlyOrdinaryFilesAreOpened)
{
    const auto fifo = folder / "fifo.wav";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const auto vanished = folder / "gone.wav";
    for (const auto& item : {folder, fifo, vanished, path("/dev/null")}) {
        DropUrl(item);
        QApplication::processEvents();
    }
    EXPECT_THAT(dialogs.shown,
                ElementsAre("tonfloss-window-test: This is no ordinary file.", "fifo.wav: This is no ordinary file.",
                            "gone.wav: No such file or directory", "null: This is no ordinary file."));
}

TEST_F(Events, SparseGiantIsRefusedByItsLength)
{
    const auto giant = Write("giant.wav", WaveBytes());
    std::filesystem::resize_file(giant, 3ULL << 30U);
    DropUrl(giant);
    QApplication::processEvents();
    EXPECT_THAT(dialogs.shown, ElementsAre(".Wav Datei zu gross !"));
    EXPECT_EQ(window.strZeile.size(), 16U << 20U);
}

TEST_F(Events, NothingStartsWhileAnotherIsUnderWay)
{
    const auto file = Write("tone.wav", WaveBytes().samples(ToneOf160()));
    int tried = 0;
    dialogs.onYield = dialogs.whileOpen = [&] {
        ++tried;
        EXPECT_EQ(DropUrl(file), Qt::IgnoreAction);
        QTest::keyClick(&Find<QLineEdit>("TextFieldAudioAdresse"), Qt::Key_8);
        Find<QRadioButton>("RadioButtonPokEmul").click();
        main->menuBar()->findChild<QAction*>("OptionAudioPokEmul")->trigger();
        main->menuBar()->findChild<QAction*>("OptionDefBWindow")->trigger();
        main->menuBar()->findChild<QAction*>("InfoUeber")->trigger();
        EXPECT_FALSE(main->close());
        EXPECT_TRUE(main->isVisible());
    };
    Drop("noise.wav", WaveBytes().samples(Tone(2, 2000))); // yields within, then shows its message
    EXPECT_GT(tried, 2);
    EXPECT_THAT(dialogs.shown, ElementsAre("PC1600 Soundfilegrösse = 2131 KB."));
    EXPECT_EQ(window.TextFieldAudioAdresse.Text(), U"");
    EXPECT_TRUE(window.RadioButtonPC1600.Value());
    EXPECT_FALSE(Find<QRadioButton>("RadioButtonPokEmul").isChecked() || menuBar.OptionAudioPokEmul.HasCheckMark());
    EXPECT_FALSE(main->menuBar()->findChild<QAction*>("OptionDefBWindow")->isChecked());

    tried = 0;
    dialogs.answer = folder / "SOUND";
    Enter(U"80C5"); // yields within the expansion, the save dialog, then the message
    EXPECT_GT(tried, 3);
    EXPECT_EQ(Read(folder / "SOUND").size(), 2000U + 133);

    dialogs.onYield = dialogs.whileOpen = [] {};
    EXPECT_TRUE(main->close());
}

TEST_F(Events, ChoicesGoThroughTheirHandlers)
{
    DropTone();
    Find<QRadioButton>("RadioButtonPC1600").click(); // the chosen one
    EXPECT_EQ(window.Title(), "tone.wav / 204 Bytes / 11.025 kHz");
    Find<QRadioButton>("RadioButtonPokEmul").click();
    EXPECT_EQ(window.Title(), "Klangfloss PokEmul");
    EXPECT_TRUE(menuBar.OptionAudioPokEmul.HasCheckMark());
    auto& sharp = *main->menuBar()->findChild<QAction*>("OptionAudioSharp");
    sharp.trigger();
    sharp.trigger(); // a chosen item stays checked
    EXPECT_TRUE(sharp.isChecked() && window.RadioButtonPC1600.Value());
    main->menuBar()->findChild<QAction*>("OptionDefBWindow")->trigger();
    EXPECT_TRUE(menuBar.OptionDefBWindow.HasCheckMark());
}

TEST_F(Events, ReturnAndEnterAreToldByTheKey)
{
    DropTone();
    dialogs.answer = folder / "SOUND";
    auto& field = Find<QLineEdit>("TextFieldAudioAdresse");
    for (const auto& [key, modifier] : {std::pair(Qt::Key_M, Qt::ControlModifier), {Qt::Key_C, Qt::ControlModifier}})
        QTest::keyClick(&field, key, modifier); // their texts are 13 and 3
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

TEST_F(Events, ClientAreaHasItsSizeAndTextsFit)
{
    EXPECT_EQ(main->centralWidget()->size(), QSize(600, 451));
    auto& label = Find<QLabel>("Label2");
    window.Label2.SetText("(Enter, and much more text than the box has room for)");
    EXPECT_LT(label.font().pixelSize(), 14);
    window.Label2.SetText("(Enter)");
    EXPECT_LE(label.sizeHint().width(), label.width());
    window.Label2.SetTextColor(0xFF0000);
    EXPECT_EQ(label.palette().color(QPalette::WindowText), QColor(0xFF, 0, 0));
    window.Label2.SetTextColor(0);
    EXPECT_EQ(label.palette().color(QPalette::WindowText), QApplication::palette().color(QPalette::WindowText));
}

TEST_F(Events, FailedWriteLeavesTheOldFile)
{
    const auto target = Write("old.bin", "old");
    const auto fifo = folder / "fifo";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_THROW(platform::WriteBytes(fifo, "new"), platform::IOException);
    EXPECT_THROW(platform::WriteBytes(folder, "new"), platform::IOException);
    platform::WriteBytes(target, std::string("\r\n\0\xFF", 4));
    EXPECT_EQ(Read(target), std::string("\r\n\0\xFF", 4));
}

} // namespace
