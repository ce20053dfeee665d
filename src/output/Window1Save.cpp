// From the finished image to the file.
#include "FileTypes1.h"
#include "Files.h"
#include "SoundFileImage.h"
#include "Window1.h"

#include <exception>

namespace {

constexpr MessagePair kSaved{.ger = "PC-1600 Soundfile erfogreich erstellt !",
                             .eng = "PC-1600 soundfile successfully created !"};
constexpr MessagePair kNotSaved{.ger = "Ups! Da ist ein Fehler passiert.\nPC-1600 Soundfile nicht erstellt!",
                                .eng = "Oops! There's been a mistake.\nPC-1600 soundfile not created!"};

} // namespace

// A failure leaves it as an exception, after the message, so that the address entry stays open for another try.
void Window1::DoSaveAS()
{
    platform::SaveAsDialog dialog;
    dialog.InitialDirectory = platform::Documents();
    if (menuBar_.OptionAudioSharp.HasCheckMark()) dialog.PromptText = "Save PC-1600 Sound File";
    if (menuBar_.OptionAudioPokEmul.HasCheckMark()) dialog.PromptText = "Save PokEmul Sound File";
    dialog.SuggestedFileName = "SOUND";
    dialog.Title = "Title Property";
    dialog.Filter = platform::FilterText(FileTypes1::Binary);
    const auto chosen = dialogs_.ShowModal(dialog);

    try {
        ExpandImage();
        if (chosen) platform::WriteBytes(*chosen, BinStringPC1600);
    } catch (const std::exception&) {
        BinStringPC1600.clear(); // the next try appends to it
        ShowMessage(kNotSaved);
        throw;
    }
    ShowMessage(chosen ? kSaved : kNotSaved);
}

// The run bytes are read two tokens past the end mark, so that two bytes 00 follow it.
void Window1::ExpandImage()
{
    if (menuBar_.OptionAudioSharp.HasCheckMark()) {
        output::AppendBytes(BinStringPC1600, HeaderPC1600, HeaderLaenge - 1, RuntimeBackgroundTask);
        output::AppendBytes(BinStringPC1600, BinZeile, Datengroesse - HeaderLaenge + 1, RuntimeBackgroundTask);
    }
    if (menuBar_.OptionAudioPokEmul.HasCheckMark()) {
        output::AppendBytes(BinStringPC1600, HeaderPokeMul, HeaderLaenge - 1, RuntimeBackgroundTask);
        output::AppendBytes(BinStringPC1600, BinZeile, Datengroesse + 1, RuntimeBackgroundTask);
    }
}
