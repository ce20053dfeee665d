// The file library under faults: nothing is lost, nothing stays half written, nothing hangs, nobody gains a right, and
// nothing is told that isn't so.
#include "files/Files.h"
#include "support/KnownFile.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <cstring>
#include <map>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

std::map<std::string, int> failing; // system calls, and the error that they answer with
std::function<void()> onLock;       // what another program does just before a lock is taken

template <class... Arguments>
int Call(const char* name, long number, Arguments... arguments)
{
    const auto failure = failing.find(name);
    if (failure == failing.end()) return static_cast<int>(syscall(number, arguments...));
    errno = failure->second;
    return -1;
}

} // namespace

// In place of those of the C library, for the whole program.
// clang-format off
extern "C" int fsync(int file) { return Call("fsync", SYS_fsync, file); }
extern "C" int rename(const char* from, const char* to) noexcept { return Call("rename", SYS_rename, from, to); }
extern "C" int link(const char* from, const char* to) noexcept { return Call("link", SYS_link, from, to); }
extern "C" int fchmod(int file, mode_t mode) noexcept { return Call("fchmod", SYS_fchmod, file, mode); }
extern "C" int renameat2(int at, const char* from, int to, const char* name, unsigned flags) noexcept
{
    return Call("renameat2", SYS_renameat2, at, from, to, name, flags);
}
extern "C" int fchown(int file, uid_t owner, gid_t group) noexcept
{
    return Call(owner == uid_t(-1) ? "fchown group" : "fchown", SYS_fchown, file, owner, group);
}
extern "C" int fsetxattr(int file, const char* name, const void* value, size_t size, int flags) noexcept
{
    return Call("fsetxattr", SYS_fsetxattr, file, name, value, size, flags);
}
extern "C" int close(int file)
{
    syscall(SYS_close, file);
    return Call("close", SYS_getpid) < 0 ? -1 : 0;
}
extern "C" ssize_t write(int file, const void* bytes, size_t size)
{
    return failing.contains("write 0") ? 0 : syscall(SYS_write, file, bytes, size);
}
extern "C" int flock(int file, int how) noexcept
{
    if (onLock) std::exchange(onLock, nullptr)();
    return Call("flock", SYS_flock, file, how);
}
extern "C" int lstat(const char* path, struct stat* status) noexcept
{
    const bool isPart = std::strstr(path, "part-") != nullptr;
    const int result = Call(isPart ? "lstat" : "", SYS_newfstatat, AT_FDCWD, path, status, AT_SYMLINK_NOFOLLOW);
    if (failing.contains("link count")) status->st_nlink = 0;
    return result;
}
extern "C" int fstat(int file, struct stat* status) noexcept
{
    const int result = Call("fstat", SYS_newfstatat, file, "", status, AT_EMPTY_PATH);
    if (failing.contains("link count")) status->st_nlink = 0;
    return result;
}
// clang-format on

namespace {

namespace fs = std::filesystem;
using files::Existing;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

class Files : public testing::Test {
protected:
    Files()
    {
        files::BeginWriting();
        fs::permissions(folder, fs::perms::all);
        umask(022);
    }
    ~Files() override
    {
        failing.clear();
        fs::remove_all(folder);
    }

    const fs::path folder = NewFolder();
    const std::string content = std::string(300, 'n');

    fs::path Make(const fs::path& name, const std::string& bytes) const
    {
        std::ofstream(folder / name, std::ios::binary) << bytes;
        return folder / name;
    }
    /// What is told when the work can't be done; empty where it could.
    static std::string Refusal(const std::function<void()>& work)
    {
        try {
            work();
        } catch (const files::IOException& failure) {
            return failure.File.filename().string() + ": " + failure.Reason();
        }
        return "";
    }
    std::string Refusal(const fs::path& target, Existing existing = Existing::Replace) const
    {
        return Refusal([&] { files::Write(target, existing, content); });
    }
    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder))
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
    static unsigned ModeOf(const fs::path& file) { return static_cast<unsigned>(fs::status(file).permissions()); }
};

TEST_F(Files, WhateverFailsLeavesTheOldFileAndNothingElse)
{
    const auto target = Make("SOUND", "old");
    for (const auto* const step : {"fsync", "close", "rename", "write 0", "lstat"}) {
        failing = {{step, EIO}};
        EXPECT_EQ(Refusal(target), "SOUND: Input/output error") << step;
        failing.clear();
        EXPECT_THAT(Names(), ElementsAre("SOUND")) << step;
    }
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    for (const rlim_t room : {0U, 100U}) {
        const rlimit fullDisk{.rlim_cur = room, .rlim_max = before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &fullDisk);
        EXPECT_EQ(Refusal(target), "SOUND: File too large");
        setrlimit(RLIMIT_FSIZE, &before);
    }
    const auto breakOff = [&](const files::ByteSink& sink) { sink(content), throw std::runtime_error("no more"); };
    EXPECT_THROW(files::Write(target, Existing::Replace, breakOff), std::runtime_error);
    for (const auto& [folderMode, fileMode, reason] : {std::tuple(0555, 0666, "No file can be made in this folder."),
                                                       std::tuple(0777, 0444, "This file is write-protected.")}) {
        fs::permissions(folder, fs::perms(folderMode));
        fs::permissions(target, fs::perms(fileMode));
        AsOrdinaryUser([&, why = std::string("SOUND: ") + reason, isClosed = folderMode == 0555] {
            EXPECT_EQ(Refusal(target), why);
            EXPECT_EQ(Refusal(folder / "new"), isClosed ? "new: Permission denied" : "");
        });
    }
    EXPECT_EQ(Read(target), "old");
    EXPECT_THAT(Names(), UnorderedElementsAre("SOUND", "new"));

    fs::permissions(target, fs::perms(0644));
    for (const int unknown : {EINVAL, EOPNOTSUPP}) { // not every file system can be told to sync
        failing = {{"fsync", unknown}};
        EXPECT_EQ(Refusal(Make("SOUND", "old")), "");
        EXPECT_EQ(Read(target), content);
    }
}

TEST_F(Files, NewFileReplacesNoneThatIsMadeMeanwhile)
{
    const auto target = folder / "SOUND";
    for (const auto& unknown : std::vector<std::map<std::string, int>>{
             {}, {{"renameat2", ENOSYS}}, {{"renameat2", EINVAL}, {"link", EPERM}}}) {
        failing = unknown;
        EXPECT_EQ(Refusal(target, Existing::Refuse), "");
        EXPECT_EQ(Read(target), content);
        EXPECT_EQ(ModeOf(target), 0644U);
        EXPECT_EQ(Refusal(target, Existing::Refuse), "SOUND: This file exists.");
        fs::remove(target);
        const auto meanwhile = [&](const files::ByteSink& sink) { sink(content), Make("SOUND", "another program's"); };
        EXPECT_EQ(Refusal([&] { files::Write(target, Existing::Refuse, meanwhile); }), "SOUND: This file exists.");
        EXPECT_EQ(Read(target), "another program's");
        EXPECT_THAT(Names(), ElementsAre("SOUND"));
        fs::remove(target);
    }
    failing = {{"renameat2", EINVAL}, {"link", EPERM}, {"rename", EIO}};
    EXPECT_EQ(Refusal(target, Existing::Refuse), "SOUND: Input/output error");
    EXPECT_THAT(Names(), ElementsAre());
    failing.clear();
    EXPECT_EQ(Refusal(folder / std::string(255, 'x'), Existing::Refuse), "");
}

TEST_F(Files, WritesOnlyToOrdinaryFilesAndThroughLinksToThem)
{
    ASSERT_EQ(mkfifo((folder / "fifo").c_str(), 0600), 0);
    fs::create_symlink("fifo", folder / "link to fifo");
    for (const auto& target : {folder / "fifo", folder / "link to fifo", folder})
        EXPECT_EQ(Refusal(target), target.filename().string() + ": This is no ordinary file.");

    fs::create_symlink("l2", folder / "l1");
    fs::create_symlink(folder / "l3", folder / "l2"); // and l3 isn't there yet
    fs::create_symlink("circle", folder / "circle");
    for (const auto existing : {Existing::Refuse, Existing::Replace}) {
        EXPECT_EQ(Refusal(folder / "l1", existing), "");
        EXPECT_TRUE(fs::is_symlink(folder / "l1") && fs::is_symlink(folder / "l2"));
        EXPECT_FALSE(fs::is_symlink(folder / "l3"));
        EXPECT_EQ(Read(folder / "l3"), content);
    }
    EXPECT_EQ(Refusal(folder / "circle"), "circle: Too many levels of symbolic links");
    EXPECT_TRUE(fs::is_symlink(folder / "circle"));

    const auto source = Make("source", "source");
    fs::create_hard_link(source, folder / "hard");
    fs::create_symlink("source", folder / "soft");
    for (const auto* const name : {"source", "hard", "soft"}) {
        const auto write = [&](const fs::path& target) {
            files::Write(target, Existing::Replace, [](const auto& sink) { sink("x"); },
                         {folder / "none", folder / "source"});
        };
        EXPECT_EQ(Refusal([&] { write(folder / name); }), std::string(name) + ": This is the file that is read.");
    }
    EXPECT_EQ(Read(source), "source");
}

TEST_F(Files, SweepsWhatAKilledProgramLeftButNothingThatAnotherIsWriting)
{
    Make(".tonfloss-part-1", "left behind");
    Make("my.tonfloss-part-1", "the user's own");
    Make(".tonfloss-part-", "the user's own");
    EXPECT_EQ(Refusal(folder / ".tonfloss-part-3"), ".tonfloss-part-3: Invalid argument"); // the next would remove it
    const auto busy = Make(".tonfloss-part-2", "another program is writing it");
    const int file = open(busy.c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(flock(file, LOCK_EX), 0);
    const auto source = Make(".tonfloss-part-4", "this is to become a SOUND");
    const auto before = fs::current_path();
    fs::current_path(folder); // which a mere name doesn't tell
    files::Write("SOUND", Existing::Refuse, [](const auto& sink) { sink("x"); }, {source});
    fs::current_path(before);
    EXPECT_THAT(Names(), UnorderedElementsAre("SOUND", ".tonfloss-part-2", ".tonfloss-part-4", ".tonfloss-part-",
                                              "my.tonfloss-part-1"));
    close(file);
}

TEST_F(Files, PartThatAnotherProgramSweepsIsTriedAgainButNotForEver)
{
    const auto target = folder / "SOUND";
    int sweeper = -1;
    for (const bool isQuick : {true, false}) { // gone when we ask for the lock, or locked and about to go
        onLock = [&] {
            const auto part = folder / Names().front();
            sweeper = open(part.c_str(), O_RDWR | O_CLOEXEC);
            syscall(SYS_flock, sweeper, LOCK_EX);
            if (isQuick)
                unlink(part.c_str()), close(sweeper);
            else
                onLock = [part] { unlink(part.c_str()); };
        };
        EXPECT_EQ(Refusal(target), "");
        EXPECT_EQ(Read(target), content);
        EXPECT_THAT(Names(), ElementsAre("SOUND"));
        if (!isQuick) close(sweeper);
        fs::remove(target);
    }
    for (const auto& odd : std::vector<std::map<std::string, int>>{{{"link count", 0}}, {{"flock", ENOLCK}}}) {
        failing = odd; // a file system without such things
        EXPECT_EQ(Refusal(target), "");
        EXPECT_THAT(Names(), ElementsAre("SOUND"));
    }
    failing = {{"flock", EWOULDBLOCK}};
    EXPECT_EQ(Refusal(target), "SOUND: Device or resource busy");
    EXPECT_LE(Names().size(), 101U);
}

struct RightsCase {
    const char* name;
    unsigned mode; // of the file that is replaced; owner 1234, group 4321
    std::map<std::string, int> failing;
    unsigned left;

    friend void PrintTo(const RightsCase& row, std::ostream* out) { *out << row.name; }
};

class Rights : public Files, public testing::WithParamInterface<RightsCase> {};
INSTANTIATE_TEST_SUITE_P(
    Rows, Rights,
    testing::ValuesIn<RightsCase>({
        {"AllTaken", 0640, {}, 0640},
        {"NoSetUserId", 04755, {}, 0755},
        {"NoMode", 0644, {{"fchmod", EPERM}}, 0600},
        {"NoOwner", 0664, {{"fchown", EPERM}}, 0664},
        {"NoOwnerWhoHadLess", 0466, {{"fchown", EPERM}}, 0444},
        {"NoGroup", 0664, {{"fchown", EPERM}, {"fchown group", EPERM}}, 0644}, // another group has what others had
        {"NoGroupThatHadMore", 0660, {{"fchown", EPERM}, {"fchown group", EPERM}}, 0600},
        {"NoGroupThatHadLess", 0604, {{"fchown", EPERM}, {"fchown group", EPERM}}, 0600}, // its members are others now
    }),
    [](const auto& row) { return row.param.name; });

TEST_P(Rights, AreTakenOverOrDropped)
{
    if (geteuid() != 0) GTEST_SKIP() << "only root can give files away";
    const auto target = Make("SOUND", "old");
    ASSERT_EQ(chown(target.c_str(), 1234, 4321), 0);
    ASSERT_EQ(chmod(target.c_str(), GetParam().mode), 0);
    failing = GetParam().failing;
    unsigned whileWritten = 0;
    files::Write(target, Existing::Replace, [&](const files::ByteSink& sink) {
        for (const auto& name : Names())
            if (name != "SOUND") whileWritten = ModeOf(folder / name);
        sink(content);
    });
    EXPECT_EQ(whileWritten, 0600U);
    EXPECT_EQ(ModeOf(target), GetParam().left);
    struct stat status = {};
    ASSERT_EQ(stat(target.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, failing.contains("fchown") ? 0U : 1234U);
    EXPECT_EQ(status.st_gid, failing.contains("fchown group") ? 0U : 4321U);
}

TEST_F(Files, AccessListAndAttributesGoAlongOrTheRightsAreDropped)
{
    // user::rw- user:1234:r-- group::--- mask::r-- other::---
    const auto list = Bytes("02 00 00 00 01 00 06 00 ff ff ff ff 02 00 04 00 d2 04 00 00 04 00 00 00 ff ff ff ff "
                            "10 00 04 00 ff ff ff ff 20 00 00 00 ff ff ff ff");
    constexpr auto kList = "system.posix_acl_access";
    const auto listOf = [&](const fs::path& file) {
        std::string value(100, '\0');
        const auto length = getxattr(file.c_str(), kList, value.data(), value.size());
        return length < 0 ? "none" : value.substr(0, static_cast<std::size_t>(length));
    };
    const auto target = Make("SOUND", "old");
    if (setxattr(target.c_str(), kList, list.data(), list.size(), 0) != 0) GTEST_SKIP() << "no access lists here";
    ASSERT_EQ(setxattr(target.c_str(), "user.note", "mine", 4, 0), 0);
    EXPECT_EQ(Refusal(target), "");
    EXPECT_EQ(listOf(target), list);
    std::string note(4, '\0');
    EXPECT_EQ(getxattr(target.c_str(), "user.note", note.data(), note.size()), 4);
    EXPECT_EQ(note, "mine");

    failing = {{"fsetxattr", EPERM}};
    EXPECT_EQ(Refusal(target), "");
    EXPECT_EQ(listOf(target), "none");
    EXPECT_EQ(ModeOf(target), 0600U); // 0640 would let the group read, which the list denied
    failing.clear();

    // What the folder gives to new files is nothing for one that is replaced.
    ASSERT_EQ(setxattr(folder.c_str(), "system.posix_acl_default", list.data(), list.size(), 0), 0);
    fs::permissions(target, fs::perms(0644));
    EXPECT_EQ(Refusal(target), "");
    EXPECT_EQ(listOf(target), "none");
    EXPECT_EQ(ModeOf(target), 0644U);
}

TEST_F(Files, SourceIsReadAsItWasNotedOrNotAtAll)
{
    const auto source = Make("a.wav", "0123456789");
    const auto noted = files::StateOf(source);
    const auto refusal = [&] { return Refusal([&] { (void)files::ReadBytes(source, noted, 100); }); };
    EXPECT_EQ(files::ReadBytes(source, noted, 4), "0123");
    fs::permissions(source, fs::perms(0));
    AsOrdinaryUser([&] { EXPECT_EQ(refusal(), "a.wav: Permission denied"); });
    fs::permissions(source, fs::perms(0644));
    fs::last_write_time(source, noted.Changed + std::chrono::seconds(1)); // the same length
    EXPECT_EQ(refusal(), "a.wav: The file is being changed by another program.");
    fs::resize_file(source, 9);
    fs::last_write_time(source, noted.Changed); // the same time
    EXPECT_EQ(refusal(), "a.wav: The file is being changed by another program.");
    fs::remove(source);
    EXPECT_EQ(refusal(), "a.wav: No such file or directory");
    ASSERT_EQ(mkfifo(source.c_str(), 0600), 0);
    EXPECT_EQ(refusal(), "a.wav: This is no ordinary file.");

    const fs::path shorter = "/sys/devices/system/cpu/online"; // claims 4096 bytes
    if (!fs::exists(shorter)) return;
    EXPECT_EQ(Refusal([&] { (void)files::ReadBytes(shorter, 5000); }),
              "online: The file is being changed by another program.");
}

} // namespace
