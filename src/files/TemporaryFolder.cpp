#include "files/TemporaryFolder.h"

#include "files/Files.h"
#include "files/System.h"

#include <cerrno>
#include <cstdint>
#include <random>
#include <system_error>
#include <utility>

#include <unistd.h>

namespace files {
namespace {

namespace fs = std::filesystem;

constexpr auto kLock = "lock"; // a file that is open and locked while the program runs

[[noreturn]] void Fail(const fs::path& path, std::error_code error)
{
    throw IOException(IOException::Kind::System, path, error);
}

/// What is in it goes only if its lock has gone, which nobody can take away from a running program. A folder without
/// one is only beginning: its owner finds it gone and makes another.
void RemoveFolderOfNobody(const fs::path& folder)
{
    std::error_code ignored;
    RemoveLeftover(folder / kLock);
    if (!fs::exists(fs::symlink_status(folder / kLock, ignored))) fs::remove_all(folder, ignored);
}

} // namespace

TemporaryFolder::TemporaryFolder(fs::path parent, std::string name) : parent_(std::move(parent)), name_(std::move(name))
{
    std::error_code error;
    for (fs::directory_iterator entry(parent_, error), end; !error && entry != end; entry.increment(error)) {
        std::error_code ignored;
        const auto path = entry->path();
        if (path.filename().u8string().starts_with(std::u8string(name_.begin(), name_.end())) &&
            fs::is_directory(fs::symlink_status(path, ignored)))
            RemoveFolderOfNobody(path);
    }
}

TemporaryFolder::~TemporaryFolder()
{
    if (lock_ < 0) return;
    close(lock_);
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
}

void TemporaryFolder::Make()
{
    constexpr int kTries = 100;
    std::random_device number;
    std::error_code error;
    for (int tries = 0; tries < kTries; ++tries) {
        const auto folder = parent_ / (name_ + std::to_string(static_cast<std::uint32_t>(number())));
        const bool isNew = fs::create_directory(folder, error);
        if (error) Fail(folder, error);
        if (!isNew) continue;
        fs::permissions(folder, fs::perms::owner_all, error);
        lock_ = CreatePart(folder / kLock, true);
        if (lock_ < 0) continue; // somebody else's, or taken for a leftover
        ForgetPart();
        folder_ = folder;
        return;
    }
    Fail(parent_, {errno, std::generic_category()});
}

fs::path TemporaryFolder::NewPlace()
{
    if (lock_ < 0) Make();
    auto place = folder_ / std::to_string(++places_);
    std::error_code error;
    fs::create_directories(place, error);
    if (error) Fail(place, error);
    return place;
}

} // namespace files
