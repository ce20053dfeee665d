// App.h: the program as one object: the gate for its events, the menu bar and the window.
#pragma once

#include "platform/EventGate.h"
#include "window/MainMenuBar.h"
#include "window/Window1.h"

#include <string>

class App {
public:
    /// Ready for the user, but not shown yet.
    explicit App(platform::Dialogs& dialogs);

    /// Says on standard error that there are none.
    void RefuseArguments() const;

    std::string Language = "ger"; // of the start-up texts only; the window has a language of its own

    platform::EventGate Gate{[this](const std::exception& failure) { Window.TellOfFailure(failure); }};
    MainMenuBar MenuBar{Gate};
    Window1 Window;

private:
    void Event_Open();
};
