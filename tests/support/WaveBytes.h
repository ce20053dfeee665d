// WaveBytes.h: Wave files for tests: a good one that can be heard, which one call spoils.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

inline std::string Times(std::size_t count, std::string_view text)
{
    std::string all;
    for (; count > 0; --count)
        all += text;
    return all;
}

/// The two halves of four samples in turn, 160 samples in all: the run bytes are 5, nineteen times 8, and 255.
inline std::string ToneOf160()
{
    return Times(20, "\xC8\xC8\xC8\xC8\x32\x32\x32\x32");
}

class WaveBytes {
public:
    /// 204 bytes with the tone of 160 samples at 11025 Hz.
    WaveBytes()
        : bytes_("RIFF\0\0\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x11\x2b\0\0\x11\x2b\0\0\1\0\x08\0data\0\0\0\0", kHeader)
    {
        bytes_ += ToneOf160();
    }

    WaveBytes& formatTag(std::uint32_t v) { return Put(20, 2, v); }
    WaveBytes& channels(std::uint32_t v) { return Put(22, 2, v); }
    WaveBytes& rate(std::uint32_t v) { return Put(24, 4, v); }
    WaveBytes& bits(std::uint32_t v) { return Put(34, 2, v); }
    WaveBytes& length(std::size_t v) { return bytes_.resize(v), *this; }
    WaveBytes& samples(std::string_view v) { return bytes_.replace(kHeader, std::string::npos, v), *this; }

    operator std::string() const { return bytes_; } // reads like a file in tables

private:
    static constexpr std::size_t kHeader = 44; // bytes

    WaveBytes& Put(std::size_t offset, std::size_t count, std::uint32_t v)
    {
        for (std::size_t i = 0; i < count; ++i)
            bytes_[offset + i] = static_cast<char>(v >> (8 * i));
        return *this;
    }

    std::string bytes_;
};

/// Periods of `period` samples, the first half high; `runBytes` run bytes, the end mark included.
/// Requires: period below 254.
inline std::string Tone(std::size_t period, std::size_t runBytes)
{
    const auto one = std::string(period / 2, '\xC8') + std::string(period - period / 2, '\x32');
    return '\x32' + Times(runBytes - 1, one) + "\x32\x32";
}
