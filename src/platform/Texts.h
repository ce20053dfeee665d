// Texts.h: what the window shows of names and errors, as UTF-8.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace platform {

[[nodiscard]] std::string Utf8(std::u32string_view text);

/// The name without folders, composed (NFC); where there is none, as for the root, the path.
[[nodiscard]] std::string NameOf(const std::filesystem::path& path);

/// What the system says of an error, in the language of the desktop.
[[nodiscard]] std::string ErrorText(const std::error_code& error);

} // namespace platform
