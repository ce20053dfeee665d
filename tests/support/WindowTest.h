// WindowTest.h: the real window, off screen, with dialogs that answer at once and a folder for files.
#pragma once

#include "platform/FolderItem.h"
#include "support/FakeDialogs.h"
#include "support/KnownFile.h"
#include "support/WaveBytes.h"
#include "support/WithBytes.h"
#include "window/App.h"

#include <QtTest>
#include <QtWidgets>

#include <gmock/gmock.h>

using testing::ElementsAre;

inline constexpr auto kNotSaved = "Ups! Da ist ein Fehler passiert.\nPC-1600 Soundfile nicht erstellt!";
inline constexpr auto kSaved = "PC-1600 Soundfile erfogreich erstellt !";

class WindowTest : public testing::Test {
protected:
    using path = std::filesystem::path;

    WindowTest() { window.Language = "ger"; }
    ~WindowTest() override { std::filesystem::remove_all(folder); }

    path Write(const path& name, const std::string& bytes) const
    {
        std::ofstream(folder / name, std::ios::binary) << bytes;
        return folder / name;
    }

    void Drop(const platform::DragItem& item)
    {
        gate.Run([&] { window.Event_DropObject(WithBytes(item)); });
    }
    void Drop(const path& name, const std::string& bytes) { Drop({platform::FolderItemAt(Write(name, bytes))}); }
    void DropTone() { Drop("tone.wav", WaveBytes()); }

    /// Until a file that was dropped or pasted has been read, and its conversion is over.
    void WaitForFile()
    {
        EXPECT_TRUE(QTest::qWaitFor([this] { return static_cast<bool>(gate.TakeTurn()); }));
    }

    /// Types `text` and presses Return.
    void Enter(std::u32string_view text)
    {
        window.TextFieldAudioAdresse.SetText(text);
        gate.Run([&] { window.TextFieldAudioAdresse_KeyDown(U"\x0D"); });
    }

    /// A control or menu item as the toolkit has it.
    template <class Object>
    Object& Find(const char* name) const
    {
        return *main->findChild<Object*>(name);
    }

    /// With the focus in the address field, where keys are to be pressed.
    void ShowPrompts()
    {
        window.Show();
        main->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(main));
        DropTone();
        dialogs.shown.clear();
    }

    /// The prompts for the address that are open.
    std::string Prompts() const
    {
        std::string shown;
        for (const auto* const name : {"TextFieldAudioAdresse", "Label1", "Label2", "Label4"})
            if (!Find<QWidget>(name).isHidden()) shown += std::string(name) + " ";
        return shown;
    }

    const path folder = NewFolder();
    FakeDialogs dialogs;
    App app{dialogs};
    Window1& window = app.Window;
    MainMenuBar& menuBar = app.MenuBar;
    platform::EventGate& gate = app.Gate;
    QMainWindow* const main = [] {
        const auto isMain = [](const auto* each) { return qobject_cast<const QMainWindow*>(each) != nullptr; };
        const auto windows = QApplication::topLevelWidgets();
        return qobject_cast<QMainWindow*>(*std::ranges::find_if(windows, isMain));
    }();
};
