// KnownFile.h: a sound file whose every byte is known, and what reads and makes such files.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <cstdlib>

/// An empty folder for one test.
inline std::filesystem::path NewFolder()
{
    auto name = (std::filesystem::temp_directory_path() / "tonfloss-XXXXXX").string();
    return mkdtemp(name.data());
}

inline std::string Read(const std::filesystem::path& file)
{
    return (std::ostringstream() << std::ifstream(file, std::ios::binary).rdbuf()).str();
}

inline std::string Bytes(const std::string& hex)
{
    std::istringstream stream(hex);
    std::string bytes;
    for (int value = 0; stream >> std::hex >> value;)
        bytes += static_cast<char>(value);
    return bytes;
}

// tone.wav at 11025 Hz: 20 periods and the end mark, load address 80C5.
inline const std::string kFileHeader = Bytes("ff 10 00 00 10 88 00 00 c5 80 00 c5 80 00 00 0f");
inline const std::string kPlayer =
    Bytes("cd 0f 81 f3 21 38 81 7e fe ff ca f3 80 47 3e c0 d3 18 cd f5 80 10 fb 7e 47 fe fe 20 04 3e c0 18 "
          "02 3e 40 d3 18 cd f5 80 10 fb 23 c3 cc 80 fb c9 c5 e5 21 0e 81 7e 06 0c fe 06 28 08 06 05 fe 08 "
          "28 02 06 01 10 fe e1 c1 c9 0b cd 12 01 cd 09 01 3e 0d 11 1e 81 cd eb 00 c9 74 6f 6e 65 2e 77 61 "
          "76 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 0d");
inline const std::string kRunBytes = Bytes("05 08 08 08 08 08 08 08 08 08 08 08 08 08 08 08 08 08 08 08 ff 00 00");

/// A PokEmul file: the known player with another rate byte, the run bytes, the end mark, two zeros.
inline std::string PokEmulFile(char rateByte, const std::string& runBytes)
{
    auto player = kPlayer;
    player[73] = rateByte;
    return player + runBytes + std::string("\xFF\0\0", 3);
}
