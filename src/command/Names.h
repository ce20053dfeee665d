// Names.h: names of files as characters, whatever bytes they are made of.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace command {

/// Arguments are UTF-8 on Windows too, as the programs' manifest says.
[[nodiscard]] std::filesystem::path PathOf(std::string_view argument);

/// U+FFFD for what is no character.
[[nodiscard]] std::u32string CharactersOf(const std::filesystem::path& path);

/// Composed characters (NFC), as the window reads a name: a decomposed umlaut is one. Requires: `text` of CharactersOf.
[[nodiscard]] std::u32string Composed(const std::u32string& text);

/// As UTF-8. What a terminal would obey is shown as "?".
[[nodiscard]] std::string Shown(std::u32string text);
[[nodiscard]] std::string Shown(const std::filesystem::path& path);

} // namespace command
