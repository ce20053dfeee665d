// QtText.h: between our texts and the toolkit's.
#pragma once

#include <QList>
#include <QString>

#include <string>
#include <string_view>

namespace platform {

inline QString FromUtf8(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

inline QString FromUtf32(std::u32string_view text)
{
    return QString::fromUcs4(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::u32string ToUtf32(const QString& text)
{
    const auto codes = text.toUcs4();
    return {codes.begin(), codes.end()};
}

} // namespace platform
