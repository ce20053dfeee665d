// The load address: typed, tested, patched into the header, and then the save.
#include "core/LoadAddress.h"
#include "core/SoundFileHeader.h"
#include "window/SharedTexts.h"
#include "window/Targets.h"

#include <cassert>

namespace {

constexpr std::u32string_view kReturn = U"\x0D";
constexpr std::u32string_view kEnter = U"\x03";

constexpr MessagePair kWrongLength{.ger = "Lade-/Startadresse >&80C5 <&EFFF",
                                   .eng = "Loading-/starting adress >&80C5 <&EFFF"};
constexpr MessagePair kOutOfRange{.ger = "Lade-/Startadresse >&80C5 <&EFFF",
                                  .eng = "Loading-/starting address >&80C5 <&EFFF"};
constexpr MessagePair kTooHigh{.ger = "Lade-/Startadresse zu Hoch !", .eng = "Loading-/starting address too high"};

} // namespace

// The result is always false: every key goes on to the field.
bool Window1::TextFieldAudioAdresse_KeyDown(std::u32string_view key)
{
    AdresseAudioFile.clear();
    if (key != kReturn && key != kEnter) return false;

    AdresseAudioFile = TextFieldAudioAdresse.Text();
    const auto address = core::LoadAddressOf(AdresseAudioFile, Datengroesse);
    const auto* const refusal = std::get_if<core::AddressRefusal>(&address);
    if (refusal != nullptr && *refusal == core::AddressRefusal::Length) {
        ForgetAddress();
        ShowMessage(kWrongLength);
        return false;
    }
    AdresseAudioFile.insert(0, U"&H");
    if (refusal != nullptr) {
        ShowMessage(*refusal == core::AddressRefusal::Range ? kOutOfRange : kTooHigh);
        ForgetAddress();
        return false;
    }
    PatchAddress(std::get<std::int64_t>(address));
    if (DoSaveAS()) CloseAddressEntry();
    return false;
}

void Window1::ForgetAddress()
{
    AdresseAudioFile.clear();
    TextFieldAudioAdresse.SetText(U"");
}

void Window1::PatchAddress(std::int64_t address)
{
    const auto tokens = core::WordTokensOf(address);
    assert(tokens);
    LowByteDatenAnfang = tokens->low;
    HighByteDatenAnfang = tokens->high;
    if (const auto* const target = Target(); target != nullptr && target->layout.HasFileHeader())
        HeaderPC1600 = core::WithAddress(HeaderPC1600, *tokens);
}

void Window1::OpenAddressEntry()
{
    addressEntry_ = AddressEntry::WithImage;
    TextFieldAudioAdresse.SetVisible(true);
    TextFieldAudioAdresse.SetFocus();
    Label1.SetVisible(true);
    Label4.SetVisible(true);
    Label2.SetVisible(true);
}

void Window1::CloseAddressEntry()
{
    addressEntry_ = AddressEntry::Closed;
    TextFieldAudioAdresse.SetVisible(false);
    Label1.SetVisible(false);
    Label2.SetVisible(false);
    Label4.SetVisible(false);
    SetText(Label3, kSampleFormat);
}
