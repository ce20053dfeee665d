// From the finished image to the file.
#include "core/SoundFileImage.h"
#include "files/Files.h"
#include "platform/FolderItem.h"
#include "window/FileTypes1.h"
#include "window/Targets.h"

namespace {

constexpr MessagePair kSaved{.ger = "PC-1600 Soundfile erfogreich erstellt !",
                             .eng = "PC-1600 soundfile successfully created !"};
constexpr MessagePair kNotSaved{.ger = "Ups! Da ist ein Fehler passiert.\nPC-1600 Soundfile nicht erstellt!",
                                .eng = "Oops! There's been a mistake.\nPC-1600 soundfile not created!"};

} // namespace

// False where the file couldn't be written: the address entry stays open for another try. So it does where the window
// was closed meanwhile: there is nobody to tell any more. Without a target there is nothing to make, and so nothing to
// save.
bool Window1::DoSaveAS()
{
    const auto* const target = Target();
    if (target == nullptr || addressEntry_ != AddressEntry::WithImage) {
        ShowMessage(kNotSaved);
        return true;
    }
    platform::SaveAsDialog dialog;
    dialog.InitialDirectory = platform::Documents();
    dialog.PromptText = target->savePrompt;
    dialog.SuggestedFileName = "SOUND";
    dialog.Title = "Title Property";
    dialog.Filter = platform::FilterText(FileTypes1::Binary);
    const auto chosen = dialogs_.ShowModal(dialog);

    BinStringPC1600 = core::SoundFileImage(this->*target->header, BinZeile, RuntimeBackgroundTask);
    try {
        const auto write = [chosen, bytes = BinStringPC1600] { files::Write(chosen->File, chosen->Existing, bytes); };
        if (chosen && !WaitFor(write)) return false;
    } catch (const files::IOException& failure) {
        ShowMessage(kNotSaved);
        TellOfFailure(failure);
        return false;
    }
    ShowMessage(chosen ? kSaved : kNotSaved);
    return true;
}
