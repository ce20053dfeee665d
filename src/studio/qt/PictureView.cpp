#include "studio/qt/PictureView.h"

#include <QMouseEvent>
#include <QPainter>

#include <cmath>

namespace studio {

PictureView::PictureView(Timeline& timeline) : timeline_(timeline)
{
    setLayoutDirection(Qt::LeftToRight);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void PictureView::ShowAnew(const QString& description)
{
    setAccessibleDescription(description);
    isStale_ = true;
    update();
}

void PictureView::paintEvent(QPaintEvent* /*event*/)
{
    const auto ratio = devicePixelRatioF();
    const auto pixels = size() * ratio;
    const auto& shown = timeline_.zoom.Shown();
    if (isStale_ || picture_.size() != pixels || pictured_ != shown || palette_ != palette().cacheKey()) {
        picture_ = QPixmap(pixels);
        picture_.setDevicePixelRatio(ratio);
        picture_.fill(palette().color(QPalette::Base));
        QPainter painter(&picture_);
        painter.setPen(palette().color(QPalette::Text));
        PaintPicture(painter);
        pictured_ = shown;
        palette_ = palette().cacheKey();
        isStale_ = false;
    }
    QPainter painter(this);
    painter.drawPixmap(0, 0, picture_);
    PaintOver(painter);
    if (timeline_.playing && shown.Length() > 0) {
        // Light within dark: it is seen on each colour.
        const QPointF top(XOf(*timeline_.playing), 0);
        const QPointF bottom(top.x(), height());
        painter.setPen(QPen(Qt::black, 3));
        painter.drawLine(top, bottom);
        painter.setPen(QPen(Qt::white, 1));
        painter.drawLine(top, bottom);
    }
}

void PictureView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && timeline_.zoom.End() > 0) timeline_.seek(SecondAt(event->position().x()));
}

void PictureView::wheelEvent(QWheelEvent* event)
{
    auto& zoom = timeline_.zoom;
    if (zoom.End() <= 0) return;
    constexpr double kNotch = 120; // eighths of a degree
    const auto turned = event->angleDelta();
    const bool isSideways =
        std::abs(turned.x()) > std::abs(turned.y()) || (event->modifiers() & Qt::ShiftModifier) != 0;
    if (isSideways)
        zoom.Move(-(turned.x() != 0 ? turned.x() : turned.y()) / kNotch * zoom.Shown().Length() / 10);
    else
        zoom.By(std::pow(2, -turned.y() / kNotch / 2), SecondAt(event->position().x()));
    timeline_.zoomed();
    event->accept();
}

} // namespace studio
