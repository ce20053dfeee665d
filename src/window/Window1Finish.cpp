// The end of a drop: the program length, what the size means, and the prompts for the load address.
#include "core/ImageSize.h"
#include "core/SoundFileHeader.h"
#include "window/Targets.h"

#include <string>

namespace {

// The braces take the size.
constexpr MessagePair kSize{.ger = "PC1600 Soundfilegrösse = {} KB.", .eng = "PC-1600 sound file size = {} KB."};
constexpr MessagePair kNeedsExtension{
    .ger = "PC-1600 Soundfilegrösse = {} KB.\nBenötigt wird eine 32 KB Erweiterung in Slot 1 ",
    .eng = "PC-1600 sound file size = {} KB.\nYou need a 32 KB memory extention in Slot 1 "};
constexpr MessagePair kImageTooLarge{
    .ger = "PC1600 Soundfilegrösse = {}KB. Soundfile ist zu gross! \n Soundfile wird nicht erstellt!",
    .eng = "PC-1600 sound file size = {}KB. file size too large !\n Sound file is not created"};

constexpr MessagePair kAddressPrompt{.ger = "Lade-/Startaddresse Audiofile (Hexadezimal):",
                                     .eng = "Loading-/starting address audiofile (Hexadecimal):"};
constexpr MessagePair kAddressLimits{.ger = "Mit 32KB Erweiterung > =80C5\r\nOhne 32KB Erweiterung > =C0C5",
                                     .eng = "With 32KB extension > =80C5\r\nWithout 32KB extension >= C0C5"};

} // namespace

void Window1::FinishImage()
{
    if (const auto* const target = Target(); target != nullptr && target->layout.HasFileHeader()) PatchProgramLength();
    LabelDragAndDrop.SetTextColor(kBlack);
    Label3.SetTextColor(kBlack);

    switch (core::SizeBandOf(Datengroesse)) {
    case core::SizeBand::Size: ShowSize(kSize); break;
    case core::SizeBand::Silent: break;
    case core::SizeBand::NeedsExtension: ShowSize(kNeedsExtension); break;
    case core::SizeBand::TooLarge: ShowSize(kImageTooLarge); return RefuseImage();
    }
    ShowPrompts();
}

void Window1::ShowSize(const MessagePair& message)
{
    if (const auto text = TextFor(Language, message)) {
        std::string withSize(*text);
        dialogs_.MsgBox(withSize.replace(withSize.find("{}"), 2, std::to_string(Datengroesse)));
    }
}

// Leaves Datengroesse at the size of header and run bytes.
void Window1::PatchProgramLength()
{
    const std::int64_t ProgramLength = Datengroesse + HeaderLaenge - core::kFileHeaderTokens;
    if (const auto tokens = core::WordTokensOf(ProgramLength)) {
        PrgLngLowByte = tokens->low;
        PrgLngHighByte = tokens->high;
    }
    HeaderPC1600 = core::WithProgramLength(HeaderPC1600, {PrgLngLowByte, PrgLngHighByte});
    Datengroesse = ProgramLength + core::kFileHeaderTokens;
}

void Window1::ShowPrompts()
{
    SetText(Label1, kAddressPrompt);
    SetText(Label4, kAddressLimits);
    OpenAddressEntry();
}

void Window1::RefuseImage()
{
    EmptyListing();
    TextFieldAudioAdresse.SetText(U"");
    SetTitle("");
}
