// The menus as they are used: by letter, by shortcut, by mouse.
#include "support/WindowTest.h"

#include <cstdlib>
#include <random>

namespace {

class Menus : public WindowTest {
protected:
    Menus()
    {
        QApplication::clipboard()->clear();
        ShowPrompts();
    }

    /// As a user at the keyboard: Alt, the menu's letter, the item's.
    void Choose(Qt::Key menu, Qt::Key item)
    {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Alt, Qt::AltModifier);
        QTest::keyClick(QApplication::focusWidget(), menu);
        ASSERT_NE(QApplication::activePopupWidget(), nullptr);
        QTest::keyClick(QApplication::activePopupWidget(), item);
    }

    static QString Clipboard() { return QApplication::clipboard()->text(); }
    void CopyFile(const path& file) const
    {
        auto* const data = new QMimeData; // as file managers put it there
        data->setUrls({QUrl::fromLocalFile(QString::fromStdString(file))});
        data->setText(QString::fromStdString(file));
        QApplication::clipboard()->setMimeData(data);
    }

    QLineEdit& field = Find<QLineEdit>("TextFieldAudioAdresse");
    QPlainTextEdit& area = Find<QPlainTextEdit>("TextAreaCodeAusgabe");
};

TEST_F(Menus, EditItemsWorkOnTheFieldByLetterAndByShortcut)
{
    const auto letter = [&](Qt::Key key) { Choose(Qt::Key_E, key); };
    const auto shortcut = [&](Qt::Key key) { QTest::keyClick(&field, key, Qt::ControlModifier); };
    const auto fieldAndClipboard = [&] { return (field.text() + "|" + Clipboard()).toStdString(); };
    QTest::keyClicks(&field, "80C5");
    letter(Qt::Key_A);
    letter(Qt::Key_C);
    EXPECT_EQ(fieldAndClipboard(), "80C5|80C5");
    QTest::keyClicks(&field, "9AB"); // over the selection
    shortcut(Qt::Key_A);
    letter(Qt::Key_T);
    EXPECT_EQ(fieldAndClipboard(), "|9AB");
    letter(Qt::Key_U);
    EXPECT_EQ(fieldAndClipboard(), "9AB|9AB");
    shortcut(Qt::Key_A);
    letter(Qt::Key_D);
    EXPECT_EQ(fieldAndClipboard(), "|9AB");
    shortcut(Qt::Key_Z); // shortcuts still work after the menu was open
    shortcut(Qt::Key_A);
    QTest::keyClicks(&field, "C");
    shortcut(Qt::Key_A);
    shortcut(Qt::Key_C);
    shortcut(Qt::Key_X);
    EXPECT_EQ(fieldAndClipboard(), "|C");
    shortcut(Qt::Key_V);
    letter(Qt::Key_P);
    EXPECT_EQ(fieldAndClipboard(), "CC|C");
}

TEST_F(Menus, DeleteTakesTheSelectionAloneAndNothingIsPastedIntoTheListing)
{
    QTest::keyClicks(&field, "80C5");
    field.setSelection(1, 2);
    Find<QAction>("EditClear").trigger();
    EXPECT_EQ(field.text(), "85");
    QApplication::clipboard()->setText("C0");
    field.setCursorPosition(1);
    QTest::keyClick(&field, Qt::Key_Insert, Qt::ShiftModifier);
    EXPECT_EQ(field.text(), "8C05");
    area.setFocus();
    QTest::keyClick(&area, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(area.toPlainText() + field.text(), "8C05");
}

TEST_F(Menus, PastedFileIsWatchedForAWhileAndAHeldKeyPastesOnce)
{
    CopyFile(Write("growing.wav", WaveBytes()));
    QTest::keyClick(&field, Qt::Key_V, Qt::ControlModifier);
    QTimer::singleShot(100, main, [&] { Write("growing.wav", std::string(WaveBytes()) + "more"); });
    WaitForFile(); // the timer comes: the window stays alive
    EXPECT_THAT(dialogs.shown, ElementsAre("growing.wav: Die Datei wird gerade von einem anderen Programm geändert."));
    EXPECT_FALSE(Find<QAction>("EditPaste").autoRepeat());
    QKeyEvent released(QEvent::KeyRelease, Qt::Key_V, Qt::ControlModifier);
    QKeyEvent unmarked(QEvent::ShortcutOverride, Qt::Key_V, Qt::ControlModifier); // so come some under X11
    released.setTimestamp(1600);
    unmarked.setTimestamp(1600);
    unmarked.ignore();
    QApplication::sendEvent(&field, &released);
    QApplication::sendEvent(&field, &unmarked);
    EXPECT_TRUE(unmarked.isAccepted()); // no shortcut for the menu
}

TEST_F(Menus, ListingAsAUserCopiesItIsTheRunBytesToAnAssembler)
{
    std::mt19937 random(1600);
    std::string samples;
    for (int i = 0; i < 3000; ++i)
        samples += std::string(random() % 5 != 0 ? 1 + random() % 40 : random() % 800, '\xC8') + '\x32';
    menuBar.OptionDefBWindow.SetHasCheckMark(true);
    Drop("noise.wav", WaveBytes().samples(samples));
    dialogs.answer = folder / "SOUND";
    Enter(U"80C5");
    area.setFocus();
    Choose(Qt::Key_E, Qt::Key_A);
    Choose(Qt::Key_E, Qt::Key_C);
    Write("listing.asm", Clipboard().toStdString());
    ASSERT_EQ(std::system(("cd " + folder.string() + " && pasmo listing.asm listing.bin").c_str()), 0);
    EXPECT_EQ(Read(folder / "listing.bin") + std::string(2, '\0'), Read(folder / "SOUND").substr(131));
}

TEST_F(Menus, EditItemsAreEnabledJustWhenTheyCanAct)
{
    auto& menu = *main->menuBar()->actions().at(1)->menu();
    const auto enabled = [&] {
        std::string names;
        emit menu.aboutToShow();
        for (const auto* const item : menu.actions())
            if (!item->isSeparator() && item->isEnabled()) names += item->objectName().mid(4).toStdString() + " ";
        emit menu.aboutToHide();
        return names;
    };
    EXPECT_EQ(enabled(), "");
    QTest::keyClicks(&field, "80C5");
    EXPECT_EQ(enabled(), "Undo SelectAll ");
    field.selectAll();
    EXPECT_EQ(enabled(), "Undo Cut Copy Clear SelectAll ");
    field.cut();
    EXPECT_EQ(enabled(), "Undo Paste ");
    for (QWidget* const empty : std::initializer_list<QWidget*>{&area, main->centralWidget()}) {
        empty->setFocus();
        EXPECT_EQ(enabled(), "");
    }
    auto* const noAddress = new QMimeData;
    noAddress->setData("text/uri-list", "\r\n"); // offers addresses and has none
    QApplication::clipboard()->setMimeData(noAddress);
    EXPECT_EQ(enabled(), "");
    CopyFile(Write("tone.wav", WaveBytes()));
    EXPECT_EQ(enabled(), "Paste ");
}

TEST_F(Menus, PasteConvertsAFileFromTheClipboardWhereverTheFocusIs)
{
    Choose(Qt::Key_E, Qt::Key_Escape); // with an empty clipboard, so that Paste was disabled
    main->activateWindow();
    CopyFile(Write("pasted.wav", WaveBytes().rate(8000)));
    for (QWidget* const focus : std::initializer_list<QWidget*>{&field, &area, main}) {
        focus->setFocus();
        window.SetTitle("");
        QTest::keyClick(focus, Qt::Key_V, Qt::ControlModifier);
        WaitForFile();
        EXPECT_EQ(window.Title(), "pasted.wav / 204 Bytes / 8 kHz");
        EXPECT_EQ(field.text(), "");
    }
    window.SetTitle("");
    QTest::keyClick(main, Qt::Key_Insert, Qt::ShiftModifier); // the other key that the desktop has for it
    WaitForFile();
    EXPECT_EQ(window.Title(), "pasted.wav / 204 Bytes / 8 kHz");
    field.setFocus();
    field.setText("80");
    Choose(Qt::Key_E, Qt::Key_A);
    main->activateWindow();
    EXPECT_EQ(field.selectedText(), "80"); // no other item takes the file
    CopyFile(Write("stereo.wav", WaveBytes().channels(2)));
    Choose(Qt::Key_E, Qt::Key_P);
    WaitForFile();
    EXPECT_EQ(dialogs.shown.back(), "Falsches .Wav Format - Kein Mono !");
    EXPECT_EQ(window.Label3.Text().substr(0, 18), "Wavefile Format OK"); // as after a drag
    EXPECT_EQ(window.LabelDragAndDrop.TextColor(), kRed);
}

TEST_F(Menus, OptionAndInfo)
{
    Choose(Qt::Key_F, Qt::Key_Right);
    for (const auto key : {Qt::Key_Right, Qt::Key_Up, Qt::Key_Return}) // the last item of Option
        QTest::keyClick(QApplication::activePopupWidget(), key);
    EXPECT_TRUE(menuBar.OptionDefBWindow.HasCheckMark() && Find<QAction>("OptionDefBWindow").isChecked());
    Find<QAction>("OptionDefBWindow").trigger();
    EXPECT_FALSE(menuBar.OptionDefBWindow.HasCheckMark());

    Find<QAction>("InfoUeber").trigger();
    window.Language = "eng";
    Find<QAction>("InfoUeber").trigger();
    // clang-format off
    EXPECT_THAT(dialogs.shown, ElementsAre(
        "V.1.00 / 2023\n\nDas Programm wandelt Microsoft Wave Soundfiles in Sharp PC-1600 Sondfiles.\n\n"
        "Geschrieben von Jorin Falkenau\nErstellt mit C++ und Qt\nLauffähig ab Windows 7 und OS X ab 10.7\n\n"
        "Mail: tonfloss@example.org\nWEB: https://tonfloss.example.org",
        "V.1.00 / 2023\n\nThese application converts Microsoft Wave sound files into Sharp PC-1600 sound files.\n\n"
        "The application was programmed by Jorin Falkenau\nMade with C++ and Qt\nRun up Windows 7 and OS X up 10.7\n\n"
        "Mail: tonfloss@example.org\nWEB: https://tonfloss.example.org"));
    // clang-format on
}

TEST_F(Menus, QuitClosesTheWindowByLetterAndByShortcut)
{
    Choose(Qt::Key_F, Qt::Key_Q);
    EXPECT_FALSE(main->isVisible());
    window.Show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(main));
    QTest::keyClick(main, Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(main->isVisible());
    QString texts;
    for (const auto* const menu : main->menuBar()->actions()) {
        texts += menu->text() + ": ";
        for (const auto* const item : menu->menu()->actions()) {
            texts += item->text() + " " + item->shortcut().toString() + (item->isCheckable() ? "check, " : ", ");
            EXPECT_TRUE(item->isSeparator() || item->menuRole() == QAction::NoRole);
        }
    }
    EXPECT_EQ(texts,
              "&File: &Quit Ctrl+Q, &Edit: &Undo Ctrl+Z,  , Cu&t Ctrl+X, &Copy Ctrl+C, &Paste Ctrl+V, &Delete ,  , "
              "Select &All Ctrl+A, Option: Audio PC-1600 check,  , Audio PokEmul check,  , DEFB Window check, "
              "Info: About , ");
}

} // namespace
