#include "studio/qt/WaveView.h"

#include "studio/Words.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace studio {
namespace {

constexpr double kGrip = 8; // pixels at either side of a handle that still are it

} // namespace

WaveView::WaveView(Studio& studio, Timeline& timeline, std::function<void()> changed)
    : PictureView(timeline),
      studio_(studio),
      changed_(std::move(changed))
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize WaveView::sizeHint() const
{
    return {600, 12 * fontMetrics().height()};
}

QSize WaveView::minimumSizeHint() const
{
    return {200, 4 * fontMetrics().height()};
}

int WaveView::RulerHeight() const
{
    return fontMetrics().height() * 3 / 2;
}

bool WaveView::HasPart() const
{
    return studio_.Now().part.Length() > 0 && Time().zoom.Shown().Length() > 0;
}

void WaveView::PaintRuler(QPainter& painter) const
{
    const auto& shown = Time().zoom.Shown();
    const auto& metrics = painter.fontMetrics();
    // As many decimals as tell one line from the next.
    const auto widest = metrics.horizontalAdvance("00:00.0000");
    const auto step = RulerStep(shown.Length() * widest * 1.2 / std::max(1, width()));
    const int decimals = step >= 1 ? 0 : static_cast<int>(std::ceil(-std::log10(step) - 1e-9));
    const auto top = height() - RulerHeight();
    auto faint = palette().color(QPalette::Text);
    faint.setAlphaF(0.25F);
    for (auto line = std::llround(std::ceil(shown.from / step)); static_cast<double>(line) * step <= shown.to; ++line) {
        const auto second = static_cast<double>(line) * step;
        const QPointF at(std::floor(XOf(second)) + 0.5, top);
        painter.setPen(faint);
        painter.drawLine(QPointF(at.x(), 0), QPointF(at.x(), height()));
        painter.setPen(palette().color(QPalette::Text));
        painter.drawText(QPointF(at.x() + 4, height() - metrics.descent() - 2),
                         QString::fromStdString(TimeText(second, decimals)));
    }
    painter.drawLine(0, top, width(), top);
}

void WaveView::PaintPicture(QPainter& painter)
{
    const auto& shown = Time().zoom.Shown();
    if (shown.Length() <= 0) return;
    PaintRuler(painter);
    const auto ratio = devicePixelRatioF();
    const auto columns = static_cast<std::size_t>(std::max(1.0, std::floor(width() * ratio)));
    const double middle = (height() - RulerHeight()) / 2.0;
    const auto peaks = studio_.Peaks(shown, columns);
    QList<QLineF> lines;
    lines.reserve(static_cast<qsizetype>(columns));
    for (std::size_t i = 0; i < columns; ++i) {
        if (!peaks[i].IsThere()) continue;
        const auto x = (static_cast<double>(i) + 0.5) / ratio;
        const auto y = [&](float sample) { return middle - std::clamp(sample, -1.0F, 1.0F) * (middle - 2); };
        // At least a pixel, so that silence is a line.
        lines.append(QLineF(x, y(peaks[i].high) - 0.5, x, y(peaks[i].low) + 0.5));
    }
    painter.setPen(QPen(palette().color(QPalette::Text), 1 / ratio, Qt::SolidLine, Qt::FlatCap));
    painter.drawLines(lines);
}

void WaveView::PaintOver(QPainter& painter)
{
    const auto top = height() - RulerHeight();
    if (HasPart()) {
        const auto& part = studio_.Now().part;
        const auto from = XOf(part.from);
        const auto to = XOf(part.to);
        auto outside = palette().color(QPalette::Window);
        outside.setAlphaF(0.7F);
        painter.fillRect(QRectF(0, 0, from, top), outside);
        painter.fillRect(QRectF(to, 0, width() - to, top), outside);
        auto inside = palette().color(QPalette::Highlight);
        inside.setAlphaF(0.18F);
        painter.fillRect(QRectF(from, 0, to - from, top), inside);
        painter.setRenderHint(QPainter::Antialiasing);
        const auto handle = palette().color(QPalette::Highlight);
        for (const auto grip : {Grip::From, Grip::To}) {
            const auto x = grip == Grip::From ? from : to;
            const double inward = grip == Grip::From ? 1 : -1;
            painter.setPen(QPen(handle, hasFocus() && keyEnd_ == grip ? 4 : 2));
            painter.drawLine(QPointF(x, 0), QPointF(x, top));
            // A flag at the top and at the bottom, to be gripped.
            QPainterPath flags;
            constexpr double kFlag = 10;
            flags.addPolygon(QPolygonF({QPointF(x, 0), QPointF(x + inward * kFlag, 0), QPointF(x, kFlag * 1.6)}));
            flags.addPolygon(
                QPolygonF({QPointF(x, top), QPointF(x + inward * kFlag, top), QPointF(x, top - kFlag * 1.6)}));
            painter.fillPath(flags, handle);
        }
        painter.setRenderHint(QPainter::Antialiasing, false);
    }
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 1, Qt::DotLine));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

WaveView::Grip WaveView::GripAt(QPointF point) const
{
    if (!HasPart() || studio_.Now().file->saved) return Grip::None;
    const auto& part = studio_.Now().part;
    const auto fromAway = std::abs(point.x() - XOf(part.from));
    const auto toAway = std::abs(point.x() - XOf(part.to));
    // Where both are under the pointer: the one that can go where the pointer is.
    if (std::min(fromAway, toAway) <= kGrip) return fromAway < toAway ? Grip::From : Grip::To;
    const auto second = SecondAt(point.x());
    return second > part.from && second < part.to ? Grip::Whole : Grip::None;
}

void WaveView::SetPart(const Span& part, Gesture gesture)
{
    studio_.SetPart(part, gesture);
    changed_();
}

void WaveView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || Time().zoom.End() <= 0) return;
    gripped_ = GripAt(event->position());
    grippedAt_ = SecondAt(event->position().x());
    before_ = studio_.Now().part;
    hasMoved_ = false;
    if (gripped_ == Grip::From || gripped_ == Grip::To) keyEnd_ = gripped_;
    update();
}

void WaveView::mouseMoveEvent(QMouseEvent* event)
{
    const auto over = gripped_ == Grip::None ? GripAt(event->position()) : gripped_;
    setCursor(over == Grip::From || over == Grip::To ? Qt::SplitHCursor
              : over == Grip::Whole                  ? Qt::OpenHandCursor
                                                     : Qt::ArrowCursor);
    if (gripped_ == Grip::None || (event->buttons() & Qt::LeftButton) == 0) return;
    const auto by = SecondAt(event->position().x()) - grippedAt_;
    const bool isClick = std::abs(XOf(grippedAt_) - event->position().x()) < QApplication::startDragDistance();
    if (!hasMoved_ && isClick) return;
    const auto gesture = hasMoved_ ? Gesture::GoesOn : Gesture::New;
    hasMoved_ = true;
    const auto end = Time().zoom.End();
    switch (gripped_) {
    case Grip::From: return SetPart({.from = std::min(before_.from + by, before_.to), .to = before_.to}, gesture);
    case Grip::To: return SetPart({.from = before_.from, .to = std::max(before_.to + by, before_.from)}, gesture);
    case Grip::Whole: {
        const auto within = std::clamp(by, -before_.from, std::max(0.0, end - before_.to));
        return SetPart({.from = before_.from + within, .to = before_.to + within}, gesture);
    }
    case Grip::None: return;
    }
}

void WaveView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) return;
    if (!hasMoved_ && Time().zoom.End() > 0 && rect().contains(event->position().toPoint()))
        Time().seek(SecondAt(event->position().x()));
    gripped_ = Grip::None;
}

void WaveView::MoveEnd(double seconds, Gesture gesture)
{
    auto part = studio_.Now().part;
    auto& end = keyEnd_ == Grip::From ? part.from : part.to;
    end = keyEnd_ == Grip::From ? std::clamp(end + seconds, 0.0, part.to) : std::max(end + seconds, part.from);
    SetPart(part, gesture);
}

void WaveView::MoveWhole(double seconds, Gesture gesture)
{
    const auto& part = studio_.Now().part;
    const auto within = std::clamp(seconds, -part.from, std::max(0.0, Time().zoom.End() - part.to));
    SetPart({.from = part.from + within, .to = part.to + within}, gesture);
}

void WaveView::keyPressEvent(QKeyEvent* event)
{
    if (!HasPart() || studio_.Now().file->saved) return event->ignore();
    const bool extends = (event->modifiers() & Qt::ShiftModifier) != 0;
    const bool isFine = (event->modifiers() & Qt::ControlModifier) != 0;
    const auto gesture = event->isAutoRepeat() ? Gesture::GoesOn : Gesture::New;
    auto& zoom = Time().zoom;
    const auto step = std::max(0.001, zoom.Shown().Length() / (isFine ? 1000 : 50));
    const auto move = [&](double seconds) { extends ? MoveEnd(seconds, gesture) : MoveWhole(seconds, gesture); };
    switch (event->key()) {
    case Qt::Key_Left: move(-step); break;
    case Qt::Key_Right: move(step); break;
    case Qt::Key_Home: move(-zoom.End()); break;
    case Qt::Key_End: move(zoom.End()); break;
    case Qt::Key_Up:
    case Qt::Key_Down:
        keyEnd_ = event->key() == Qt::Key_Up ? Grip::From : Grip::To;
        update();
        break;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        zoom.Move((event->key() == Qt::Key_PageUp ? -0.8 : 0.8) * zoom.Shown().Length());
        Time().zoomed();
        return;
    default: return event->ignore();
    }
    const auto& part = studio_.Now().part;
    zoom.Reveal(keyEnd_ == Grip::From ? part.from : part.to);
    Time().zoomed();
}

void WaveView::focusInEvent(QFocusEvent* event)
{
    PictureView::focusInEvent(event);
    update();
}

void WaveView::focusOutEvent(QFocusEvent* event)
{
    PictureView::focusOutEvent(event);
    update();
}

} // namespace studio
