#include "platform/Texts.h"

#include "platform/qt/Paths.h"

namespace platform {

std::string Utf8(std::u32string_view text)
{
    return QString::fromStdU32String(std::u32string(text)).toStdString();
}

std::string NameOf(const std::filesystem::path& path)
{
    const auto name = FromPath(path.has_filename() ? path.filename() : path);
    return name.normalized(QString::NormalizationForm_C).toStdString();
}

} // namespace platform
