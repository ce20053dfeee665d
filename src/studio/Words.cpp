#include "studio/Words.h"

#include "core/MessagePair.h"
#include "core/TimeText.h"
#include "machine/Timing.h"
#include "studio/Jobs.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <sstream>
#include <string_view>

namespace studio {
namespace {

/// `pair` in `language`, with "%1" and "%2" filled in.
std::string Filled(const MessagePair& pair, Language language, std::string_view first = {},
                   std::string_view second = {})
{
    std::string text(language == Language::German ? pair.ger : pair.eng);
    for (const auto& [mark, value] : {std::pair<std::string_view, std::string_view>{"%1", first}, {"%2", second}})
        if (const auto at = text.find(mark); at != std::string::npos) text.replace(at, mark.size(), value);
    return text;
}

/// To one decimal, with the language's sign before it.
std::string Decimal(double value, Language language)
{
    std::ostringstream text;
    text << std::fixed << std::setprecision(1) << value;
    auto decimal = text.str();
    if (language == Language::German) std::ranges::replace(decimal, '.', ',');
    return decimal;
}

struct KindWords {
    MessagePair name;
    MessagePair explanation;
};

KindWords WordsOf(prepare::Kind kind)
{
    switch (kind) {
    case prepare::Kind::Speech:
        return {.name = {.ger = "Sprache", .eng = "Speech"},
                .explanation = {.ger = "Damit Worte verständlich sind. Rauschen und Brummen werden entfernt.",
                                .eng = "So that words are understood. Noise and hum are taken out."}};
    case prepare::Kind::Music:
        return {.name = {.ger = "Musik", .eng = "Music"},
                .explanation = {.ger = "Alle Stimmen und der Takt, so ähnlich wie möglich; ist es nur eine, jede Note.",
                                .eng = "All voices and the beats, as like as can be; of one voice alone every note."}};
    case prepare::Kind::Melody:
        return {.name = {.ger = "Melodie", .eng = "Melody"},
                .explanation = {.ger = "Allein die stärkste Stimme, Note für Note, auch aus einem Lied mit Begleitung.",
                                .eng = "The strongest voice alone, note for note, also out of a song with a band."}};
    case prepare::Kind::AnySound:
        return {.name = {.ger = "Klang", .eng = "Sound"},
                .explanation = {.ger = "Alles andere, so wie es klingt: Geräusche, Tiere, Maschinen.",
                                .eng = "All else, as it sounds: noises, animals, machines."}};
    }
    return {};
}

MessagePair TextOf(Event event)
{
    switch (event) {
    case Event::AlreadyPrepared:
        return {.ger = "Diese Aufnahme ist schon fertig: zieh sie auf das Fenster von Tonfloss.",
                .eng = "This recording is ready already: drop it on the window of Tonfloss."};
    case Event::FileChanged:
        return {.ger = "Die Datei wurde inzwischen von einem anderen Programm geändert. Öffne sie neu.",
                .eng = "The file has been changed by another program meanwhile. Open it again."};
    case Event::Stopped: return {.ger = "Angehalten.", .eng = "Stopped."};
    case Event::OtherJoined:
        return {.ger = "An diesen Klang ist in der Datei ein zweiter angehängt. Der wird nicht gelesen.",
                .eng = "Another sound is joined to this one in the file. It isn't read."};
    case Event::ToldLonger:
        return {.ger = "Die Datei gibt eine Dauer von %1 an, ihr Klang endet aber vorher.",
                .eng = "The file says that it lasts %1, but its sound ends before."};
    case Event::WrongAddress:
        return {.ger = "Das Programm in dieser Datei läuft nicht an der Adresse, an die sie geladen wird.",
                .eng = "The program in this file doesn't run at the address where it is loaded."};
    case Event::NoPeriod:
        return {.ger = "In dieser Datei ist keine Schwingung. Der Rechner spielt nichts.",
                .eng = "There is no period in this file. The machine plays nothing."};
    case Event::Saved: return {.ger = "Gespeichert.", .eng = "Saved."};
    case Event::NoMemory:
        return {.ger = "Dafür reicht der Speicher nicht.", .eng = "There is not enough memory for this."};
    }
    return {};
}

std::string TextOf(const FileFailure& failure, Language language)
{
    using Kind = files::IOException::Kind;
    switch (failure.kind) {
    case Kind::NoOrdinaryFile:
        return Filled({.ger = "Das ist keine gewöhnliche Datei.", .eng = "This is no ordinary file."}, language);
    case Kind::BeingChanged:
        return Filled({.ger = "Die Datei wird gerade von einem anderen Programm geändert.",
                       .eng = "The file is being changed by another program."},
                      language);
    case Kind::WriteProtected:
        return Filled({.ger = "Diese Datei ist schreibgeschützt.", .eng = "This file is write-protected."}, language);
    case Kind::FolderProtected:
        return Filled({.ger = "In diesem Ordner kann keine Datei angelegt werden. Nimm einen anderen.",
                       .eng = "No file can be made in this folder. Take another one."},
                      language);
    case Kind::Exists:
        return Filled(
            {.ger = "Unter diesem Namen gibt es inzwischen eine Datei.", .eng = "By now there is a file of this name."},
            language);
    case Kind::IsTheSource:
        return Filled({.ger = "Das ist die geöffnete Datei selbst. Nimm einen anderen Namen.",
                       .eng = "This is the open file itself. Take another name."},
                      language);
    case Kind::System: break;
    }
    if (failure.error == std::errc::no_such_file_or_directory)
        return Filled({.ger = "Die Datei gibt es nicht mehr.", .eng = "The file isn't there any more."}, language);
    if (failure.error == std::errc::permission_denied)
        return Filled({.ger = "Dazu fehlen die Rechte.", .eng = "There is no permission for it."}, language);
    if (failure.error == std::errc::no_space_on_device)
        return Filled({.ger = "Auf dem Datenträger ist kein Platz mehr.", .eng = "There is no space left."}, language);
    return failure.error.message();
}

std::string TextOf(const sound::Refusal& refusal, Language language)
{
    const auto seconds = core::TimeText(refusal.seconds);
    const auto most = core::TimeText(refusal.most);
    const auto say = [&](const MessagePair& pair) { return Filled(pair, language, seconds, most); };
    switch (refusal.kind) {
    case sound::Refusal::Kind::Stopped: return Filled(TextOf(Event::Stopped), language);
    case sound::Refusal::Kind::EmptyFile: return say({.ger = "Die Datei ist leer.", .eng = "The file is empty."});
    case sound::Refusal::Kind::UnknownFormat:
        return say({.ger = "Das ist kein Klang, der gelesen werden kann, oder die Datei ist beschädigt.",
                    .eng = "This is no sound that can be read, or the file is damaged."});
    case sound::Refusal::Kind::NoFfmpeg:
        return say({.ger = "Sie ist beschädigt, oder von einer Art, für die das Programm ffmpeg nötig ist. Debian und "
                           "Ubuntu: sudo apt install ffmpeg. Windows: winget install ffmpeg.",
                    .eng = "It is damaged, or of a kind that needs the program ffmpeg. Debian and Ubuntu: sudo apt "
                           "install ffmpeg. Windows: winget install ffmpeg."});
    case sound::Refusal::Kind::FfmpegFails:
        return Filled({.ger = "Das Programm ffmpeg ist nötig, startet aber nicht: %1.",
                       .eng = "It needs the program ffmpeg, which can't be started: %1."},
                      language, refusal.error.message());
    case sound::Refusal::Kind::FfmpegSilent:
        return say({.ger = "Das Programm ffmpeg ist nötig, antwortet aber nicht.",
                    .eng = "It needs the program ffmpeg, which gives no answer."});
    case sound::Refusal::Kind::Rate:
        return Filled({.ger = "Eine Abtastrate von %1 Hz kann nicht gelesen werden.",
                       .eng = "A sample rate of %1 Hz can't be read."},
                      language, std::to_string(refusal.hertz));
    case sound::Refusal::Kind::EndsBeforePart:
        return say({.ger = "Der Klang endet bei %1, vor dem Ausschnitt.", .eng = "It ends at %1, before the part."});
    case sound::Refusal::Kind::NoSound:
        return say({.ger = "In der Datei ist kein Klang.", .eng = "There is no sound in the file."});
    case sound::Refusal::Kind::NoSoundInPart:
        return say({.ger = "In diesem Ausschnitt ist kein Klang.", .eng = "There is no sound in this part."});
    case sound::Refusal::Kind::Damaged:
        return say({.ger = "Die Datei ist bei %1 beschädigt oder abgeschnitten. Was davor ist, kann genommen werden.",
                    .eng = "The file is damaged or cut off at %1. What is before can be taken."});
    case sound::Refusal::Kind::DamagedBeforePart:
        return say(
            {.ger = "Die Datei ist vor diesem Ausschnitt beschädigt.", .eng = "The file is damaged before this part."});
    case sound::Refusal::Kind::TooLong:
    case sound::Refusal::Kind::EndlesslyLong:
        return say({.ger = "Das ist zu lang. Höchstens %2 auf einmal können genommen werden.",
                    .eng = "This is too long. At most %2 can be taken at once."});
    }
    return {};
}

std::string TextOf(const prepare::Refusal& refusal, Language language)
{
    switch (refusal.kind) {
    case prepare::Refusal::Kind::Stopped: return Filled(TextOf(Event::Stopped), language);
    case prepare::Refusal::Kind::Inaudible:
        return Filled({.ger = "In diesem Ausschnitt ist nichts zu hören. Nimm einen anderen.",
                       .eng = "There is nothing to be heard in this part. Take another one."},
                      language);
    case prepare::Refusal::Kind::TooManyBytes: break;
    }
    if (refusal.seconds == 0)
        return Filled({.ger = "Das passt nicht in den Rechner, nicht einmal eine Zehntelsekunde davon.",
                       .eng = "This doesn't fit into the machine, not even a tenth of a second of it."},
                      language);
    return Filled({.ger = "Das passt nicht in den Rechner. Die ersten %1 davon passen.",
                   .eng = "This doesn't fit into the machine. The first %1 of it fit."},
                  language, core::TimeText(refusal.seconds));
}

/// The reason is English, as the command tells it: it names bytes for who looks into the file.
std::string TextOf(const preview::Refusal& refusal, Language language)
{
    return Filled({.ger = "Das ist keine Klangdatei, wie Tonfloss sie speichert (%1).",
                   .eng = "This is no sound file as Tonfloss saves it (%1)."},
                  language, refusal.reason);
}

constexpr MessagePair kWhole{.ger = "alles", .eng = "all of it"};

/// "0:10.0 to 0:30.0".
std::string SpanText(const Span& span, Language language)
{
    return Filled({.ger = "%1 bis %2", .eng = "%1 to %2"}, language, core::TimeText(span.from),
                  core::TimeText(span.to));
}

std::string Percent(double part)
{
    return std::to_string(std::lround(100 * part));
}

} // namespace

std::string NameOf(prepare::Kind kind, Language language)
{
    return Filled(WordsOf(kind).name, language);
}

std::string ExplanationOf(prepare::Kind kind, Language language)
{
    return Filled(WordsOf(kind).explanation, language);
}

std::string NameOf(Target target, Language language)
{
    switch (target) {
    case Target::WithModule:
        return Filled({.ger = "PC-1600 mit 32-KB-Modul", .eng = "PC-1600 with the 32 KB module"}, language);
    case Target::WithoutModule:
        return Filled({.ger = "PC-1600 ohne Modul", .eng = "PC-1600 without the module"}, language);
    case Target::PokEmul: break;
    }
    return "PokEmul";
}

std::string TextOf(const Notice& notice, Language language)
{
    const auto text = std::visit(
        [&](const auto& what) -> std::string {
            using What = std::decay_t<decltype(what)>;
            if constexpr (std::is_same_v<What, std::string>)
                return what;
            else if constexpr (std::is_same_v<What, Event>)
                return Filled(TextOf(what), language, core::TimeText(notice.seconds));
            else
                return TextOf(what, language);
        },
        notice.what);
    return notice.file.empty() ? text : notice.file + ": " + text;
}

std::string TimeText(double seconds, int decimals)
{
    const auto power = std::pow(10.0, decimals);
    const auto units = std::llround(seconds * power);
    const auto perMinute = 60 * std::llround(power);
    std::ostringstream text;
    text << units / perMinute << ':' << std::setfill('0') << std::setw(decimals > 0 ? decimals + 3 : 2) << std::fixed
         << std::setprecision(decimals) << static_cast<double>(units % perMinute) / power;
    return text.str();
}

double RulerStep(double least)
{
    for (const double step : {1.0, 2.0, 5.0, 10.0, 15.0, 30.0, 60.0, 120.0, 300.0, 600.0, 900.0, 1800.0, 3600.0})
        if (step >= least && least > 0.5) return step;
    if (least > 0.5) return 3600 * std::ceil(least / 3600);
    const auto power = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0})
        if (factor * power >= least * (1 - 1e-9)) return factor * power;
    return 10 * power;
}

std::string MeterText(const State& state, Language language)
{
    const auto& meter = state.meter;
    const auto room = std::to_string(meter.room);
    if (meter.fits)
        return Filled({.ger = "Passt nicht in %1 Bytes; die ersten %2 passen",
                       .eng = "Doesn't fit into %1 bytes; its first %2 would fit"},
                      language, room, core::TimeText(*meter.fits));
    if (meter.bytes == 0) return Filled({.ger = "Platz für %1 Bytes", .eng = "Room for %1 bytes"}, language, room);
    auto text =
        Filled({.ger = "%1 von %2 Bytes", .eng = "%1 of %2 bytes"}, language, std::to_string(meter.bytes), room);
    text += Filled({.ger = ", spielt %1 s", .eng = ", plays for %1 s"}, language, Decimal(meter.seconds, language));
    if (meter.moreSeconds >= 0.05)
        text += Filled({.ger = "; etwa %1 s mehr würden passen", .eng = "; about %1 s more would fit"}, language,
                       Decimal(meter.moreSeconds, language));
    return text;
}

std::string WaveformText(const State& state, Language language)
{
    if (!state.file)
        return Filled({.ger = "Wellenform; keine Datei ist geöffnet", .eng = "Waveform; no file is open"}, language);
    const auto& file = *state.file;
    auto text = Filled({.ger = "Wellenform von %1, %2 lang", .eng = "Waveform of %1, %2 long"}, language, file.name,
                       core::TimeText(file.axis));
    if (!file.isRead)
        text +=
            Filled({.ger = ", %1 Prozent gelesen", .eng = ", %1 percent read"}, language, Percent(state.reading.done));
    if (state.part.Length() > 0)
        text += Filled({.ger = "; gewählt: %1", .eng = "; chosen: %1"}, language,
                       state.isWhole ? Filled(kWhole, language) : SpanText(state.part, language));
    return text;
}

std::string PicturesText(const State& state, Language language)
{
    if (!state.result || !state.pictures)
        return Filled({.ger = "Spektrogramme; noch keine", .eng = "Spectrograms; none yet"}, language);
    const auto span = SpanText(state.result->part, language);
    auto text = state.file->saved
                    ? Filled({.ger = "Spektrogramm dessen, was der Rechner spielt, %1",
                              .eng = "Spectrogram of what the machine plays, %1"},
                             language, span)
                    : Filled({.ger = "Spektrogramme des Ausschnitts und dessen, was der Rechner davon spielt, %1",
                              .eng = "Spectrograms of the part and of what the machine plays of it, %1"},
                             language, span);
    if (!state.pictures->pitch.empty())
        text += Filled({.ger = ", mit der Tonhöhe der Melodie", .eng = ", with the pitch of the melody"}, language);
    return text;
}

std::string WorkText(const State& state, Language language)
{
    if (state.preparing.isGoing)
        return Filled({.ger = "Wird vorbereitet: %1 Prozent", .eng = "Being prepared: %1 percent"}, language,
                      Percent(state.preparing.done));
    if (const auto& notice = state.Of(Notice::Slot::Work)) return TextOf(*notice, language);
    if (!state.isCurrent) return Filled({.ger = "Nichts vorbereitet", .eng = "Nothing is prepared"}, language);
    auto text = Filled({.ger = "Fertig: spielt %1 s", .eng = "Ready: plays for %1 s"}, language,
                       Decimal(state.meter.seconds, language));
    if (state.result->settings.kind == prepare::Kind::Music && !state.file->saved)
        text +=
            state.result->prepared.kind == prepare::Kind::Melody
                ? Filled({.ger = "; eine Stimme, der gefolgt wird", .eng = "; one voice, which is followed"}, language)
                : Filled({.ger = "; mehrere Stimmen, und alle bleiben", .eng = "; several voices, and all are kept"},
                         language);
    return text;
}

std::vector<std::pair<std::string, std::string>> ReportOf(const State& state, Language language)
{
    if (!state.file || !state.file->saved || !state.result) return {};
    const auto& saved = *state.file->saved;
    const auto periods = machine::PeriodsOf(saved.runBytes, {.rate = saved.sampleRate, .machine = {}}).size();
    const auto title = std::filesystem::path(saved.title).u8string();
    std::vector<std::pair<std::string, std::string>> lines;
    const auto add = [&](const MessagePair& name, std::string value) {
        lines.emplace_back(Filled(name, language), std::move(value));
    };
    add({.ger = "Rechner", .eng = "Machine"}, saved.loadAddress ? "PC-1600" : "PokEmul");
    add({.ger = "Titel", .eng = "Title"}, {title.begin(), title.end()});
    if (saved.loadAddress) add({.ger = "Ladeadresse", .eng = "Load address"}, AddressTextOf(saved));
    add({.ger = "Abtastrate", .eng = "Sample rate"}, std::to_string(saved.sampleRate.hertz) + " Hz");
    add({.ger = "Schwingungen", .eng = "Periods"}, std::to_string(periods));
    add({.ger = "Dauer", .eng = "Duration"}, Decimal(state.result->prepared.seconds, language) + " s");
    return lines;
}

} // namespace studio
