// KnownFile.h: a sound file whose every byte is known, and what reads such files.
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

// SOUND.bin, byte for byte: tone.wav at 11025 Hz, 20 periods and the end mark, load address 80C5.
inline const std::string kSoundFile = Bytes(SOUND_BIN);
inline const std::string kFileHeader = kSoundFile.substr(0, 16);
inline const std::string kPlayer = kSoundFile.substr(16, 115);
inline const std::string kRunBytes = kSoundFile.substr(131); // and the two zeros
