// Span.h: a stretch of a sound file, in seconds from the file's beginning.
#pragma once

namespace studio {

struct Span {
    double from = 0;
    double to = 0;

    [[nodiscard]] double Length() const { return to - from; }
    bool operator==(const Span&) const = default;
};

} // namespace studio
