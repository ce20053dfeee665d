// SoundFiles.h: sound files of both layouts for the tests of the preview, every byte of them known.
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

/// The same for the PC-1600. Requires: up to 140 run bytes.
inline std::string PC1600File(char rateByte, const std::string& runBytes)
{
    auto header = kFileHeader;
    header[5] = static_cast<char>(115 + runBytes.size() + 1);
    return header + PokEmulFile(rateByte, runBytes);
}
