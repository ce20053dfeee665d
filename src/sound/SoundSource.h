// SoundSource.h: the samples of a sound, whatever its format and whoever decodes it.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace sound {

class SoundSource {
public:
    /// The next samples, valid until the next call. Empty at the end.
    struct Block {
        std::span<const float> mixed;  // the channels mixed down
        std::span<const float> turned; // the same with every other channel turned round, where there is more than one
    };

    SoundSource() = default;
    virtual ~SoundSource() = default;
    SoundSource(const SoundSource&) = delete;
    SoundSource& operator=(const SoundSource&) = delete;

    [[nodiscard]] virtual std::int64_t Rate() const = 0;
    [[nodiscard]] virtual std::int64_t Channels() const = 0;
    /// The length in samples of a channel, as the file tells it or as it can be guessed; none where it can't.
    [[nodiscard]] virtual std::optional<std::int64_t> Frames() const = 0;
    /// True where there are no more than `Frames`, and fewer only in a damaged file.
    [[nodiscard]] virtual bool IsExact() const = 0;
    /// So many come from where it began, or the file is damaged.
    [[nodiscard]] virtual std::int64_t Least() const { return IsExact() ? Frames().value_or(0) : 0; }
    /// Asked at the end: how many seconds the file tells, of pictures maybe, where `Frames` doesn't know.
    [[nodiscard]] virtual std::optional<double> Told() const { return std::nullopt; }
    /// Asked at the end: it isn't the sound's own.
    [[nodiscard]] virtual bool IsBroken() { return false; }

    /// Goes on `frames` further, or as far as there are some.
    virtual void Skip(std::int64_t frames);
    /// `most` or fewer.
    [[nodiscard]] Block Read(std::int64_t most);

private:
    /// Up to so many frames, the channels of each in turn; 0 at the end.
    virtual std::int64_t ReadFrames(float* samples, std::int64_t frames) = 0;

    std::vector<float> channels_;
    std::vector<float> mixed_;
    std::vector<float> turned_;
};

} // namespace sound
