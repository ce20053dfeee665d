#include "command/Names.h"

#include <utf8proc.h>

#include <cstdlib>
#include <memory>

namespace command {
namespace {

constexpr char32_t kNone = 0xFFFD;

std::u32string Decoded(const utf8proc_uint8_t* bytes, std::size_t count)
{
    std::u32string text;
    while (count > 0) {
        utf8proc_int32_t character = 0;
        const auto length = utf8proc_iterate(bytes, static_cast<utf8proc_ssize_t>(count), &character);
        text += length > 0 ? static_cast<char32_t>(character) : kNone;
        const auto taken = length > 0 ? static_cast<std::size_t>(length) : 1;
        bytes += taken;
        count -= taken;
    }
    return text;
}

const utf8proc_uint8_t* BytesOf(const std::string& text)
{
    return reinterpret_cast<const utf8proc_uint8_t*>(text.data());
}

} // namespace

std::u32string CharactersOf(const std::filesystem::path& path)
{
    return Decoded(BytesOf(path.native()), path.native().size());
}

std::u32string Composed(const std::u32string& text)
{
    const auto bytes = std::filesystem::path(text).native();
    const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> composed(utf8proc_NFC(BytesOf(bytes)), std::free);
    if (composed == nullptr) throw std::bad_alloc();
    return Decoded(composed.get(), std::char_traits<char>::length(reinterpret_cast<const char*>(composed.get())));
}

} // namespace command
