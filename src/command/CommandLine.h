// CommandLine.h: the options that the commands have in common, and one way to read and to refuse them all.
#pragma once

#include "command/Messages.h"
#include "machine/Timing.h"

#include <CLI/CLI.hpp>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace command {

[[nodiscard]] CLI::Validator WholeNumber(std::int64_t least, std::int64_t most);

/// The characters that an option was given, composed ones (NFC).
[[nodiscard]] std::u32string TextOf(std::string_view value);

/// -o and --force.
void AddOutput(CLI::App& app, const std::string& description, std::string& output, bool& force);
/// --address, as hexadecimal digits: where a sound file can lie.
void AddAddress(CLI::App& app, const std::string& description, std::optional<std::int64_t>& address);
/// --clock and --waits.
void AddMachine(CLI::App& app, machine::Machine& machine);

/// Adds --help and --version, and reads `arguments`, which are UTF-8 and without the program's name, into what the
/// options are bound to. `check` may throw a CLI::ValidationError for those that don't go together. The ending, where
/// there is nothing to be done. `app` has the program's name.
[[nodiscard]] std::optional<Ending> Parse(
    CLI::App& app, std::vector<std::string> arguments, const std::function<void()>& check = [] {});

} // namespace command
