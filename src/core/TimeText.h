// TimeText.h: times as users write and read them: seconds, or minutes and seconds, or hours too: "12.5", "1:30",
// "1:00:00"; a comma is a point.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace core {

/// The seconds that `text` means; none where it means none.
[[nodiscard]] std::optional<double> SecondsOf(std::string_view text);

/// To the tenth: "0:12.5".
[[nodiscard]] std::string TimeText(double seconds);

} // namespace core
