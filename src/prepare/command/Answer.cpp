#include "prepare/command/Answer.h"

#include "command/Names.h"
#include "command/PC1600.h"
#include "core/LoadAddress.h"
#include "core/SoundFileHeader.h"
#include "core/TimeText.h"
#include "core/Title.h"
#include "machine/Memory.h"

#include <iomanip>
#include <sstream>

namespace prepare {
namespace {

using core::TimeText;

/// Options that take no more of it than that, from where it was to begin.
std::string BeginningOf(double seconds, const Options& options)
{
    return "--from " + TimeText(options.part.from) + " --length " + TimeText(seconds);
}

std::string LongerThanTaken(const std::string& seconds, double most, const Options& options)
{
    auto text = seconds + ", and at this rate the window takes " + TimeText(most) + " at most";
    for (auto k = machine::kSampleRates.size(); k-- > 0;) {
        const auto& rate = machine::kSampleRates[k];
        if (const auto more = MostSeconds({rate, options.playback.machine}); more > most)
            text += ", with --rate " + std::to_string(rate.hertz) + ' ' + TimeText(more);
    }
    return text + ". Take a part of it, for example with " + BeginningOf(most, options) + '.';
}

/// What was found in music; of all else nothing.
std::string VoicesTaken(Kind asked, Kind taken)
{
    if (asked != Kind::Music) return {};
    if (taken == Kind::Melody) return "\nvoices: one, and it is followed";
    return "\nvoices: several, and all of them are kept; for the strongest alone: --for melody";
}

/// What the window will tell of a recording, and what is to be done with it.
std::string OfRecording(const std::filesystem::path& output, std::int64_t runBytes)
{
    const auto size = runBytes + core::kTokensPC1600;
    const auto title = core::TitleOf(command::Composed(command::CharactersOf(output.filename())));
    return "size: " + std::to_string(size) + " for the PC-1600, " + std::to_string(runBytes) +
           " for PokEmul\n32 KB extension: " + command::ExtensionText(machine::kPlayerAddress, size) +
           "\ntitle on the machine: " + command::Shown(title) +
           "\nnext: drop the recording on the window of Tonfloss; for another title, give it another name before\n";
}

std::string OfSoundFile(const core::SoundFile& file)
{
    const auto size = core::SizeOf(file);
    const auto title = "title on the machine: " + command::Shown(file.title) + '\n';
    if (file.loadAddress) return "target: PC-1600\n" + title + command::OnThePC1600(*file.loadAddress, size);
    return "target: PokEmul\n" + title + "size: " + std::to_string(size) + "\nnext: load it into PokEmul at " +
           core::AddressText(machine::kPlayerAddress) + '\n';
}

} // namespace

std::string Answer(const Way& way, const Options& options, const sound::Recording& recording, const Prepared& prepared,
                   const std::optional<core::SoundFile>& file)
{
    const auto runBytes = static_cast<std::int64_t>(prepared.runBytes.size()) + 1; // the end mark
    std::ostringstream text;
    const auto note = recording.isJoined
                          ? std::string("\nnote: another sound is joined to this one in the file, and isn't read")
                      : recording.told ? "\nnote: the file says that it lasts " + TimeText(*recording.told)
                                       : std::string();
    text << "read: " << command::Shown(way.input.filename());
    if (recording.seconds) text << ", " << TimeText(*recording.seconds);
    text << ", " << recording.rate << " Hz, " << recording.channels
         << (recording.channels == 1 ? " channel" : " channels")
         << "\ntaken: " << TimeText(sound::SecondsAt(recording.samples.size())) << " from " << TimeText(recording.from)
         << note << VoicesTaken(options.kind, prepared.kind) << "\nmade: " << command::Shown(way.output) << ", "
         << options.playback.rate.hertz << " Hz\nseconds: " << std::fixed << std::setprecision(3) << prepared.seconds
         << "\nrun bytes: " << runBytes << '\n'
         << (file ? OfSoundFile(*file) : OfRecording(way.output, runBytes));
    return text.str();
}

std::string Reason(const sound::Refusal& refusal, const Options& options)
{
    using enum sound::Refusal::Kind;
    const auto seconds = TimeText(refusal.seconds);
    switch (refusal.kind) {
    case Stopped: return "It was stopped.";
    case EmptyFile: return "The file is empty.";
    case UnknownFormat: return "This is no sound file that libsndfile or ffmpeg can read, or it is damaged.";
    case NoFfmpeg: break;
    case Rate:
        return "It has " + std::to_string(refusal.hertz) + " samples a second. From " +
               std::to_string(sound::kLowestRate) + " to " + std::to_string(sound::kHighestRate) + " can be read.";
    case EndsBeforePart:
        return "It ends at " + seconds + ", before --from, which is " + TimeText(options.part.from) + ".";
    case NoSound: return "There is no sound in it.";
    case NoSoundInPart: return "There is no sound in it behind --from.";
    case Damaged:
        if (refusal.seconds == 0) return "It is damaged or cut off at its beginning.";
        return "It is damaged or cut off at " + seconds + ". What is before can be taken: --from 0 --length " +
               seconds + ".";
    case DamagedBeforePart: return "It is damaged or cut off at --from, or before it.";
    case FfmpegFails: return "It needs the program ffmpeg, which can't be started: " + refusal.error.message() + ".";
    case FfmpegSilent: return "It needs the program ffmpeg, which gives no answer.";
    case TooLong: return LongerThanTaken("It lasts " + seconds, refusal.most, options);
    case EndlesslyLong: return LongerThanTaken("It lasts longer than " + TimeText(refusal.most), refusal.most, options);
    }
    return "It is damaged, or of a kind that can be read only with the program ffmpeg, which isn't installed. "
           "Debian and Ubuntu: sudo apt install ffmpeg. Windows: winget install ffmpeg.";
}

std::string Reason(const Refusal& refusal, const Options& options)
{
    const auto seconds = TimeText(refusal.seconds);
    switch (refusal.kind) {
    case Refusal::Kind::Stopped: return "It was stopped.";
    case Refusal::Kind::Inaudible: return "There is nothing to be heard in it.";
    case Refusal::Kind::TooManyBytes: break;
    }
    const auto tooLong = "It is too long for " + std::to_string(options.size) + " bytes. ";
    if (refusal.seconds == 0) return tooLong + "Not a tenth of a second of it would fit.";
    return tooLong + "Its first " + seconds + " would fit: take a part, for example with " +
           BeginningOf(refusal.seconds, options) + '.';
}

} // namespace prepare
