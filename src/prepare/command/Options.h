// Options.h: what the command line asks for.
#pragma once

#include "command/Messages.h"
#include "machine/Memory.h"
#include "machine/RunBytes.h"
#include "prepare/Prepare.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace prepare {

/// The sound file that is made, in place of a recording for the window.
struct SoundFileOptions {
    std::optional<std::int64_t> loadAddress; // none: for PokEmul
    std::optional<std::u32string> title;     // none: the source's name without its ending
};

struct Options {
    std::vector<std::filesystem::path> inputs; // at least one
    std::filesystem::path output;              // empty: a name beside each input
    std::optional<SoundFileOptions> soundFile; // none: a recording is made
    bool force = false;
    Kind kind = Kind::Speech;
    Noise noise = Noise::TakenOut;
    std::int64_t size = machine::kLargestSize; // bytes, what the PC-1600's file may take
    sound::Part part;
    machine::Playback playback = {.rate = machine::kSampleRates.back(), .machine = {}}; // of the finest delay steps
    bool waits = false; // for Return, before the program ends
};

/// Requires: `arguments` are UTF-8, and without the program's name.
[[nodiscard]] std::variant<Options, command::Ending> ParseOptions(std::vector<std::string> arguments);

} // namespace prepare
