#include "PeriodEncoder.h"

#include "HexTokenText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>

namespace conversion {
namespace {

constexpr std::ptrdiff_t kLongPeriod = 254; // samples that one continuation byte stands for
constexpr std::uint8_t kEndMark = 255;
constexpr int kLastColumn = 16;
constexpr std::string_view kLineStart = "\tDEFB ";

bool IsAboveMidline(char sample)
{
    return static_cast<std::uint8_t>(sample) > 128;
}

bool IsBelowMidline(char sample)
{
    return static_cast<std::uint8_t>(sample) < 128;
}

/// The run bytes as assembler lines.
class Listing {
public:
    explicit Listing(const ListingSink& flushListingLine) : FlushListingLine(flushListingLine) {}

    void AddContinuation()
    {
        if (Add(kLongPeriod)) ++ColumnCount; // a line begun within a long period so takes one value more
    }

    void AddLastOfPeriod(std::ptrdiff_t value)
    {
        Add(value);
        ++ColumnCount;
    }

    void AddEndMark()
    {
        if (FlushListingLine) CompleteLine(kEndMark);
    }

private:
    /// False where the value completed a line.
    bool Add(std::ptrdiff_t value)
    {
        if (!FlushListingLine) return true;
        if (ColumnCount < kLastColumn) {
            AppendDigits(value);
            ListingLine += ',';
            return true;
        }
        CompleteLine(value);
        ListingLine = kLineStart;
        ColumnCount = 0;
        return false;
    }

    void CompleteLine(std::ptrdiff_t value)
    {
        AppendDigits(value);
        FlushListingLine(ListingLine);
    }

    void AppendDigits(std::ptrdiff_t value)
    {
        std::array<char, 3> digits{};
        ListingLine.append(digits.begin(), std::to_chars(digits.begin(), digits.end(), value).ptr);
    }

    const ListingSink& FlushListingLine;
    std::string ListingLine{kLineStart};
    int ColumnCount = 1; // where the next value falls on the line, 0 to 16
};

} // namespace

void EncodePeriods(std::string_view samples, std::string& BinZeile, std::int64_t& Datengroesse,
                   const ListingSink& FlushListingLine, Yield& RuntimeBackgroundTask)
{
    BinZeile.clear();
    Listing listing(FlushListingLine);
    const auto addToken = [&](std::string_view token) {
        BinZeile += token;
        ++Datengroesse;
    };

    const auto* start = samples.begin();
    const auto* const end = samples.substr(0, samples.size() - std::min<std::size_t>(samples.size(), 2)).end();
    for (;;) {
        const auto* const rise = std::find_if(start, end, IsAboveMidline);
        const auto* const fall = std::find_if(rise, end, IsBelowMidline);
        if (fall == end) break;
        auto SampleCount = fall + 1 - start;
        RuntimeBackgroundTask(SampleCount);
        start = fall + 1;
        // Entered at 254 and left below 255: a rest of 254 is written as the period's last byte.
        if (SampleCount >= kLongPeriod) {
            do {
                listing.AddContinuation();
                addToken("&Hfe");
                SampleCount -= kLongPeriod;
            } while (SampleCount > kLongPeriod);
        }
        listing.AddLastOfPeriod(SampleCount);
        addToken(TokenOf(static_cast<std::uint8_t>(SampleCount)));
    }
    listing.AddEndMark();
    addToken(TokenOf(kEndMark));
}

} // namespace conversion
