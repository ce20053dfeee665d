#include "FittedFont.h"

#include <QFontInfo>
#include <QFontMetrics>

namespace platform {

QFont FittedFont(QFont font, const QString& text, QSize box)
{
    constexpr int kSmallest = 8; // pixels; below that nobody can read it
    const auto fits = [&] {
        const auto size = QFontMetrics(font).size(Qt::TextExpandTabs, text);
        return size.width() <= box.width() && size.height() <= box.height();
    };
    for (int pixels = QFontInfo(font).pixelSize() - 1; !fits() && pixels >= kSmallest; --pixels)
        font.setPixelSize(pixels);
    return font;
}

} // namespace platform
