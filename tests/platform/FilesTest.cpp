// The real file layer under faults: nothing is lost, nothing stays half written, nothing hangs, nothing is told that isn't
// so.
#include "support/WindowTest.h"

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

std::string failing; // the system call that fails

int Call(const char* name, long result)
{
    if (result == 0 && failing == name) {
        errno = EIO;
        return -1;
    }
    return static_cast<int>(result);
}

} // namespace

// In place of those of the C library, for the whole program.
// clang-format off
extern "C" int fsync(int file) { return Call("fsync", syscall(SYS_fsync, file)); }
extern "C" int close(int file) { return Call("close", syscall(SYS_close, file)); }
extern "C" int rename(const char* from, const char* to) noexcept
{
    return Call("rename", failing == "rename" ? 0 : syscall(SYS_rename, from, to));
}
// clang-format on

namespace {

using testing::UnorderedElementsAre;

class Files : public WindowTest {
protected:
    Files()
    {
        (void)std::signal(SIGXFSZ, SIG_IGN); // past the limit a write just fails, as on a full disk
        std::filesystem::permissions(folder, std::filesystem::perms::all);
    }
    ~Files() override { failing.clear(); }

    const std::string content = std::string(30000, 'n');

    /// What is told when the content can't be written; empty where it could.
    std::string Refusal(const path& target)
    {
        dialogs.shown.clear();
        gate.Run([&] { platform::WriteBytes(target, content); });
        return dialogs.shown.empty() ? "" : dialogs.shown.back();
    }
    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            names.push_back(entry.path().filename());
        return names;
    }
    /// Makes the file rules hold that don't hold for root.
    static void AsOrdinaryUser(const std::function<void()>& work)
    {
        const auto before = geteuid();
        EXPECT_TRUE(before != 0 || seteuid(65534) == 0);
        work();
        EXPECT_EQ(seteuid(before), 0);
    }
};

TEST_F(Files, WhateverFailsLeavesTheOldFileAndNothingElse)
{
    const auto target = Write("SOUND", "old");
    for (const auto* const step : {"fsync", "close", "rename"}) {
        failing = step;
        EXPECT_EQ(Refusal(target), "SOUND: Input/output error") << step;
        failing.clear();
        EXPECT_TRUE(Read(target) == "old");
        EXPECT_THAT(Names(), ElementsAre("SOUND"));
    }
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    for (const rlim_t room : {0U, 100U}) {
        const rlimit fullDisk{.rlim_cur = room, .rlim_max = before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &fullDisk);
        EXPECT_EQ(Refusal(target), "SOUND: File too large");
        setrlimit(RLIMIT_FSIZE, &before);
    }
    for (const auto& [folderMode, fileMode, reason] :
         {std::tuple(0555, 0666, "Permission denied"), std::tuple(0777, 0444, "Diese Datei ist schreibgeschützt.")}) {
        std::filesystem::permissions(folder, std::filesystem::perms(folderMode));
        std::filesystem::permissions(target, std::filesystem::perms(fileMode));
        AsOrdinaryUser([&, why = std::string("SOUND: ") + reason] { EXPECT_EQ(Refusal(target), why); });
    }
    EXPECT_TRUE(Read(target) == "old");
    EXPECT_THAT(Names(), ElementsAre("SOUND"));

    std::filesystem::permissions(target, std::filesystem::perms(0640));
    EXPECT_EQ(Refusal(target), ""); // the next try
    EXPECT_TRUE(Read(target) == content);
    EXPECT_EQ(std::filesystem::status(target).permissions(), std::filesystem::perms(0640));
    const std::string longest(255, 'x');
    umask(022);
    EXPECT_EQ(Refusal(folder / longest), "");
    EXPECT_EQ(std::filesystem::status(folder / longest).permissions(), std::filesystem::perms(0644));
    EXPECT_THAT(Names(), UnorderedElementsAre("SOUND", longest));
}

TEST_F(Files, WritesOnlyToOrdinaryFilesAndThroughLinksToThem)
{
    ASSERT_EQ(mkfifo((folder / "fifo").c_str(), 0600), 0);
    std::filesystem::create_symlink("fifo", folder / "link to fifo");
    for (const auto& target : {folder / "fifo", folder / "link to fifo", folder})
        EXPECT_EQ(Refusal(target), target.filename().string() + ": Das ist keine gewöhnliche Datei.");

    std::filesystem::create_symlink("l2", folder / "l1");
    std::filesystem::create_symlink(folder / "l3", folder / "l2"); // and l3 isn't there yet
    std::filesystem::create_symlink("circle", folder / "circle");
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(Refusal(folder / "l1"), "");
        EXPECT_TRUE(std::filesystem::is_symlink(folder / "l1") && std::filesystem::is_symlink(folder / "l2"));
        EXPECT_FALSE(std::filesystem::is_symlink(folder / "l3"));
        EXPECT_TRUE(Read(folder / "l3") == content);
    }
    EXPECT_EQ(Refusal(folder / "circle"), "circle: Too many levels of symbolic links");
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "circle"));
}

TEST_F(Files, SaveTakesAwayWhatAKilledOneLeftButNothingThatAnotherProgramIsWriting)
{
    Write(".tonfloss-part-1", "left behind");
    Write("my.tonfloss-part-1", "the user's own");
    Write(".tonfloss-part-", "the user's own");
    EXPECT_EQ(Refusal(folder / ".tonfloss-part-3"),
              ".tonfloss-part-3: Invalid argument"); // the next save would remove it
    const auto busy = Write(".tonfloss-part-2", "another program is writing it");
    const int file = open(busy.c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(flock(file, LOCK_EX), 0);
    EXPECT_EQ(Refusal(folder / "SOUND"), "");
    EXPECT_THAT(Names(), UnorderedElementsAre("SOUND", ".tonfloss-part-2", ".tonfloss-part-", "my.tonfloss-part-1"));
    close(file);
}

TEST_F(Files, SourceThatChangesSinceTheDragIsNotConverted)
{
    const auto source = Write("a.wav", WaveBytes());
    const platform::DragItem item{platform::FolderItemAt(source)};
    std::filesystem::permissions(source, std::filesystem::perms(0));
    AsOrdinaryUser([&] { Drop(item); });
    std::filesystem::permissions(source, std::filesystem::perms(0644));
    const auto time = std::filesystem::last_write_time(source);
    std::filesystem::last_write_time(source, time + std::chrono::seconds(1)); // the same length
    Drop(item);
    std::filesystem::resize_file(source, 205);
    std::filesystem::last_write_time(source, time); // the same time
    Drop(item);
    std::filesystem::remove(source);
    Drop(item);
    const std::string changed = "a.wav: Die Datei wird gerade von einem anderen Programm geändert.";
    EXPECT_THAT(dialogs.shown,
                ElementsAre("a.wav: Permission denied", changed, changed, "a.wav: No such file or directory"));
    EXPECT_EQ(window.BinZeile, "");

    const path shorter = "/sys/devices/system/cpu/online"; // claims 4096 bytes
    if (!std::filesystem::exists(shorter)) return;
    Drop({platform::FolderItemAt(shorter)});
    EXPECT_EQ(dialogs.shown.back(), "online: Die Datei wird gerade von einem anderen Programm geändert.");
}

} // namespace
