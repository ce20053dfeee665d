#include "core/PeriodEncoder.h"

#include "core/HexTokenText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace core {
namespace {

using machine::kEndMark;
using machine::kStaysHigh;
using machine::RunByte;

constexpr std::size_t kSamplesPerYield = 4096;

/// Grows a text by up to four characters at a time. They gather in a block: appending each to the text costs far more.
class BlockWriter {
public:
    explicit BlockWriter(std::string& text) : text_(text) {}

    /// Appends `count` characters. Requires: four can be read, for that many are copied, in one instruction.
    void Append(const char* characters, std::size_t count)
    {
        if (used_ + 4 > block_.size()) Flush();
        std::memcpy(&block_[used_], characters, 4);
        used_ += count;
    }

    void Flush()
    {
        text_.append(block_.data(), used_);
        used_ = 0;
    }

private:
    std::string& text_;
    std::array<char, 4096> block_;
    std::size_t used_ = 0;
};

/// A value of the listing: a comma, then its decimal digits.
struct Decimal {
    std::array<char, 8> text{','};
    std::size_t length = 0;
};

const std::array<Decimal, 256>& Decimals()
{
    static const auto decimals = [] {
        std::array<Decimal, 256> made;
        for (int value = 0; auto& [text, length] : made)
            length =
                static_cast<std::size_t>(std::to_chars(text.data() + 1, text.data() + 4, value++).ptr - text.data());
        return made;
    }();
    return decimals;
}

/// The run bytes as assembler lines.
class Listing {
public:
    explicit Listing(std::string& text) : out_(text) { StartLine(); }

    void Add(RunByte value, bool continued)
    {
        constexpr int kLastColumn = 16;
        Append(value);
        if (ColumnCount < kLastColumn) {
            ++ColumnCount;
            return;
        }
        out_.Append("\r\0\0", 1);
        StartLine();
        ColumnCount = continued ? 0 : 1; // a line begun within a long period so takes one value more
    }

    void AddEndMark()
    {
        Append(kEndMark);
        out_.Append("\r\0\0", 1);
        out_.Flush();
    }

private:
    void Append(RunByte value)
    {
        const auto& [text, length] = decimals_[value];
        out_.Append(&text[comma_ ? 0 : 1], comma_ ? length : length - 1);
        comma_ = true;
    }

    void StartLine()
    {
        out_.Append("\tDEF", 4);
        out_.Append("B \0", 2);
        comma_ = false;
    }

    const std::array<Decimal, 256>& decimals_ = Decimals();
    BlockWriter out_;
    bool comma_ = false; // a value stands on the line already
    int ColumnCount = 1; // where the next value falls on the line, 0 to 16
};

} // namespace

EncodedPeriods EncodePeriods(std::string_view samples, BackgroundTask& RuntimeBackgroundTask)
{
    EncodedPeriods periods;
    auto& [runBytes, continued] = periods;
    const auto end = samples.size() - std::min<std::size_t>(samples.size(), 2);
    runBytes.reserve(end / 2); // the most that can come; memory that isn't used costs nothing
    std::size_t start = 0;     // of the period
    bool Armed = false;        // a sample above the midline has been seen in it
    for (std::size_t i = 0; i < end; RuntimeBackgroundTask(kSamplesPerYield)) {
        for (const auto blockEnd = std::min(end, i + kSamplesPerYield); i < blockEnd; ++i) {
            const auto sample = static_cast<std::uint8_t>(samples[i]);
            if (sample > 128) Armed = true;
            if (sample >= 128 || !Armed) continue;
            Armed = false;
            auto SampleCount = i + 1 - start;
            start = i + 1;
            // Entered at 254 and left below 255: a rest of 254 is written as the period's last byte.
            if (SampleCount >= kStaysHigh) {
                do {
                    continued.push_back(runBytes.size());
                    runBytes.push_back(kStaysHigh);
                    SampleCount -= kStaysHigh;
                } while (SampleCount > kStaysHigh);
            }
            runBytes.push_back(static_cast<RunByte>(SampleCount));
        }
    }
    return periods;
}

std::string TokensOf(const EncodedPeriods& periods)
{
    std::string tokens;
    tokens.reserve(kTokenLength * (periods.runBytes.size() + 1));
    BlockWriter out(tokens);
    for (const auto byte : periods.runBytes)
        out.Append(TokenOf(byte).data(), kTokenLength);
    out.Append(TokenOf(kEndMark).data(), kTokenLength);
    out.Flush();
    for (const auto k : periods.continued)
        tokens.replace(k * kTokenLength, kTokenLength, "&Hfe");
    return tokens;
}

std::string ListingOf(const EncodedPeriods& periods)
{
    std::string text;
    Listing listing(text);
    auto next = periods.continued.begin();
    for (std::size_t k = 0; k < periods.runBytes.size(); ++k) {
        const bool continued = next != periods.continued.end() && *next == k;
        listing.Add(periods.runBytes[k], continued);
        if (continued) ++next;
    }
    listing.AddEndMark();
    return text;
}

} // namespace core
