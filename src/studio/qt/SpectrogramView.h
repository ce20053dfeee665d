// SpectrogramView.h: a spectrogram on the time axis of the waveform, and over it the pitch that is followed.
#pragma once

#include "studio/State.h"
#include "studio/qt/Listening.h"
#include "studio/qt/PictureView.h"

namespace studio {

class SpectrogramView : public PictureView {
public:
    SpectrogramView(Heard heard, const State& state, Timeline& timeline, QString title);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void PaintPicture(QPainter& painter) override;
    void PaintOver(QPainter& painter) override;

private:
    void PaintPitch(QPainter& painter) const;

    Heard heard_;
    const State& state_;
    QString title_;
};

} // namespace studio
