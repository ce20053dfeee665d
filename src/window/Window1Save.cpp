// From the finished image to the file.
#include "core/SoundFileImage.h"
#include "platform/Files.h"
#include "window/FileTypes1.h"
#include "window/Window1.h"

namespace {

constexpr MessagePair kSaved{.ger = "PC-1600 Soundfile erfogreich erstellt !",
                             .eng = "PC-1600 soundfile successfully created !"};
constexpr MessagePair kNotSaved{.ger = "Ups! Da ist ein Fehler passiert.\nPC-1600 Soundfile nicht erstellt!",
                                .eng = "Oops! There's been a mistake.\nPC-1600 soundfile not created!"};

} // namespace

// False where the file couldn't be written: the address entry stays open for another try.
bool Window1::DoSaveAS()
{
    if (addressEntry_ != AddressEntry::WithImage) {
        ShowMessage(kNotSaved);
        return true;
    }
    platform::SaveAsDialog dialog;
    dialog.InitialDirectory = platform::Documents();
    if (menuBar_.OptionAudioSharp.HasCheckMark()) dialog.PromptText = "Save PC-1600 Sound File";
    if (menuBar_.OptionAudioPokEmul.HasCheckMark()) dialog.PromptText = "Save PokEmul Sound File";
    dialog.SuggestedFileName = "SOUND";
    dialog.Title = "Title Property";
    dialog.Filter = platform::FilterText(FileTypes1::Binary);
    const auto chosen = dialogs_.ShowModal(dialog);

    const auto& header = menuBar_.OptionAudioSharp.HasCheckMark() ? HeaderPC1600 : HeaderPokeMul;
    BinStringPC1600 = core::SoundFileImage(header, BinZeile, RuntimeBackgroundTask);
    try {
        if (chosen) platform::WriteBytes(*chosen, BinStringPC1600);
    } catch (const platform::IOException& failure) {
        ShowMessage(kNotSaved);
        UnhandledException(failure);
        return false;
    }
    ShowMessage(chosen ? kSaved : kNotSaved);
    return true;
}
