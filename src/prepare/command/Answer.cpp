#include "prepare/command/Answer.h"

#include "core/ImageSize.h"
#include "core/SoundFileHeader.h"
#include "core/TimeText.h"

#include <iomanip>
#include <sstream>

namespace prepare {
namespace {

using core::TimeText;

std::string Utf8(const std::filesystem::path& path)
{
    const auto text = path.u8string();
    return {text.begin(), text.end()};
}

std::string LongerThanTaken(const std::string& seconds, double most)
{
    return seconds + ", and at this rate the window takes " + TimeText(most) +
           " at most. Take a part of it, for example with --from 0:30 --length 0:20.";
}

} // namespace

std::string Answer(const std::filesystem::path& input, const std::filesystem::path& output, const Options& options,
                   const sound::Recording& recording, const Prepared& prepared)
{
    const auto inPokEmul = static_cast<std::int64_t>(prepared.runBytes.size()) + 1; // the end mark
    const auto inPC1600 = inPokEmul + core::kTokensPC1600;
    const bool needsExtension = core::SizeBandOf(inPC1600) == core::SizeBand::NeedsExtension;
    const auto title = output.filename().u32string().substr(0, core::kTitleTokens);

    std::ostringstream text;
    const auto note = recording.isJoined
                          ? std::string("\nnote: another sound is joined to this one in the file, and isn't read")
                      : recording.told ? "\nnote: the file says that it lasts " + TimeText(*recording.told)
                                       : std::string();
    text << "read: " << Utf8(input.filename());
    if (recording.seconds) text << ", " << TimeText(*recording.seconds);
    text << ", " << recording.rate << " Hz, " << recording.channels
         << (recording.channels == 1 ? " channel" : " channels")
         << "\ntaken: " << TimeText(sound::SecondsAt(recording.samples.size())) << " from " << TimeText(recording.from)
         << note << "\nmade: " << Utf8(output) << ", " << options.playback.rate.hertz << " Hz\nseconds: " << std::fixed
         << std::setprecision(3) << prepared.seconds << "\nrun bytes: " << inPokEmul << "\nsize: " << inPC1600
         << " for the PC-1600, " << inPokEmul
         << " for PokEmul\n32 KB extension: " << (needsExtension ? "needed" : "not needed for the size")
         << "\ntitle on the machine: " << Utf8(title) << "\nnext: drop the recording on the window of Tonfloss\n";
    return text.str();
}

std::string Reason(const sound::Refusal& refusal)
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
    case EndsBeforePart: return "It ends at " + seconds + ", before --from.";
    case NoSound: return "There is no sound in it.";
    case NoSoundInPart: return "There is no sound in it behind --from.";
    case Damaged:
        if (refusal.seconds == 0) return "It is damaged or cut off at its beginning.";
        return "It is damaged or cut off at " + seconds + ". What is before can be taken: --from 0 --length " +
               seconds + ".";
    case DamagedBeforePart: return "It is damaged or cut off at --from, or before it.";
    case FfmpegFails: return "It needs the program ffmpeg, which can't be started: " + refusal.error.message() + ".";
    case FfmpegSilent: return "It needs the program ffmpeg, which gives no answer.";
    case TooLong: return LongerThanTaken("It lasts " + seconds, refusal.most);
    case TooMuch: return LongerThanTaken("--length asks for " + seconds, refusal.most);
    case EndlesslyLong: return LongerThanTaken("It lasts longer than " + TimeText(refusal.most), refusal.most);
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
    return "It is too long for " + std::to_string(options.size) + " bytes. About " + seconds +
           " of it would fit: take a part, for example with --from 0:30 --length " + seconds + ".";
}

} // namespace prepare
