// SndfileSource.h: a sound that libsndfile decodes.
#pragma once

#include "sound/ByteSource.h"
#include "sound/SoundSource.h"

#include <memory>

#include <sndfile.h>

namespace sound {

class SndfileSource final : public SoundSource {
public:
    /// `bytes` stay somebody else's. What comes behind them is missing where it `isCut`.
    explicit SndfileSource(ByteSource& bytes, bool isCut = false);

    /// False for a format that libsndfile doesn't know: all below is then out of bounds.
    [[nodiscard]] bool IsKnown() const { return file_ != nullptr; }
    [[nodiscard]] bool IsFlac() const { return (info_.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_FLAC; }

    [[nodiscard]] std::int64_t Rate() const override { return info_.samplerate; }
    [[nodiscard]] std::int64_t Channels() const override { return info_.channels; }
    [[nodiscard]] std::optional<std::int64_t> Frames() const override;
    [[nodiscard]] bool IsExact() const override { return !isCut_ && Frames(); }
    [[nodiscard]] bool IsBroken() override { return isCut_ || (!Frames() && hasFailed_); }

    void Skip(std::int64_t frames) override;
    std::int64_t ReadFrames(float* samples, std::int64_t frames) override;

private:
    struct Closing {
        void operator()(SNDFILE* file) const { sf_close(file); }
    };

    bool canSeek_;
    bool isCut_;
    bool hasFailed_ = false; // also on what only stands behind the sound
    SF_INFO info_{};
    std::unique_ptr<SNDFILE, Closing> file_;
};

} // namespace sound
