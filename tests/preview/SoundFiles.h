// SoundFiles.h: sound files for tests of the preview. With 20 run bytes, and kFileHeader in front, one for the PC-1600.
#pragma once

#include "KnownFile.h"

#include <string>

/// A PokEmul file: the known player with another rate byte, the run bytes, the end mark, two zeros.
inline std::string PokEmulFile(char rateByte, const std::string& runBytes)
{
    auto player = kPlayer;
    player[73] = rateByte;
    return player + runBytes + Bytes("ff 00 00");
}
