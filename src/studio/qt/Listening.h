// Listening.h: the part and what the machine plays of it, in the player, with the file's own seconds.
#pragma once

#include "audio/Player.h"
#include "studio/State.h"

#include <memory>
#include <optional>
#include <string>

namespace studio {

enum class Heard { Source, Machine };

class Listening {
public:
    /// What is played from now on; the same place of it, where something plays.
    void Take(std::shared_ptr<const Result> result);

    [[nodiscard]] bool CanPlay(Heard heard) const;
    /// The stretch of the file that can be heard.
    [[nodiscard]] Span Range() const;
    [[nodiscard]] Heard Selected() const { return selected_; }
    /// Also while something plays, which then goes on at the same place.
    void Select(Heard heard);
    /// From `second` on, or from the beginning where that is outside.
    void Play(double second);
    void Stop() { player_.Stop(); }
    void SetRepeat(bool repeats);
    /// 0 to 1.
    void SetVolume(double volume) { player_.SetVolume(volume); }

    struct Status {
        bool isPlaying;
        double second;       // of the file
        std::string failure; // Player.h
    };
    [[nodiscard]] Status Now() const;

private:
    audio::Player player_{kListenRate};
    std::shared_ptr<const Result> result_;
    Heard selected_ = Heard::Machine;
    bool repeats_ = false;
};

} // namespace studio
