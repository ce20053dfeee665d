// FfmpegSource.h: a sound that the program ffmpeg decodes.
#pragma once

#include "sound/ChildProgram.h"
#include "sound/Refusal.h"
#include "sound/SndfileSource.h"

#include <filesystem>
#include <variant>

namespace sound {

class FfmpegSource : public SoundSource {
public:
    /// How it comes to where the part begins. After a seek some files begin with an error; what a decoder gives up can
    /// be told from damage only by decoding all that is ahead.
    enum class Way { Seek, DecodeAll };
    /// The sound of the file at `path`, from so many seconds on, and `length` seconds of it at most.
    [[nodiscard]] static std::variant<std::unique_ptr<FfmpegSource>, Refusal>
    Start(const std::filesystem::path& path, Way way, double from, double length, const core::Progress& progress);

    [[nodiscard]] std::int64_t Rate() const override { return decoded_.Rate(); }
    [[nodiscard]] std::int64_t Channels() const override { return decoded_.Channels(); }
    [[nodiscard]] std::optional<std::int64_t> Frames() const override { return std::nullopt; }
    [[nodiscard]] bool IsExact() const override { return false; }
    /// As the file tells it, where there is nothing but sound in it: pictures may go on behind its end.
    [[nodiscard]] std::int64_t Least() const override;
    [[nodiscard]] std::optional<double> Told() const override;
    [[nodiscard]] bool IsBroken() override { return !program_->HasSucceeded(); }
    [[nodiscard]] bool IsSilent() const { return program_->IsSilent(); }

private:
    FfmpegSource(std::unique_ptr<ChildProgram> program, double from, double length)
        : program_(std::move(program)),
          from_(from),
          length_(length),
          decoded_(*program_)
    {}

    std::int64_t ReadFrames(float* samples, std::int64_t frames) override;

    std::unique_ptr<ChildProgram> program_;
    double from_;   // seconds
    double length_; // asked for
    SndfileSource decoded_;
};

} // namespace sound
