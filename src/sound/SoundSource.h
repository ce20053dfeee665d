// SoundSource.h: the samples of a sound, whatever its format: libsndfile decodes it.
#pragma once

#include "sound/ByteSource.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include <sndfile.h>

namespace sound {

class SoundSource {
public:
    /// `bytes` stay somebody else's.
    explicit SoundSource(ByteSource& bytes);

    /// False for a format that libsndfile doesn't know: all below is then out of bounds.
    [[nodiscard]] bool IsKnown() const { return file_ != nullptr; }
    [[nodiscard]] std::int64_t Rate() const { return info_.samplerate; }
    [[nodiscard]] std::int64_t Channels() const { return info_.channels; }
    /// The length in samples of a channel, as the file's header tells it; none where it doesn't.
    [[nodiscard]] std::optional<std::int64_t> Frames() const;
    /// False where `Frames` is worked out from the file's size.
    [[nodiscard]] bool IsExact() const { return (info_.format & SF_FORMAT_TYPEMASK) != SF_FORMAT_MPEG; }

    /// Goes on `frames` further, or as far as there are some.
    void Skip(std::int64_t frames);
    /// The next samples, the channels mixed down, `most` or fewer. Empty at the end; valid until the next call.
    [[nodiscard]] std::span<const float> Read(std::int64_t most);

private:
    struct Closing {
        void operator()(SNDFILE* file) const { sf_close(file); }
    };

    bool canSeek_;
    SF_INFO info_{};
    std::unique_ptr<SNDFILE, Closing> file_;
    std::vector<float> channels_;
    std::vector<float> mono_;
};

} // namespace sound
