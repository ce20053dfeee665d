// What a screen reader meets, and what the keyboard reaches.
#include "WindowTest.h"

#include <QAccessible>
#include <QClipboard>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

namespace {

using testing::ElementsAre;

class Accessibility : public WindowTest {
protected:
    Accessibility()
    {
        window.Show();
        main->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(main));
        DropTone();
        window.TextFieldAudioAdresse.SetFocus();
    }
};

TEST_F(Accessibility, EveryControlHasItsRoleItsNameAndAPlaceInTheTabOrder)
{
    std::vector<std::string> spoken;
    const std::map<QAccessible::Role, std::string> roles = {{QAccessible::StaticText, "text"},
                                                            {QAccessible::EditableText, "field"},
                                                            {QAccessible::RadioButton, "radio"},
                                                            {QAccessible::Client, "picture"}};
    const auto listen = [&](const auto& self, QAccessibleInterface* node) -> void {
        const auto role = roles.find(node->role());
        const auto name = node->text(QAccessible::Name) + " " + node->text(QAccessible::Description);
        const bool named = node->object() != nullptr && !node->object()->objectName().startsWith("qt_");
        if (role != roles.end() && named && node->object() != main->centralWidget() && !node->state().invisible)
            spoken.push_back(role->second + ": " + name.trimmed().toStdString());
        for (int i = 0; i < node->childCount(); ++i)
            self(self, node->child(i));
    };
    listen(listen, QAccessible::queryAccessibleInterface(main->centralWidget()));
    EXPECT_THAT(spoken, ElementsAre("text: Drag .wav file into the window", "field: DEFB listing",
                                    "picture: A wave becomes a square wave on a pocket computer",
                                    "field: Lade-/Startaddresse Audiofile (Hexadezimal): "
                                    "Mit 32KB Erweiterung > =80C5\nOhne 32KB Erweiterung > =C0C5",
                                    "text: (Enter)", "text: Lade-/Startaddresse Audiofile (Hexadezimal):",
                                    "text: Use sample format 6000 Hz - 11025 Hz / 8 bit depth / PCM / mono",
                                    "radio: PC-1600 Soundfiles", "radio: PokEmul Emulator Soundfiles",
                                    "text: Mit 32KB Erweiterung > =80C5\nOhne 32KB Erweiterung > =C0C5"));

    std::vector<std::string> reached;
    for (int i = 0; i < 3; ++i) {
        reached.push_back(QApplication::focusWidget()->objectName().toStdString());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_THAT(reached, ElementsAre("TextFieldAudioAdresse", "RadioButtonPC1600", "TextAreaCodeAusgabe"));
}

TEST_F(Accessibility, EditItemsAreEnabledJustWhenTheyCanAct)
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
    auto& field = Find<QLineEdit>("TextFieldAudioAdresse");
    QApplication::clipboard()->clear();
    EXPECT_EQ(enabled(), "");
    QTest::keyClicks(&field, "80C5");
    EXPECT_EQ(enabled(), "Undo SelectAll ");
    Find<QAction>("EditSelectAll").trigger();
    EXPECT_EQ(enabled(), "Undo Cut Copy Clear SelectAll ");
    Find<QAction>("EditCut").trigger();
    EXPECT_EQ(field.text(), "");
    EXPECT_EQ(enabled(), "Undo Paste ");
    Find<QAction>("EditPaste").trigger();
    EXPECT_EQ(field.text(), "80C5");
    window.RadioButtonPC1600.SetFocus();
    EXPECT_EQ(enabled(), "");
}

} // namespace
