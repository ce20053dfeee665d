// Zoom.h: which stretch of a file the pictures show, and where a moment stands in it.
#pragma once

#include "studio/Span.h"

namespace studio {

class Zoom {
public:
    static constexpr double kShortest = 0.002; // seconds: a period of 500 Hz is all of the picture

    /// The file's length in seconds: all of it is shown, or as before where it only grows.
    void SetEnd(double end);
    /// Another file.
    void Reset() { *this = Zoom(); }

    /// Empty as long as nothing is known of a file.
    [[nodiscard]] const Span& Shown() const { return shown_; }
    [[nodiscard]] double End() const { return end_; }
    [[nodiscard]] bool IsWhole() const { return shown_ == Span{.from = 0, .to = end_}; }

    /// Shows `factor` times as much; `second` keeps its place in the picture.
    void By(double factor, double second);
    /// Shows this, as far as the file goes.
    void Show(const Span& span);
    /// Goes on by so many seconds.
    void Move(double seconds) { Show({.from = shown_.from + seconds, .to = shown_.to + seconds}); }
    /// Moves no further than needed for `second` to be seen.
    void Reveal(double second);

    /// 0 at the left edge of the picture, 1 at its right one.
    [[nodiscard]] double PlaceOf(double second) const { return (second - shown_.from) / shown_.Length(); }
    [[nodiscard]] double SecondAt(double place) const { return shown_.from + place * shown_.Length(); }

private:
    Span shown_;
    double end_ = 0;
};

} // namespace studio
