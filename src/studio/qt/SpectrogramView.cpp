#include "studio/qt/SpectrogramView.h"

#include "studio/ColourMap.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace studio {
namespace {

QList<QRgb> Colours()
{
    QList<QRgb> colours;
    for (const auto& colour : ColourMap())
        colours.append(qRgb(colour.red, colour.green, colour.blue));
    return colours;
}

} // namespace

SpectrogramView::SpectrogramView(Heard heard, const State& state, Timeline& timeline, QString title)
    : PictureView(timeline),
      heard_(heard),
      state_(state),
      title_(std::move(title))
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAccessibleName(title_);
}

QSize SpectrogramView::sizeHint() const
{
    return {600, 8 * fontMetrics().height()};
}

QSize SpectrogramView::minimumSizeHint() const
{
    return {200, 3 * fontMetrics().height()};
}

void SpectrogramView::PaintPicture(QPainter& painter)
{
    const auto& shown = Time().zoom.Shown();
    if (!state_.pictures || shown.Length() <= 0) return;
    const auto& spectrogram = heard_ == Heard::Source ? state_.pictures->source : state_.pictures->machine;
    const auto covered = spectrogram.Covered();
    const Span seen{.from = std::max(shown.from, covered.from), .to = std::min(shown.to, covered.to)};
    if (seen.Length() <= 0) return;
    const QRectF place(XOf(seen.from), 0, XOf(seen.to) - XOf(seen.from), height());
    const auto ratio = devicePixelRatioF();
    const int columns = std::max(1, static_cast<int>(std::ceil(place.width() * ratio)));
    const int rows = std::max(1, static_cast<int>(height() * ratio));
    const auto levels = spectrogram.Picture(seen, static_cast<std::size_t>(columns), static_cast<std::size_t>(rows));
    QImage image(levels.data(), columns, rows, columns, QImage::Format_Indexed8);
    static const auto colours = Colours();
    image.setColorTable(colours);
    painter.drawImage(place, image);
    if (heard_ == Heard::Source) PaintPitch(painter);
}

void SpectrogramView::PaintPitch(QPainter& painter) const
{
    const auto& pictures = *state_.pictures;
    QList<QPolygonF> lines(1); // one for each stretch that isn't silent
    for (std::size_t i = 0; i < pictures.pitch.size(); ++i) {
        const double second = state_.result->part.from + static_cast<double>(i) * pictures.pitchStep;
        if (pictures.pitch[i] > 0)
            lines.last().append(QPointF(XOf(second), HeightOf(double{pictures.pitch[i]}) * height()));
        else if (!lines.last().isEmpty())
            lines.append(QPolygonF());
    }
    painter.setRenderHint(QPainter::Antialiasing);
    for (const auto& [colour, width] : {std::pair(Qt::black, 4.0), std::pair(Qt::white, 1.8)}) {
        painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        for (const auto& line : lines)
            painter.drawPolyline(line);
    }
}

void SpectrogramView::PaintOver(QPainter& painter)
{
    const auto& metrics = painter.fontMetrics();
    const auto text = metrics.elidedText(title_, Qt::ElideRight, width() - 16);
    const QRect box(0, 0, metrics.horizontalAdvance(text) + 12, metrics.height() + 4);
    auto ground = palette().color(QPalette::Base);
    ground.setAlphaF(0.8F);
    painter.fillRect(box, ground);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(box, Qt::AlignCenter, text);
}

} // namespace studio
