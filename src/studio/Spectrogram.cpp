#include "studio/Spectrogram.h"

#include "prepare/Spectra.h"
#include "sound/Sound.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>

namespace studio {
namespace {

using prepare::Spectra;

constexpr double kSecondsPerColumn = static_cast<double>(Spectra::kHop) / sound::kRate;
constexpr std::size_t kAtOnce = 256; // columns: the spectra of a whole minute are large

double MelOf(double hertz)
{
    return std::log(1 + hertz / 700); // the scale's own number; its factor is left out
}

double HertzOfRow(double row)
{
    return 700 * (std::exp(row / Spectrogram::kRows * MelOf(Spectrogram::kHighest)) - 1);
}

/// The power of each row of `frame`: the loudest line in it, or where it is narrower than lines are, what lies between
/// two.
std::array<float, Spectrogram::kRows> RowsOf(std::span<const Spectra::Bin> frame)
{
    static const auto kLines = [] { // of each row's edges
        std::array<double, Spectrogram::kRows + 1> lines{};
        for (std::size_t row = 0; row < lines.size(); ++row)
            lines[row] = HertzOfRow(static_cast<double>(row)) / Spectra::HertzOf(1);
        return lines;
    }();
    std::array<float, Spectrogram::kRows> rows{};
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const auto middle = (kLines[row] + kLines[row + 1]) / 2;
        const auto below = static_cast<std::size_t>(middle);
        const auto part = static_cast<float>(middle - std::floor(middle));
        rows[row] = (1 - part) * std::norm(frame[below]) + part * std::norm(frame[below + 1]);
        for (auto line = static_cast<std::size_t>(std::ceil(kLines[row])); static_cast<double>(line) < kLines[row + 1];
             ++line)
            rows[row] = std::max(rows[row], std::norm(frame[line]));
    }
    return rows;
}

} // namespace

Spectrogram::Spectrogram(std::span<const float> sound, double from, const core::Progress& progress) : from_(from)
{
    std::vector<float> powers;
    // Piece by piece, each with a window's length of what is before it. The first frame of a piece is half before it.
    for (std::size_t begin = 0; begin < sound.size(); begin += kAtOnce * Spectra::kHop) {
        const auto ahead = std::min(begin, Spectra::kWindow);
        const auto behind = std::min(begin + kAtOnce * Spectra::kHop + Spectra::kWindow, sound.size());
        const Spectra spectra(sound.subspan(begin - ahead, behind - (begin - ahead)), progress);
        if (!progress.GoesOn(begin, sound.size())) return;
        const auto first = ahead / Spectra::kHop;
        const auto count = std::min(kAtOnce, (sound.size() - begin + Spectra::kHop - 1) / Spectra::kHop);
        for (auto frame = first; frame < first + count; ++frame)
            std::ranges::copy(RowsOf(spectra[frame]), std::back_inserter(powers));
    }
    columns_ = powers.size() / kRows;
    const auto loudest = powers.empty() ? 0.0F : *std::ranges::max_element(powers);
    levels_.reserve(powers.size());
    for (const auto power : powers) {
        const auto decibels = loudest > 0 ? 10 * std::log10(power / loudest + 1e-20F) : -HUGE_VAL;
        levels_.push_back(static_cast<std::uint8_t>(std::lround(255 * std::clamp(1 + decibels / kRange, 0.0, 1.0))));
    }
}

Span Spectrogram::Covered() const
{
    return {.from = from_, .to = from_ + static_cast<double>(columns_) * kSecondsPerColumn};
}

std::vector<std::uint8_t> Spectrogram::Picture(const Span& span, std::size_t columns, std::size_t rows) const
{
    assert(span.Length() > 0);
    /// The cells from the k-th of `count` places on up to the next place, at least one; of all from 0 to `end`.
    struct Cells {
        std::size_t first;
        std::size_t behind;
    };
    const auto cells = [](double from, double to, std::size_t end) -> Cells {
        if (to <= 0 || from >= static_cast<double>(end)) return {0, 0};
        const auto first = static_cast<std::size_t>(std::max(from, 0.0));
        return {first, std::clamp(static_cast<std::size_t>(std::ceil(to)), first + 1, end)};
    };
    std::vector<std::uint8_t> picture(columns * rows);
    std::array<std::uint8_t, kRows> column{};
    for (std::size_t x = 0; x < columns; ++x) {
        const auto place = [&](std::size_t k) {
            const auto seconds = span.from + span.Length() * static_cast<double>(k) / static_cast<double>(columns);
            return (seconds - from_) / kSecondsPerColumn + 0.5; // it is that of the moment in its middle
        };
        const auto across = cells(place(x), place(x + 1), columns_);
        if (across.first == across.behind) continue;
        column.fill(0);
        for (auto k = across.first; k < across.behind; ++k)
            for (std::size_t row = 0; row < kRows; ++row)
                column[row] = std::max(column[row], levels_[k * kRows + row]);
        for (std::size_t y = 0; y < rows; ++y) {
            const auto height = static_cast<double>(kRows) / static_cast<double>(rows);
            const auto up =
                cells(height * static_cast<double>(rows - 1 - y), height * static_cast<double>(rows - y), kRows);
            picture[y * columns + x] = *std::max_element(column.begin() + static_cast<std::ptrdiff_t>(up.first),
                                                         column.begin() + static_cast<std::ptrdiff_t>(up.behind));
        }
    }
    return picture;
}

double HeightOf(double hertz)
{
    return 1 - MelOf(hertz) / MelOf(Spectrogram::kHighest);
}

} // namespace studio
