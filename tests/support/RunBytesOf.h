// RunBytesOf.h: run bytes as they are written down in a test.
#pragma once

#include "machine/RunBytes.h"
#include "support/KnownFile.h"

/// Those of "02 fe 05".
inline machine::RunBytes RunBytesOf(const std::string& hex)
{
    const auto bytes = Bytes(hex);
    return {bytes.begin(), bytes.end()};
}
