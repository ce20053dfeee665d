#include "window/App.h"

#include "window/SharedTexts.h"
#include "window/Targets.h"

#include <iostream>

namespace {

constexpr MessagePair kDragPrompt{.ger = "Ziehe ein .wav File in das Fenster", .eng = "Drag .wav file into the window"};
constexpr MessagePair kNoArguments{.ger = "tonfloss: Ohne Argumente: Dateien in das Fenster ziehen.",
                                   .eng = "tonfloss: takes no arguments: drop files on the window."};

} // namespace

App::App(platform::Dialogs& dialogs) : Window(Gate, MenuBar, dialogs)
{
    Event_Open();
}

// The start-up texts are English: the window's own texts are German.
void App::Event_Open()
{
    Window.SetTarget(kTargetPC1600);
    Language = "eng";
    if (const auto text = TextFor(Language, kDragPrompt)) Window.LabelDragAndDrop.SetText(*text);
    if (const auto text = TextFor(Language, kSampleFormat)) Window.Label3.SetText(*text);
    if (const auto text = TextFor(Language, kTargetPC1600.title)) Window.SetTitle(*text);
}

void App::RefuseArguments() const
{
    if (const auto text = TextFor(Language, kNoArguments)) std::cerr << *text << '\n';
}
