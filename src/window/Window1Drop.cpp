// The road from a dropped file to its run bytes. Each refusal is one message and a plain return.
#include "core/HexTokenText.h"
#include "core/PeriodEncoder.h"
#include "core/SoundFileHeader.h"
#include "core/TextLibrary.h"
#include "core/WaveAcceptance.h"
#include "platform/FolderItem.h"
#include "platform/Texts.h"
#include "window/SharedTexts.h"
#include "window/Targets.h"

#include <utility>

namespace {

constexpr MessagePair kTooLarge{.ger = ".Wav Datei zu gross !", .eng = ".wav file size too large !"};
constexpr MessagePair kTooLargeTitle{.ger = "Klangfloss PC1600", .eng = "Tonfloss PC1600"};

constexpr MessagePair kNoPcm{.ger = "Falsches .Wav Format - Kein PCM !", .eng = "Wrong .wav format - No PCM !"};
constexpr MessagePair kNoMono{.ger = "Falsches .Wav Format - Kein Mono !", .eng = "Wrong .wav format - No mono !"};
constexpr MessagePair kWrongRate{.ger = "Falsches .Wav Format - Benutze 6000 - 11025 Samples pro Sekunde !",
                                 .eng = "Wrong .wav format  - need 6000 - 11025 samples pro second !"};
constexpr MessagePair kNo8Bit{.ger = "Falsches .Wav Format - Keine 8 Bit Encodierung!",
                              .eng = "Wrong .wav format - no 8 bit encoding!"};

constexpr MessagePair kListingHead{.ger = "DATEN:", .eng = "DATA:"};

const MessagePair& MessageFor(core::WaveRefusal refusal)
{
    switch (refusal) {
    case core::WaveRefusal::FormatTag: return kNoPcm;
    case core::WaveRefusal::Channels: return kNoMono;
    case core::WaveRefusal::SampleRate: return kWrongRate;
    case core::WaveRefusal::BitsPerSample: break;
    }
    return kNo8Bit;
}

} // namespace

void Window1::Event_DropObject(const platform::DragItem& item)
{
    mDragInside = true;
    strZeile.clear();
    BinStringPC1600.clear();
    std::u32string FileName;
    double FileLength = 0.0;
    if (item.FolderItemAvailable()) {
        strZeile = item.FolderItem->Bytes.get();
        FileLength = static_cast<double>(item.FolderItem->State.Length);
        FileName = item.FolderItem->Name;
        if (core::IsTooLarge(FileLength)) return RefuseTooLarge();
        LabelDragAndDrop.SetTextColor(kRed);
        if (!ListingWanted()) TextAreaCodeAusgabe.SetText("");
        Canvas1.SetVisible(!ListingWanted());
    }
    Invalidate();
    EmptyListing();
    TextFieldAudioAdresse.SetText(U"");
    const auto NameTokens = core::NameTokens(FileName, RuntimeBackgroundTask);
    LoadHeaders();

    const auto fields = core::ReadWaveFields(strZeile);
    const auto refusal = core::RefusalOf(fields);
    // A file of the wrong depth is refused only when its header and title are made.
    if (refusal && refusal != core::WaveRefusal::BitsPerSample) return ShowMessage(MessageFor(*refusal));
    SetTitle(core::FileTitle(platform::Utf8(FileName), FileLength, fields.sampleRate));
    PatchHeader(core::RateToken(fields.sampleRate), NameTokens);
    if (refusal) return ShowMessage(MessageFor(*refusal));

    strZeile = core::SampleBytes(std::move(strZeile));
    EncodePeriods();
    FinishImage();
}

void Window1::RefuseTooLarge()
{
    ShowMessage(kTooLarge);
    SetText(Label3, kSampleFormat);
    SetTitleText(kTooLargeTitle);
    Label1.SetVisible(false);
    Label2.SetVisible(false);
    TextFieldAudioAdresse.SetVisible(false);
    addressEntry_ = AddressEntry::Closed;
    EmptyListing();
}

// All templates, whatever the target: no patch of an earlier conversion stays.
void Window1::LoadHeaders()
{
    if (addressEntry_ == AddressEntry::WithImage) addressEntry_ = AddressEntry::WithoutImage;
    if (const auto* const target = Target())
        HeaderLaenge = static_cast<std::int64_t>(core::TokenCount(target->layout.tokens));
    for (const auto* const row : kTargets)
        this->*row->header = row->layout.tokens;
}

void Window1::PatchHeader(std::string_view RateToken, std::string_view NameTokens)
{
    if (const auto* const target = Target())
        this->*target->header = core::WithRateAndTitle(this->*target->header, target->layout, RateToken, NameTokens);
}

void Window1::EncodePeriods()
{
    const auto periods = core::EncodePeriods(strZeile, RuntimeBackgroundTask);
    BinZeile = core::TokensOf(periods);
    Datengroesse = static_cast<std::int64_t>(core::TokenCount(BinZeile));
    if (!ListingWanted()) return;
    const auto head = TextFor(Language, kListingHead);
    TextAreaCodeAusgabe.SetText((head ? std::string(*head) + '\r' : "") + core::ListingOf(periods));
}
