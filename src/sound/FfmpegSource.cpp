#include "sound/FfmpegSource.h"

#include <algorithm>
#include <cmath>
#include <regex>
#include <string>
#include <vector>

namespace sound {
namespace {

/// Of files: ordinary sounds and videos, and none that names other files to be opened.
constexpr auto kKinds =
    "3dostr,aac,aa,aax,ac3,ac4,ace,aea,afc,aiff,alp,amr,amrnb,amrwb,apc,ape,apm,aptx,asf,ast,au,avi,"
    "avr,bfstm,brstm,caf,codec2,daud,dcstr,dsf,dts,dtshd,dv,eac3,flac,flv,fsb,g722,g726,gsm,gxf,hca,"
    "iff,ircam,kux,live_flv,loas,matroska,webm,mlp,mov,mp4,mp3,mpc,mpc8,mpeg,mpegts,mtv,mxf,nistsphere,"
    "nut,ogg,oma,paf,pvf,qcp,rm,rso,sbc,sds,shn,smjpeg,sol,sox,svs,swf,tak,truehd,tta,vag,voc,vqf,w64,"
    "wav,wsaud,wtv,wv,wve,xa,xwma";

/// Seconds that the file tells; 0 where it tells none.
double ToldSeconds(const std::string& complaints)
{
    static const std::regex kDuration(R"((?:^|\n)  Duration: (\d+):(\d\d):(\d\d\.\d+))");
    std::smatch told;
    if (complaints.find("Estimating duration from bitrate") != std::string::npos ||
        !std::regex_search(complaints, told, kDuration))
        return 0;
    return 3600 * std::stod(told[1]) + 60 * std::stod(told[2]) + std::stod(told[3]);
}

bool HasPictures(const std::string& complaints)
{
    static const std::regex kVideo(R"(\n  Stream #[^\n]*: Video: (?![^\n]*\(attached pic\)))");
    return std::regex_search(complaints, kVideo);
}

// Seconds: what decoders need at either end is told by some files, too.
constexpr double kTolerance = 0.25;

} // namespace

std::variant<std::unique_ptr<FfmpegSource>, Refusal> FfmpegSource::Start(const std::filesystem::path& path, Way way,
                                                                         double from, double length,
                                                                         const core::Progress& progress)
{
    using enum Refusal::Kind;
    const auto name = std::filesystem::absolute(path).u8string();
    std::vector<std::string> input{"-i", "file:" + std::string(name.begin(), name.end())};
    input.insert(way == Way::Seek ? input.begin() : input.end(), {"-ss", std::to_string(from)});
    std::vector<std::string> arguments{
        "-nostdin", "-hide_banner",      "-nostats", "-v", "info", "-xerror", "-protocol_whitelist",
        "file",     "-format_whitelist", kKinds};
    arguments.insert(arguments.end(), input.begin(), input.end());
    arguments.insert(arguments.end(),
                     {"-map", "0:a:0", "-t", std::to_string(length), "-c:a", "pcm_f32be", "-f", "au", "pipe:1"});
    std::error_code error;
    auto program = ChildProgram::Start("ffmpeg", arguments, progress, error);
    if (error == std::errc::no_such_file_or_directory) return Refusal{.kind = NoFfmpeg};
    if (!program) return Refusal{.kind = FfmpegFails, .error = error};
    std::unique_ptr<FfmpegSource> source(new FfmpegSource(std::move(program), from, length));
    source->program_->RethrowFailure();
    if (source->decoded_.IsKnown()) return source;
    if (progress.IsStopped()) return Refusal{.kind = Stopped};
    return Refusal{.kind = source->IsSilent() ? FfmpegSilent : UnknownFormat};
}

std::int64_t FfmpegSource::Least() const
{
    if (HasPictures(program_->Complaints())) return 0;
    const auto seconds = std::min(ToldSeconds(program_->Complaints()) - from_, length_) - kTolerance;
    return std::llround(std::max(seconds, 0.0) * static_cast<double>(Rate()));
}

std::optional<double> FfmpegSource::Told() const
{
    const auto seconds = ToldSeconds(program_->Complaints());
    return seconds > 0 ? std::optional(seconds) : std::nullopt;
}

std::int64_t FfmpegSource::ReadFrames(float* samples, std::int64_t frames)
{
    const auto read = decoded_.ReadFrames(samples, frames);
    program_->RethrowFailure();
    return read;
}

} // namespace sound
