#include "studio/Zoom.h"

#include <algorithm>

namespace studio {

void Zoom::SetEnd(double end)
{
    const bool wasWhole = IsWhole();
    end_ = end;
    Show(wasWhole ? Span{.from = 0, .to = end} : shown_);
}

void Zoom::By(double factor, double second)
{
    const auto length = std::max(shown_.Length() * factor, kShortest);
    const auto from = second - PlaceOf(second) * length;
    Show({.from = from, .to = from + length});
}

void Zoom::Show(const Span& span)
{
    const auto length = std::min(std::max(span.Length(), kShortest), end_);
    const auto from = std::clamp(span.from, 0.0, end_ - length);
    shown_ = length < end_ ? Span{.from = from, .to = from + length} : Span{.from = 0, .to = end_};
}

void Zoom::Reveal(double second)
{
    if (second < shown_.from) Move(second - shown_.from);
    if (second > shown_.to) Move(second - shown_.to);
}

} // namespace studio
