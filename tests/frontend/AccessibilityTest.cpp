// What a screen reader meets, and what the keyboard reaches.
#include "WindowTest.h"

#include <QAccessible>

namespace {

using testing::ElementsAre;

TEST_F(WindowTest, EveryControlHasItsRoleItsNameAndAPlaceInTheTabOrder)
{
    ShowPrompts();
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

} // namespace
