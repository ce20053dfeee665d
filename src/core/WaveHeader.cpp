#include "core/WaveHeader.h"

namespace core {
namespace {

/// Low byte first.
void AppendNumber(std::string& bytes, std::int64_t number, int count)
{
    for (int i = 0; i < count; ++i)
        bytes += static_cast<char>(number >> (8 * i) & 0xFF);
}

} // namespace

std::string WaveHeader(std::int64_t dataBytes, std::int64_t hertz, std::int64_t sampleBytes)
{
    std::string header = "RIFF";
    AppendNumber(header, 36 + dataBytes, 4);
    header += "WAVEfmt ";
    AppendNumber(header, 16, 4);
    AppendNumber(header, 1, 2); // PCM
    AppendNumber(header, 1, 2); // channel
    AppendNumber(header, hertz, 4);
    AppendNumber(header, sampleBytes * hertz, 4); // bytes a second
    AppendNumber(header, sampleBytes, 2);
    AppendNumber(header, 8 * sampleBytes, 2); // bits a sample
    header += "data";
    AppendNumber(header, dataBytes, 4);
    return header;
}

} // namespace core
