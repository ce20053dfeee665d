// The program as a shell starts it: what it says, with which status, and what it leaves in the folder.
#include "SoundFiles.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace {

namespace fs = std::filesystem;

std::string Read(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

class Program : public testing::Test {
protected:
    Program()
    {
        fs::create_directories(folder);
        std::ofstream(folder / "SOUND.bin", std::ios::binary) << kFileHeader + kPlayer + kRunBytes;
        std::ofstream(folder / "long.bin", std::ios::binary) << PokEmulFile(6, std::string(200, '\xFE'));
        std::ofstream(folder / "old.wav") << "old";
        Shell("ln SOUND.bin hard.bin; ln SOUND.bin .x.wav.tonfloss-part; ln -s SOUND.bin soft.bin; ln -s old.wav "
              "link.wav; ln -s gone.wav dangling.wav; "
              "mkfifo pipe; truncate -s 5G giant; mkdir dir");
    }
    ~Program() override { fs::remove_all(folder.parent_path()); }

    /// The status of a command in which P is the program. `out` and `err` then hold what it said.
    int Shell(const std::string& command)
    {
        const auto preview = "P() { timeout 20 '" PREVIEW_PROGRAM "' \"$@\"; }; ";
        const auto where = folder.string();
        const int status = std::system(("cd " + where + " && { " + preview + command + "; } >../out 2>../err").c_str());
        out = Read(folder / "../out");
        err = Read(folder / "../err");
        return WEXITSTATUS(status);
    }

    std::string Names() const
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder))
            names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        std::string text;
        for (const auto& name : names)
            text += name + ' ';
        return text;
    }

    const fs::path folder = fs::path(testing::TempDir()) / ("tonfloss-preview-" + std::to_string(getpid())) / "files";
    std::string out;
    std::string err;
};

TEST_F(Program, RefusesWithAMessageAndLeavesAllAsItWas)
{
    struct Row {
        int status;
        std::string command;
        std::string message;
    };
    const auto before = Names();
    const auto sound = Read(folder / "SOUND.bin");
    for (const auto& [status, command, message] : std::vector<Row>{
             // What can't be read, or is none of ours.
             {1, "P none.bin", "none.bin: No such file or directory"},
             {1, "P dir", "dir: This is no ordinary file."},
             {1, "P pipe", "pipe: This is no ordinary file."},
             {1, "P /dev/zero", "/dev/zero: This is no ordinary file."},
             {1, "P giant", "giant: no sound file: more than 65536 bytes"},
             {1, "P old.wav -o new.wav", "old.wav: no sound file: it begins neither with a file header nor"},
             // What may not be written.
             {1, "P SOUND.bin -o old.wav", "old.wav: This file exists. --force replaces it."},
             {1, "P SOUND.bin -o dangling.wav", "dangling.wav: This is no ordinary file."},
             {1, "P SOUND.bin -o SOUND.bin --force", "SOUND.bin: This is the sound file itself."},
             {1, "P SOUND.bin -o hard.bin --force", "hard.bin: This is the sound file itself."},
             {1, "P soft.bin -o ./dir/../SOUND.bin --force", "SOUND.bin: This is the sound file itself."},
             {1, "P SOUND.bin -o soft.bin --force", "soft.bin: This is the sound file itself."},
             {1, "P .x.wav.tonfloss-part -o x.wav", "x.wav: This is the sound file itself."}, // would be in the way
             {1, "P SOUND.bin -o dir --force", "dir: This is no ordinary file."},
             {1, "P SOUND.bin -o /dev/full --force", "/dev/full: This is no ordinary file."},
             {1, "P SOUND.bin -o none/new.wav", "none/new.wav: No such file or directory"},
             // What breaks off: a full disk, a reader that goes away.
             {1, "trap '' XFSZ; ulimit -f 8; P long.bin -o new.wav", "new.wav: File too large"},
             {1, "trap '' XFSZ; ulimit -f 8; P long.bin -o old.wav --force", "old.wav: File too large"},
             {1, "P long.bin -o - >/dev/full", "standard output: No space left on device"},
             {1, "P SOUND.bin >/dev/full", "standard output: No space left on device"},
             {1, "{ P long.bin -o -; echo $? >../status; } | :; return $(cat ../status)",
              "standard output: Broken pipe"},
             // Wrong usage.
             {2, "P", "SOUND.bin: name one sound file"},
             {2, "P SOUND.bin soft.bin", "SOUND.bin: name one sound file"},
             {2, "P SOUND.bin --loud", "unrecognized option '--loud'"},
             {2, "P SOUND.bin -o", "option requires an argument -- 'o'"},
             {2, "P SOUND.bin -o ''", "--output: the name is empty"},
             {2, "P SOUND.bin --rate 7999", "--rate: 7999 is no whole number from 8000 to 192000"},
             {2, "P SOUND.bin --rate 192001", "--rate: 192001 is no whole number"},
             {2, "P SOUND.bin --rate 44.1k", "--rate: 44.1k is no whole number"},
             {2, "P SOUND.bin --clock 999999", "--clock: 999999 is no whole number from 1000000 to 20000000"},
             {2, "P SOUND.bin --waits 2", "--waits: 2 is no whole number from 0 to 1"},
         }) {
        EXPECT_EQ(Shell("run() { " + command + "; }; run"), status) << command;
        EXPECT_NE(err.find(message), std::string::npos) << command << " says " << err;
        EXPECT_EQ(out, "") << command;
        EXPECT_EQ(Names(), before) << command;
        EXPECT_EQ(Read(folder / "old.wav"), "old") << command;
        EXPECT_EQ(Read(folder / "SOUND.bin"), sound) << command;
    }
}

TEST_F(Program, WritesTheWaveFileAndTheReport)
{
    // 56602 cycles: 0.0158 s, 697.2 samples at 44100 Hz and 126.5 at 8000 Hz.
    EXPECT_EQ(Shell("P SOUND.bin -o new.wav"), 0);
    EXPECT_EQ(out.substr(0, 16), "target: PC-1600\n");
    EXPECT_EQ(err, "");
    EXPECT_EQ(fs::file_size(folder / "new.wav"), 44U + 698 * 2);

    EXPECT_EQ(Shell("env -i '" PREVIEW_PROGRAM "' --output - SOUND.bin"), 0); // no display, nothing
    EXPECT_EQ(out, Read(folder / "new.wav"));
    EXPECT_EQ(err.substr(0, 16), "target: PC-1600\n");

    EXPECT_EQ(Shell("chmod 600 old.wav; echo x >.old.wav.tonfloss-part; P SOUND.bin -o link.wav --force --rate 8000"),
              0);
    EXPECT_EQ(fs::file_size(folder / "old.wav"), 44U + 127 * 2);
    EXPECT_TRUE(fs::is_symlink(folder / "link.wav"));
    EXPECT_EQ(fs::status(folder / "old.wav").permissions(), fs::perms{0600});
    EXPECT_FALSE(fs::exists(folder / ".old.wav.tonfloss-part")); // what a killed preview left behind

    // Both change the pitch: 8 samples last 2882 cycles with waits and 2596 without.
    EXPECT_EQ(Shell("P SOUND.bin --clock 7160000 --waits 0"), 0);
    EXPECT_NE(out.find("longest period: 8 samples, +100.13 %, +1201 cents\n"), std::string::npos) << out;
    EXPECT_EQ(Shell("P --help && P --version"), 0);
    EXPECT_EQ(out.substr(0, 24) + out.substr(out.size() - 6), "Usage: tonfloss-preview 1.0.0\n");
}

} // namespace
