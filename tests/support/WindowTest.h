// WindowTest.h: the real window, off screen, with dialogs that answer at once and a folder for files.
#pragma once

#include "App.h"
#include "FakeDialogs.h"
#include "Files.h"
#include "WaveBytes.h"
#include "Window1.h"

#include <QApplication>
#include <QMainWindow>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

class WindowTest : public testing::Test {
protected:
    using path = std::filesystem::path;

    WindowTest()
    {
        std::filesystem::create_directories(folder);
        App().Event_Open(window, menuBar);
        for (auto* const each : QApplication::topLevelWidgets())
            if (auto* const found = qobject_cast<QMainWindow*>(each)) main = found;
    }
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

    const path folder = path(testing::TempDir()) / "tonfloss-window-test";
    FakeDialogs dialogs;
    platform::EventGate gate{dialogs};
    MainMenuBar menuBar{gate};
    Window1 window{gate, menuBar, dialogs};
    QMainWindow* main = nullptr;
};
