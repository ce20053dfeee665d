// The folder that files are dragged out of.
#include "files/TemporaryFolder.h"
#include "support/KnownFile.h"

#include <gtest/gtest.h>

#include <optional>

#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

class TemporaryFolderTest : public testing::Test {
protected:
    ~TemporaryFolderTest() override { fs::remove_all(parent); }

    static std::size_t Count(const fs::path& folder)
    {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), {}));
    }
    const fs::path parent = NewFolder();
};

TEST_F(TemporaryFolderTest, IsThereFromTheFirstPlaceToTheEnd)
{
    std::optional<files::TemporaryFolder> ours(std::in_place, parent, "studio-");
    EXPECT_EQ(Count(parent), 0U);
    const auto one = ours->NewPlace();
    const auto other = ours->NewPlace();
    EXPECT_NE(one, other);
    EXPECT_TRUE(fs::is_empty(one));
    EXPECT_EQ(Count(parent), 1U);
    EXPECT_EQ(fs::status(one.parent_path()).permissions(), fs::perms::owner_all);
    std::ofstream(one / "file") << "bytes";
    ours.reset();
    EXPECT_EQ(Count(parent), 0U);
}

TEST_F(TemporaryFolderTest, RemovesWhatAKilledRunHasLeftAndNothingElse)
{
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const auto killed = fork();
    if (killed == 0) {
        files::TemporaryFolder left(parent, "studio-");
        std::ofstream(left.NewPlace() / "file") << "bytes";
        static_cast<void>(write(ready[1], "", 1));
        pause();
    }
    char byte = 0;
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    fs::create_directory(parent / "studio-begun"); // and killed before it was locked
    fs::create_directory(parent / "elsewhere");
    std::ofstream(parent / "studio-file") << "no folder";
    fs::create_directory_symlink(parent / "elsewhere", parent / "studio-link");

    files::TemporaryFolder beside(parent, "studio-");
    const auto place = beside.NewPlace();
    EXPECT_EQ(Count(parent), 5U) << "the other one is running";
    kill(killed, SIGKILL);
    waitpid(killed, nullptr, 0);
    EXPECT_EQ(Count(parent), 5U);
    files::TemporaryFolder next(parent, "studio-");
    EXPECT_EQ(Count(parent), 4U);
    EXPECT_TRUE(fs::exists(place)) << "of a program that runs";
}

} // namespace
