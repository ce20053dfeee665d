// The real file layer under faults: nothing is lost, nothing stays half written, nothing hangs.
#include "WindowTest.h"

#include <csignal>
#include <random>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using testing::ElementsAre;

/// Lets a process limit hold for a scope.
class Limit {
public:
    Limit(__rlimit_resource resource, rlim_t bytes) : resource_(resource)
    {
        (void)std::signal(SIGXFSZ, SIG_IGN); // past the limit a write just fails, as on a full disk
        getrlimit(resource_, &before_);
        const rlimit now{.rlim_cur = bytes, .rlim_max = before_.rlim_max};
        setrlimit(resource_, &now);
    }
    ~Limit() { setrlimit(resource_, &before_); }

private:
    __rlimit_resource resource_;
    rlimit before_{};
};

/// Makes the file rules hold that don't hold for root.
class OrdinaryUser {
public:
    OrdinaryUser() { EXPECT_TRUE(getuid() != 0 || setresuid(65534, 65534, 0) == 0); }
    ~OrdinaryUser() { EXPECT_EQ(setresuid(saved_, saved_, saved_), 0); }

private:
    uid_t saved_ = getuid();
};

class Files : public WindowTest {
protected:
    std::string content = std::string(30000, 'n');

    /// True if the new content is refused.
    bool Refuses(const path& target) const
    {
        try {
            platform::WriteBytes(target, content);
            return false;
        } catch (const platform::IOException&) {
            return true;
        }
    }
    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            names.push_back(entry.path().filename());
        return names;
    }
};

TEST_F(Files, FullDiskAndMissingRightsLeaveTheOldFile)
{
    const auto target = Write("SOUND", "old");
    for (const std::size_t size : {300U, 30000U}) { // more and less than the toolkit gathers before it writes
        content.assign(size, 'n');
        for (const rlim_t room : {0U, 100U}) {
            const Limit fullDisk(RLIMIT_FSIZE, room);
            EXPECT_TRUE(Refuses(target));
        }
    }
    if (mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=16k,mode=777") == 0) { // where the machine allows it
        const auto onFullDisk = Write("SOUND", "old");
        EXPECT_TRUE(Refuses(onFullDisk));
        EXPECT_EQ(Read(onFullDisk), "old");
        EXPECT_THAT(Names(), ElementsAre("SOUND"));
        EXPECT_EQ(umount(folder.c_str()), 0);
    }
    for (const auto& [folderMode, fileMode] : {std::pair(0555, 0666), std::pair(0777, 0444)}) {
        std::filesystem::permissions(folder, std::filesystem::perms(folderMode));
        std::filesystem::permissions(target, std::filesystem::perms(fileMode));
        const OrdinaryUser user;
        EXPECT_TRUE(Refuses(target));
        EXPECT_EQ(Refuses(folder / "new"), folderMode == 0555);
    }
    std::filesystem::remove(folder / "new");
    EXPECT_TRUE(Read(target) == "old");
    EXPECT_THAT(Names(), ElementsAre("SOUND"));
    EXPECT_FALSE(Refuses(target)); // the next try
    EXPECT_TRUE(Read(target) == content);
}

TEST_F(Files, WritesOnlyToOrdinaryFilesAndThroughLinksToThem)
{
    ASSERT_EQ(mkfifo((folder / "fifo").c_str(), 0600), 0);
    EXPECT_TRUE(Refuses(folder / "fifo"));
    if (mknod((folder / "device").c_str(), S_IFCHR | 0600, makedev(1, 3)) == 0) {
        EXPECT_TRUE(Refuses(folder / "device"));
        EXPECT_TRUE(std::filesystem::is_character_file(folder / "device"));
    }
    EXPECT_TRUE(Refuses(folder));
    std::filesystem::create_symlink(folder / "fifo", folder / "link to fifo");
    EXPECT_TRUE(Refuses(folder / "link to fifo"));

    for (const auto* const name : {"file", "not there yet"}) {
        std::filesystem::create_symlink(folder / name, folder / "link");
        Write("file", "old");
        EXPECT_FALSE(Refuses(folder / "link"));
        EXPECT_TRUE(Read(folder / name) == content);
        EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
        std::filesystem::remove(folder / "link");
    }
}

TEST_F(Files, KilledWhileSavingLeavesTheOldFileOrTheNewOne)
{
    const auto target = Write("SOUND", content);
    std::mt19937 random(std::random_device{}());
    for (int i = 0; i < 50; ++i) {
        const auto child = fork();
        if (child == 0)
            for (char letter = 'a';; letter = letter == 'z' ? 'a' : static_cast<char>(letter + 1))
                platform::WriteBytes(target, std::string(30000, letter));
        usleep(static_cast<useconds_t>(random() % 4000));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const auto left = Read(target);
        ASSERT_TRUE(left == std::string(30000, left.at(0)));
    }
    platform::WriteBytes(target, content);
    EXPECT_THAT(Names(), ElementsAre("SOUND"));
}

TEST_F(Files, SourceThatChangesBetweenDragAndDropIsNotConverted)
{
    const auto source = Write("a.wav", WaveBytes().samples(ToneOf160()));
    const platform::DragItem item{platform::FolderItemAt(source)};
    std::filesystem::permissions(source, std::filesystem::perms(0));
    {
        const OrdinaryUser user;
        Drop(item);
    }
    std::filesystem::permissions(source, std::filesystem::perms(0644));
    std::filesystem::resize_file(source, 50);
    Drop(item);
    std::filesystem::remove(source);
    Drop(item);
    EXPECT_THAT(dialogs.shown,
                ElementsAre("a.wav: Permission denied", "a.wav: The file is being changed by another program.",
                            "a.wav: No such file or directory"));
    EXPECT_EQ(window.BinZeile, "");
}

TEST_F(Files, RefusedMemoryEndsInAMessage)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__clang__)
    GTEST_SKIP() << "the sanitizer itself needs the memory";
#endif
    std::filesystem::resize_file(Write("giant.wav", WaveBytes()), 1U << 30U);
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    {
        const Limit memory(RLIMIT_AS, pages * static_cast<std::size_t>(getpagesize()) + (4U << 20U));
        Drop({platform::FolderItemAt(folder / "giant.wav")});
    }
    EXPECT_THAT(dialogs.shown, ElementsAre("There is not enough memory for this."));
    DropTone();
    EXPECT_TRUE(window.TextFieldAudioAdresse.Visible());
}

} // namespace
