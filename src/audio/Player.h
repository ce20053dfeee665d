// Player.h: plays sounds through the system's sound device. Its members may be called from any thread, and none of them
// waits for the device, which a thread opens when something is to be played, and closes afterwards.
#pragma once

#include "audio/Transport.h"

#include <string>

namespace audio {

struct Status {
    bool isPlaying = false;
    double place = 0;    // seconds; what is heard now, or where it stopped
    std::string failure; // why nothing could be played, or any further: the system's words; empty otherwise
};

/// Transport.h says what its members do. Requires: there is one at a time.
class Player {
public:
    /// `rate` is that of all sounds, in Hz; a device of another rate gets them converted.
    explicit Player(int rate);
    /// Stops.
    ~Player();
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    void Put(std::size_t which, Sound sound);
    void Select(std::size_t which);
    void Repeat(const std::optional<Range>& range);
    void SetVolume(double volume);
    /// From there on, also while something plays. Forgets a failure.
    void Play(double from);
    void Stop();

    [[nodiscard]] Status Now() const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace audio
