// WaveView.h: the waveform with its ruler and the part that is chosen, to be moved by mouse and keys.
#pragma once

#include "studio/Studio.h"
#include "studio/qt/PictureView.h"

namespace studio {

class WaveView : public PictureView {
public:
    /// `changed`: the part was moved.
    WaveView(Studio& studio, Timeline& timeline, std::function<void()> changed);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void PaintPicture(QPainter& painter) override;
    void PaintOver(QPainter& painter) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    enum class Grip { None, From, To, Whole };

    [[nodiscard]] int RulerHeight() const;
    [[nodiscard]] Grip GripAt(QPointF point) const;
    [[nodiscard]] bool HasPart() const;
    void PaintRuler(QPainter& painter) const;
    void SetPart(const Span& part, Gesture gesture);
    /// The end that keys move, by so many seconds.
    void MoveEnd(double seconds, Gesture gesture);
    void MoveWhole(double seconds, Gesture gesture);

    Studio& studio_;
    std::function<void()> changed_;
    Grip gripped_ = Grip::None;
    double grippedAt_ = 0; // seconds
    Span before_;          // the part, when it was gripped
    bool hasMoved_ = false;
    Grip keyEnd_ = Grip::To;
};

} // namespace studio
