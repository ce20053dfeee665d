// WindowTest.h: the real window, off screen, with dialogs that answer at once and a folder for files.
#pragma once

#include "App.h"
#include "FakeDialogs.h"
#include "Files.h"
#include "WaveBytes.h"

#include <QApplication>
#include <QMainWindow>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <cstdlib>

inline constexpr auto kNotSaved = "Ups! Da ist ein Fehler passiert.\nPC-1600 Soundfile nicht erstellt!";
inline constexpr auto kSaved = "PC-1600 Soundfile erfogreich erstellt !";

class WindowTest : public testing::Test {
protected:
    using path = std::filesystem::path;

    ~WindowTest() override { std::filesystem::remove_all(folder); }

    path Write(const path& name, const std::string& bytes) const
    {
        std::ofstream(folder / name, std::ios::binary) << bytes;
        return folder / name;
    }
    static std::string Read(const path& file)
    {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    void Drop(const platform::DragItem& item)
    {
        gate.Run([&] { window.Event_DropObject(item); });
    }
    void Drop(const path& name, const std::string& bytes) { Drop({platform::FolderItemAt(Write(name, bytes))}); }
    void DropTone() { Drop("tone.wav", WaveBytes().samples(ToneOf160())); }

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

private:
    static path MakeFolder()
    {
        auto name = (std::filesystem::temp_directory_path() / "tonfloss-XXXXXX").string();
        return mkdtemp(name.data());
    }
    static QMainWindow* MainWindow()
    {
        for (auto* const each : QApplication::topLevelWidgets())
            if (auto* const found = qobject_cast<QMainWindow*>(each)) return found;
        return nullptr;
    }

protected:
    const path folder = MakeFolder();
    FakeDialogs dialogs;
    App app{dialogs};
    Window1& window = app.Window;
    MainMenuBar& menuBar = app.MenuBar;
    platform::EventGate& gate = app.Gate;
    QMainWindow* const main = MainWindow();
};
