#include "sound/Mp3Source.h"

#include <algorithm>
#include <array>
#include <new>
#include <string_view>

namespace sound {
namespace {

constexpr std::int64_t kTagHeader = 10; // bytes

/// Of the tag that begins there; 0 for none.
std::int64_t TagLength(std::string_view bytes)
{
    if (bytes.size() < kTagHeader || !bytes.starts_with("ID3")) return 0;
    std::int64_t length = 0;
    for (const auto byte : bytes.substr(6, 4)) // seven bits each
        length = length << 7 | (byte & 0x7F);
    return kTagHeader + length;
}

/// Where the first thing behind the tags at `begin` is.
std::int64_t BehindTags(FileBytes& bytes, std::int64_t begin)
{
    for (std::int64_t tag = 0; (tag = TagLength(bytes.Piece(begin, kTagHeader))) > 0;)
        begin += tag;
    return begin;
}

/// Whether a frame of MPEG audio begins there.
bool IsFrame(FileBytes& bytes, std::int64_t begin)
{
    const auto frame = bytes.Piece(begin, 4);
    const auto bits = [&](std::size_t byte, int from, int mask) {
        return static_cast<unsigned char>(frame[byte]) >> from & mask;
    };
    return frame.size() == 4 && frame[0] == '\xFF' && bits(1, 5, 7) == 7 && bits(1, 3, 3) != 1 && bits(1, 1, 3) != 0 &&
           bits(2, 4, 15) != 15 && bits(2, 2, 3) != 3;
}

/// Whether a frame that begins so tells how many frames there are. That stands behind the side information, whose
/// length depends on version and channels.
bool TellsFrames(std::string_view frame)
{
    for (const auto* const name : {"Xing", "Info"})
        if (const auto at = frame.find(name); at != std::string_view::npos && at + 8 <= frame.size())
            return (frame[at + 7] & 1) != 0;
    return false;
}

} // namespace

bool IsMpeg(FileBytes& bytes)
{
    return IsFrame(bytes, BehindTags(bytes, 0));
}

Mp3Source::Mp3Source(FileBytes& bytes) : bytes_(bytes), handle_(mpg123_new(nullptr, nullptr))
{
    auto* const handle = handle_.get();
    if (handle == nullptr) throw std::bad_alloc();
    mpg123_param(handle, MPG123_REMOVE_FLAGS, MPG123_AUTO_RESAMPLE, 0);
    mpg123_param(handle, MPG123_ADD_FLAGS, MPG123_QUIET | MPG123_FORCE_FLOAT | MPG123_GAPLESS | MPG123_NO_FRANKENSTEIN,
                 0);
    mpg123_replace_reader_handle(
        handle,
        [](void* data, void* to, std::size_t count) -> ssize_t {
            return static_cast<FileBytes*>(data)->Read(to, static_cast<std::int64_t>(count));
        },
        [](void* data, off_t by, int whence) -> off_t { return static_cast<FileBytes*>(data)->Seek(by, whence); },
        nullptr);
    int encoding = 0;
    if (mpg123_open_handle(handle, &bytes) != MPG123_OK ||
        mpg123_getformat(handle, &rate_, &channels_, &encoding) != MPG123_OK || mpg123_length(handle) < 0) {
        rate_ = 0;
        return;
    }
    mpg123_param(handle, MPG123_RESYNC_LIMIT, 0, 0); // from now on: what breaks the chain is damage
    frames_ = mpg123_length(handle);
    tellsFrames_ = TellsFrames(bytes.Piece(BehindTags(bytes, 0), 64));
}

Mp3Source::Rest Mp3Source::RestOfFile() const
{
    constexpr std::int64_t kLongestFrame = 1729; // bytes
    mpg123_frameinfo last{};
    mpg123_info(handle_.get(), &last);
    const auto begin = mpg123_framepos(handle_.get()) + last.framesize;
    if (*bytes_.Size() - begin <= kLongestFrame) return bytes_.Piece(begin, 1) == "\xFF" ? Rest::Damage : Rest::None;
    if (IsFrame(bytes_, BehindTags(bytes_, begin))) return Rest::Sound;
    const auto start = bytes_.Piece(begin, 11);
    const auto startsWith = [&](const char* tag) { return start.starts_with(tag); };
    return std::ranges::any_of(std::array{"TAG", "ID3", "APETAGEX", "LYRICSBEGIN"}, startsWith) ? Rest::None
                                                                                                : Rest::Damage;
}

bool Mp3Source::IsBroken()
{
    return !tellsFrames_ && RestOfFile() == Rest::Damage;
}

bool Mp3Source::IsJoined() const
{
    return RestOfFile() == Rest::Sound;
}

// The library's own way there goes on behind what breaks the chain, four bytes at a time, to the end of the file.
void Mp3Source::Skip(std::int64_t frames)
{
    if (frames == 0) return;
    constexpr std::int64_t kBehind = 4; // that it decodes for a start, and what an encoder puts ahead of the sound
    auto* const handle = handle_.get();
    const auto last = frames / std::max(mpg123_spf(handle), 1) + kBehind;
    int result = MPG123_OK;
    while (mpg123_tellframe(handle) < last && (result == MPG123_OK || result == MPG123_NEW_FORMAT))
        result = mpg123_framebyframe_next(handle);
    isAtEnd_ = result == MPG123_ERR || mpg123_seek(handle, static_cast<off_t>(frames), SEEK_SET) < 0;
}

std::int64_t Mp3Source::ReadFrames(float* samples, std::int64_t frames)
{
    const auto frame = static_cast<std::size_t>(channels_) * sizeof(float);
    std::size_t done = 0;
    if (isAtEnd_) return 0;
    // At the end of what holds together it fails; what there is behind that is asked for later.
    mpg123_read(handle_.get(), samples, static_cast<std::size_t>(frames) * frame, &done);
    return static_cast<std::int64_t>(done / frame);
}

} // namespace sound
