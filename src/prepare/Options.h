// Options.h: what the command line asks for.
#pragma once

#include "command/Messages.h"
#include "machine/Memory.h"
#include "machine/RunBytes.h"
#include "prepare/ReadSound.h"
#include "prepare/Sound.h"

#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace prepare {

enum class Kind { Speech, Music, AnySound };

struct Options {
    std::vector<std::filesystem::path> inputs; // at least one
    std::filesystem::path output;              // empty: a name beside each input
    bool force = false;
    Kind kind = Kind::Speech;
    std::int64_t size = machine::kLargestSize; // bytes, what the PC-1600's file may take
    Part part;
    machine::Playback playback = {.rate = machine::kSampleRates.back(),
                                  .machine = {}}; // whose delay steps are the finest
    bool waits = false;                           // for Return, before the program ends
};

/// Requires: `arguments` are UTF-8, and without the program's name.
[[nodiscard]] std::variant<Options, command::Ending> ParseOptions(std::vector<std::string> arguments);

} // namespace prepare
