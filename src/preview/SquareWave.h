// SquareWave.h: what the port does, as samples of 16 bits, and as a Wave file of them, mono.
//     port    C0 is +16000, 40 is -16000: -6 dB of full scale, and with equal halves no offset. Nothing is taken off
//             where the halves are unequal: the offset is then the port's own.
//     time    sample 0 is the first write; before it the port is low. The last one is where the sound ends.
//     edges   band-limited: flat up to 0.4 of the output rate, -76 dB and less from 0.5 of it on, so that what a sample
//             can't hold doesn't come back as a whistle. An edge keeps its place, as long as its neighbours are 1.5
//             samples away; a tone above half the output rate can't be heard.
#pragma once

#include "files/Files.h"
#include "machine/Timing.h"

#include <array>
#include <cstdint>
#include <span>

namespace preview {

/// The samples of one performance, worked out where they are asked for: what is heard takes no memory.
class SquareWave {
public:
    /// `clock` in Hz of the machine, `outputRate` of the samples.
    SquareWave(machine::Performance performance, std::int64_t clock, std::int64_t outputRate);

    [[nodiscard]] std::int64_t SampleCount() const;
    /// The samples from `first` on, the same whatever is read before. Requires: they are all below SampleCount().
    void Read(std::int64_t first, std::span<std::int16_t> samples) const;

private:
    static constexpr std::int64_t kBlock = 1024; // samples
    using Block = std::array<std::int16_t, kBlock>;

    [[nodiscard]] Block BlockAt(std::int64_t first) const;

    machine::Performance performance_;
    std::int64_t clock_;
    std::int64_t outputRate_;
};

/// Gives the Wave file of `performance` to `sink` in pieces of a few KiB. Requires: the file stays below 4 GiB.
void WriteWave(const machine::Performance& performance, std::int64_t clock, std::int64_t outputRate,
               const files::ByteSink& sink);

} // namespace preview
