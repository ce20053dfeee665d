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

/// Grows a text or run bytes by little at a time, which gathers in a block: appending each by itself costs far more.
template <class Whole>
class BlockWriter {
public:
    explicit BlockWriter(Whole& whole) : whole_(whole) {}

    void Append(typename Whole::value_type element)
    {
        if (used_ == block_.size()) Flush();
        block_[used_++] = element;
    }

    /// Appends `count` characters. Requires: four can be read, for that many are copied, in one instruction.
    void Append(const char* characters, std::size_t count)
    {
        if (used_ + 4 > block_.size()) Flush();
        std::memcpy(&block_[used_], characters, 4);
        used_ += count;
    }

    [[nodiscard]] std::size_t Size() const { return whole_.size() + used_; }

    void Flush()
    {
        whole_.insert(whole_.end(), block_.data(), block_.data() + used_);
        used_ = 0;
    }

private:
    Whole& whole_;
    std::array<typename Whole::value_type, 4096> block_;
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

    void AddContinuation() { Add(kStaysHigh, 0); } // a line begun within a long period so takes one value more
    void AddLastOfPeriod(RunByte value) { Add(value, 1); }
    void AddEndMark()
    {
        Append(kEndMark);
        out_.Append('\r');
        out_.Flush();
    }

private:
    void Add(RunByte value, int firstColumn)
    {
        constexpr int kLastColumn = 16;
        Append(value);
        if (ColumnCount < kLastColumn) {
            ++ColumnCount;
            return;
        }
        out_.Append('\r');
        StartLine();
        ColumnCount = firstColumn;
    }

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
    BlockWriter<std::string> out_;
    bool comma_ = false; // a value stands on the line already
    int ColumnCount = 1; // where the next value falls on the line, 0 to 16
};

struct NoListing {
    void AddContinuation() {}
    void AddLastOfPeriod(RunByte /*value*/) {}
    void AddEndMark() {}
};

template <class ListingOrNone>
EncodedPeriods Encode(std::string_view samples, ListingOrNone listing, BackgroundTask& RuntimeBackgroundTask)
{
    EncodedPeriods periods;
    BlockWriter out(periods.runBytes);
    const auto end = samples.size() - std::min<std::size_t>(samples.size(), 2);
    periods.runBytes.reserve(end / 2); // the most that can come; memory that isn't used costs nothing
    std::size_t start = 0;             // of the period
    bool Armed = false;                // a sample above the midline has been seen in it
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
                    listing.AddContinuation();
                    periods.continued.push_back(out.Size());
                    out.Append(kStaysHigh);
                    SampleCount -= kStaysHigh;
                } while (SampleCount > kStaysHigh);
            }
            const auto last = static_cast<RunByte>(SampleCount);
            listing.AddLastOfPeriod(last);
            out.Append(last);
        }
    }
    listing.AddEndMark();
    out.Flush();
    return periods;
}

} // namespace

EncodedPeriods EncodePeriods(std::string_view samples, std::string* listing, BackgroundTask& RuntimeBackgroundTask)
{
    if (listing == nullptr) return Encode(samples, NoListing(), RuntimeBackgroundTask);
    return Encode(samples, Listing(*listing), RuntimeBackgroundTask);
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

} // namespace core
