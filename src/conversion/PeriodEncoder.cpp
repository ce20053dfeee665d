#include "PeriodEncoder.h"

#include "HexTokenText.h"

namespace conversion {
namespace {

constexpr std::uint8_t kMidline = 128;
constexpr std::int64_t kLongPeriod = 254; // samples that one continuation byte stands for
constexpr std::uint8_t kEndMark = 255;
constexpr int kLastColumn = 16;
constexpr std::string_view kLineStart = "\tDEFB ";

/// Gathers run bytes as tokens and as listing lines. The listing's columns run the same whether anyone reads it.
class RunBytes {
public:
    RunBytes(std::string& binZeile, std::int64_t& datengroesse, const ListingSink& flushListingLine)
        : BinZeile(binZeile),
          Datengroesse(datengroesse),
          FlushListingLine(flushListingLine)
    {}

    void AddContinuation()
    {
        if (List(kLongPeriod)) ++ColumnCount; // a line begun within a long period so takes one value more
        Add("&Hfe");
    }

    void AddLastOfPeriod(std::int64_t sampleCount)
    {
        List(sampleCount);
        ++ColumnCount;
        Add(TokenOf(static_cast<std::uint8_t>(sampleCount)));
    }

    void AddEndMark()
    {
        CompleteLine(kEndMark);
        Add(TokenOf(kEndMark));
    }

private:
    /// False where the value completed a line.
    bool List(std::int64_t value)
    {
        if (ColumnCount < kLastColumn) {
            ListingLine += std::to_string(value) + ",";
            return true;
        }
        CompleteLine(value);
        ListingLine = kLineStart;
        ColumnCount = 0;
        return false;
    }

    void CompleteLine(std::int64_t value) { FlushListingLine(ListingLine + std::to_string(value)); }

    void Add(std::string_view token)
    {
        BinZeile += token;
        ++Datengroesse;
    }

    std::string& BinZeile;
    std::int64_t& Datengroesse;
    const ListingSink& FlushListingLine;
    std::string ListingLine{kLineStart};
    int ColumnCount = 1; // where the next value falls on the line, 0 to 16
};

} // namespace

void EncodePeriods(std::string_view samples, std::string& BinZeile, std::int64_t& Datengroesse,
                   const ListingSink& FlushListingLine, Yield& RuntimeBackgroundTask)
{
    BinZeile.clear();
    RunBytes runBytes(BinZeile, Datengroesse, FlushListingLine);
    bool Armed = false; // a sample above the midline has been seen since the last fall
    std::int64_t SampleCount = 0;

    for (std::size_t i = 0; i + 2 < samples.size(); ++i) {
        const auto sample = static_cast<std::uint8_t>(samples[i]);
        const bool falls = Armed && sample < kMidline;
        Armed = sample > kMidline || (Armed && !falls);
        ++SampleCount;
        if (falls) {
            // Entered at 254 and left below 255: a rest of 254 is written as the period's last byte.
            if (SampleCount >= kLongPeriod) {
                do {
                    runBytes.AddContinuation();
                    SampleCount -= kLongPeriod;
                    RuntimeBackgroundTask();
                } while (SampleCount > kLongPeriod);
            }
            runBytes.AddLastOfPeriod(SampleCount);
            SampleCount = 0;
        }
        RuntimeBackgroundTask();
    }
    runBytes.AddEndMark();
}

} // namespace conversion
