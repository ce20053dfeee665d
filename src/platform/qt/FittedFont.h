// FittedFont.h: keeps a text readable in a box whose size is fixed, whatever the desktop's font.
#pragma once

#include <QFont>
#include <QSize>
#include <QString>

namespace platform {

/// `font`, or the largest smaller size of it in which `text` fits into `box`, down to 8 pixels.
[[nodiscard]] QFont FittedFont(QFont font, const QString& text, QSize box);

} // namespace platform
