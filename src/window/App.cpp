#include "window/App.h"

#include "window/SharedTexts.h"
#include "window/Targets.h"

namespace {

constexpr MessagePair kDragPrompt{.ger = "Ziehe ein .wav File in das Fenster", .eng = "Drag .wav file into the window"};

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
