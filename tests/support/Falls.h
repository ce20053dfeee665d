// Falls.h: the one rule of the encoder, once more, for those who hold its result against the recording.
#pragma once

#include <string_view>
#include <utility>
#include <vector>

/// Samples between the falls through the midline, the first counted from the start. The last two are never looked at.
inline std::vector<long> FallDistances(std::string_view samples)
{
    std::vector<long> distances;
    bool high = false;
    long last = 0;
    for (long i = 0; i < static_cast<long>(samples.size()) - 2; ++i) {
        const auto sample = static_cast<unsigned char>(samples[static_cast<std::size_t>(i)]);
        if (high && sample < 128) distances.push_back(i + 1 - std::exchange(last, i + 1));
        if (sample != 128) high = sample > 128;
    }
    return distances;
}
