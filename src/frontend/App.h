// App.h: the application object: what happens once, before the user sees the window.
#pragma once

#include "MainMenuBar.h"
#include "Window1.h"

#include <string>

class App {
public:
    std::string Language = "ger"; // of the start-up texts only; the window has a language of its own

    /// Sets target PC-1600 and the start-up texts, which are English: the window's own texts are German.
    void Event_Open(Window1& window, MainMenuBar& menuBar);
};
