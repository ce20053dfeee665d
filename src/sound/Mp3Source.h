// Mp3Source.h: MP3, and MPEG audio of the two other layers. libsndfile would decode it by the same library, but hides
// where the chain of frames breaks and lets the library write to standard error.
#pragma once

#include "sound/FileBytes.h"
#include "sound/SoundSource.h"

#include <memory>

#include <mpg123.h>

namespace sound {

/// Whether the first thing in it, behind tags, is a frame of MPEG audio.
[[nodiscard]] bool IsMpeg(FileBytes& bytes);

class Mp3Source : public SoundSource {
public:
    /// `bytes` stay somebody else's.
    explicit Mp3Source(FileBytes& bytes);

    /// False where there is no sound of the kind in it: all below is then out of bounds.
    [[nodiscard]] bool IsKnown() const { return rate_ > 0; }

    [[nodiscard]] std::int64_t Rate() const override { return rate_; }
    [[nodiscard]] std::int64_t Channels() const override { return channels_; }
    [[nodiscard]] std::optional<std::int64_t> Frames() const override { return frames_; }
    [[nodiscard]] bool IsExact() const override { return false; } // others may be joined to it
    [[nodiscard]] std::int64_t Least() const override { return tellsFrames_ ? frames_ : 0; }
    [[nodiscard]] bool IsBroken() override;
    /// Asked at the end: another sound is joined to this one, and isn't read.
    [[nodiscard]] bool IsJoined() const;

    void Skip(std::int64_t frames) override;

private:
    struct Closing {
        void operator()(mpg123_handle* handle) const { mpg123_delete(handle); }
    };

    enum class Rest { None, Sound, Damage };
    /// What is behind the last frame that was read.
    [[nodiscard]] Rest RestOfFile() const;
    std::int64_t ReadFrames(float* samples, std::int64_t frames) override;

    FileBytes& bytes_;
    std::unique_ptr<mpg123_handle, Closing> handle_;
    long rate_ = 0;
    int channels_ = 0;
    std::int64_t frames_ = 0;
    bool tellsFrames_ = false;
    bool isAtEnd_ = false; // of what holds together
};

} // namespace sound
