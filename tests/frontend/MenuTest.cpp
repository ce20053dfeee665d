// The menus as they are used: by letter, by shortcut, by mouse.
#include "WindowTest.h"

#include <QClipboard>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QUrl>

namespace {

using testing::ElementsAre;

class Menus : public WindowTest {
protected:
    Menus()
    {
        QApplication::clipboard()->clear();
        ShowPrompts();
    }

    /// As a user at the keyboard: the menu's letter with Alt, then the item's.
    void Choose(Qt::Key menu, Qt::Key item)
    {
        QTest::keyClick(main, menu, Qt::AltModifier);
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
    const auto focusOn = [&](QWidget& widget) { widget.setFocus(); };
    focusOn(field);
    QTest::keyClicks(&field, "80C5");
    Choose(Qt::Key_E, Qt::Key_A);
    EXPECT_EQ(field.selectedText(), "80C5");
    Choose(Qt::Key_E, Qt::Key_C);
    EXPECT_EQ(Clipboard(), "80C5");
    QTest::keyClick(&field, Qt::Key_End);
    QTest::keyClicks(&field, "9");
    QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
    Choose(Qt::Key_E, Qt::Key_T);
    EXPECT_EQ(field.text() + Clipboard(), "80C59");
    Choose(Qt::Key_E, Qt::Key_U);
    EXPECT_EQ(field.text(), "80C59");
    QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
    Choose(Qt::Key_E, Qt::Key_D);
    EXPECT_EQ(field.text(), "");
    QTest::keyClick(&field, Qt::Key_Z, Qt::ControlModifier); // shortcuts still work after the menu was open
    EXPECT_EQ(field.text(), "80C59");
    QTest::keyClick(&field, Qt::Key_X, Qt::ControlModifier);
    QTest::keyClick(&field, Qt::Key_V, Qt::ControlModifier);
    Choose(Qt::Key_E, Qt::Key_P);
    EXPECT_EQ(field.text(), "80C5980C59");
}

TEST_F(Menus, ListingCanBeSelectedAndCopiedAndHidesItsSelectionElsewhere)
{
    window.TextAreaCodeAusgabe.SetText("DATEN:\r\tDEFB 255\r");
    area.setFocus();
    Choose(Qt::Key_E, Qt::Key_A);
    Choose(Qt::Key_E, Qt::Key_C);
    EXPECT_EQ(Clipboard(), "DATEN:\n\tDEFB 255\n");
    const auto& palette = area.palette();
    EXPECT_EQ(palette.color(QPalette::Inactive, QPalette::Highlight), palette.color(QPalette::Base));
    EXPECT_EQ(palette.color(QPalette::Inactive, QPalette::HighlightedText), palette.color(QPalette::Text));
    EXPECT_NE(palette.color(QPalette::Active, QPalette::Highlight), palette.color(QPalette::Base));
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
    window.RadioButtonPC1600.SetFocus();
    EXPECT_EQ(enabled(), "");
    CopyFile(Write("tone.wav", WaveBytes()));
    EXPECT_EQ(enabled(), "Paste ");
}

TEST_F(Menus, PasteConvertsAFileFromTheClipboardWhereverTheFocusIs)
{
    CopyFile(Write("pasted.wav", WaveBytes().rate(8000)));
    for (QWidget* const focus :
         {static_cast<QWidget*>(&field), static_cast<QWidget*>(&area), static_cast<QWidget*>(main)}) {
        focus->setFocus();
        window.SetTitle("");
        QTest::keyClick(focus, Qt::Key_V, Qt::ControlModifier);
        EXPECT_EQ(window.Title(), "pasted.wav / 44 Bytes / 8 kHz");
        EXPECT_EQ(field.text(), "");
    }
    CopyFile(Write("stereo.wav", WaveBytes().channels(2)));
    Choose(Qt::Key_E, Qt::Key_P);
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
    EXPECT_THAT(
        dialogs.shown,
        ElementsAre("V.1.00 / 2023\n\nDas Programm wandelt Microsoft Wave Soundfiles in Sharp PC-1600 Sondfiles.\n"
                    "\nGeschrieben von Jorin Falkenau\nErstellt mit C++ und Qt\n"
                    "Lauffähig ab Windows 7 und OS X ab 10.7\n\n"
                    "Mail: tonfloss@example.org\nWEB: https://tonfloss.example.org",
                    "V.1.00 / 2023\n\nThese application converts Microsoft Wave sound files into Sharp PC-1600 "
                    "sound files.\n\nThe application was programmed by Jorin Falkenau\nMade with C++ and Qt\n"
                    "Run up Windows 7 and OS X up 10.7\n\n"
                    "Mail: tonfloss@example.org\nWEB: https://tonfloss.example.org"));
}

TEST_F(Menus, QuitClosesTheWindowByLetterAndByShortcut)
{
    Choose(Qt::Key_F, Qt::Key_Q);
    EXPECT_FALSE(main->isVisible());
    window.Show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(main));
    QTest::keyClick(main, Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(main->isVisible());
    for (const auto* const item : main->menuBar()->findChildren<QAction*>())
        EXPECT_TRUE(item->objectName().isEmpty() || item->isSeparator() || item->menuRole() == QAction::NoRole);
}

} // namespace
