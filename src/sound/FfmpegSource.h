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
    /// The sound of the file at `path`, from so many seconds on, and `length` seconds of it at most.
    [[nodiscard]] static std::variant<std::unique_ptr<FfmpegSource>, Refusal>
    Start(const std::filesystem::path& path, double from, double length, const core::Progress& progress);

    [[nodiscard]] std::int64_t Rate() const override { return decoded_.Rate(); }
    [[nodiscard]] std::int64_t Channels() const override { return decoded_.Channels(); }
    [[nodiscard]] std::optional<std::int64_t> Frames() const override { return std::nullopt; }
    [[nodiscard]] bool IsExact() const override { return false; }
    /// As the file tells it, where there is nothing but sound in it: pictures may go on behind its end.
    [[nodiscard]] std::int64_t Least() const override;
    [[nodiscard]] bool IsBroken() override { return !program_->HasSucceeded(); }
    [[nodiscard]] bool IsSilent() const { return program_->IsSilent(); }

private:
    FfmpegSource(std::unique_ptr<ChildProgram> program, double from)
        : program_(std::move(program)),
          from_(from),
          decoded_(*program_)
    {}

    std::int64_t ReadFrames(float* samples, std::int64_t frames) override;

    std::unique_ptr<ChildProgram> program_;
    double from_; // seconds
    SndfileSource decoded_;
};

} // namespace sound
