// Transport.h: what a sound device is given, buffer by buffer, and where in the sounds it is. It knows no device.
//     sounds     some on one time axis, numbered from 0; one is selected. Changing between them keeps the place.
//     place      seconds from the beginning of the sounds
//     heard      a device asks for a buffer when it begins to play the one before: that is what is heard now
//     end        of the selected sound; two buffers of silence behind it, it has been heard, and nothing plays any more
#pragma once

#include "audio/Sound.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>

namespace audio {

struct Range {
    double from; // seconds
    double to;
};

using Time = std::chrono::steady_clock::time_point;

class Transport {
public:
    /// `rate` is that of all sounds, in Hz.
    explicit Transport(int rate) : rate_(rate) {}

    /// Replaces sound `which`, also while it plays. Gives the one before back, to be deleted where that may take time.
    std::shared_ptr<const Sound> Put(std::size_t which, std::shared_ptr<const Sound> sound);
    void Select(std::size_t which) { selected_ = which; }
    /// Plays from the range's end on from its beginning, until it is taken back.
    void Repeat(const std::optional<Range>& range);
    /// 0 to 1. At 1 each sample is played as it is, but for its sound's gain.
    void SetVolume(double volume) { volume_ = volume; }

    void Play(double from);
    /// Keeps the place.
    void Stop(Time now);

    /// The next samples, silence where there are none. `now` is when the device asks.
    void Fill(std::span<std::int16_t> buffer, Time now);

    [[nodiscard]] bool IsPlaying() const { return isPlaying_; }
    [[nodiscard]] double Place(Time now) const;

private:
    struct Loop {
        std::int64_t begin; // samples
        std::int64_t end;
    };
    struct Buffer {
        std::int64_t first; // sample
        std::int64_t size;  // without the silence behind the end
        std::optional<Loop> loop;
    };

    [[nodiscard]] std::int64_t SampleAt(double seconds) const;
    [[nodiscard]] const Sound* Selected() const;
    /// `sample`, or where a repetition goes on from there.
    [[nodiscard]] static std::int64_t Wrapped(std::int64_t sample, const std::optional<Loop>& loop);
    void Read(const Sound& sound, std::int64_t first, std::span<std::int16_t> into) const;

    int rate_;
    std::vector<std::shared_ptr<const Sound>> sounds_;
    std::size_t selected_ = 0;
    double volume_ = 0.25; // a square wave is loud
    std::optional<Loop> loop_;

    bool isPlaying_ = false;
    std::int64_t next_ = 0; // sample, of the next buffer
    std::optional<Buffer> filled_;
    std::optional<Buffer> heard_;
    Time heardFrom_;
    int silentBuffers_ = 0; // since the end
};

} // namespace audio
