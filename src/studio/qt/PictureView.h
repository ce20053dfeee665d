// PictureView.h: what the pictures over time have in common: the axis, the line that runs while something plays, a
// click that goes there, the wheel. Time goes from left to right in each language.
#pragma once

#include "studio/Zoom.h"

#include <QWidget>

#include <functional>
#include <optional>

namespace studio {

/// What all pictures show and do together. The window sets the functions.
struct Timeline {
    Zoom zoom;
    std::optional<double> playing; // seconds; where the line is
    std::function<void(double second)> seek;
    std::function<void()> zoomed; // the zoom was changed
};

class PictureView : public QWidget {
public:
    explicit PictureView(Timeline& timeline);

    /// What it shows has changed, as a screen reader says it, too.
    void ShowAnew(const QString& description);

protected:
    [[nodiscard]] Timeline& Time() const { return timeline_; }
    [[nodiscard]] double XOf(double second) const { return Time().zoom.PlaceOf(second) * width(); }
    [[nodiscard]] double SecondAt(double x) const { return Time().zoom.SecondAt(x / std::max(1, width())); }
    /// All but the running line and the focus, which are painted over it. Its result is kept until ShowAnew.
    virtual void PaintPicture(QPainter& painter) = 0;
    /// Over the picture, each time.
    virtual void PaintOver(QPainter& painter) = 0;

    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    Timeline& timeline_;
    QPixmap picture_;
    Span pictured_;
    qint64 palette_ = 0;
    bool isStale_ = true;
};

} // namespace studio
