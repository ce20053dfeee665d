#include "App.h"

#include "SharedTexts.h"

namespace {

constexpr MessagePair kDragPrompt{.ger = "Ziehe ein .wav File in das Fenster", .eng = "Drag .wav file into the window"};

} // namespace

void App::Event_Open(Window1& window, MainMenuBar& menuBar)
{
    menuBar.OptionAudioSharp.SetHasCheckMark(true);
    window.RadioButtonPC1600.SetValue(true);
    menuBar.OptionAudioPokEmul.SetHasCheckMark(false);
    window.RadioButtonPokEmul.SetValue(false);
    Language = "eng";
    if (const auto text = TextFor(Language, kDragPrompt)) window.LabelDragAndDrop.SetText(*text);
    if (const auto text = TextFor(Language, kSampleFormat)) window.Label3.SetText(*text);
    if (menuBar.OptionAudioSharp.HasCheckMark()) {
        if (const auto text = TextFor(Language, kTitlePC1600)) window.SetTitle(*text);
    }
    if (menuBar.OptionAudioPokEmul.HasCheckMark()) {
        if (const auto text = TextFor(Language, kTitlePokEmul)) window.SetTitle(*text);
    }
}
