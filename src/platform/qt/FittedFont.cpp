#include "platform/qt/FittedFont.h"

#include <QFontInfo>
#include <QFontMetrics>

#include <algorithm>

namespace platform {

QFont FittedFont(QFont font, const QString& text, QSize box)
{
    constexpr int kSmallest = 8; // pixels; below that nobody can read it
    for (int pixels = QFontInfo(font).pixelSize();; font.setPixelSize(pixels)) {
        const auto size = QFontMetrics(font).size(Qt::TextExpandTabs, text);
        const double scale = std::min(1.0 * box.width() / size.width(), 1.0 * box.height() / size.height());
        if (scale >= 1 || pixels <= kSmallest) return font;
        pixels = std::max(kSmallest, std::min(pixels - 1, static_cast<int>(pixels * scale))); // each try loads a font
    }
}

} // namespace platform
