// DragHandle.h: what the recording is dragged by, onto the first window or into a file manager.
#pragma once

#include "studio/Studio.h"

#include <QPushButton>

namespace studio {

class DragHandle : public QPushButton {
public:
    DragHandle(Studio& studio, const QString& text);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    Studio& studio_;
    QPoint pressedAt_;
};

} // namespace studio
