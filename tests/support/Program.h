// Program.h: a program as a shell starts it: what it says, with which status, and what it leaves in the folder.
#pragma once

#include "support/KnownFile.h"

#include <gmock/gmock.h>

#include <sys/wait.h>

#include <vector>

struct Refused {
    int status;
    const char* command;
    const char* message; // a part of what is said on standard error
};

class Program : public testing::Test {
protected:
    explicit Program(const std::string& program) : run_("P() { '" + program + "' \"$@\"; }\n")
    {
        std::filesystem::create_directories(folder / "files");
    }
    ~Program() override { std::filesystem::remove_all(folder); }

    /// The status of commands in which P is the program. `out` and `err` then hold what they said.
    int Shell(const std::string& commands)
    {
        std::ofstream(folder / "run") << run_ + commands;
        const auto started = "cd " + folder.string() + "/files && timeout 50 sh ../run >../out 2>../err";
        const int status = std::system(started.c_str());
        out = Read(folder / "out");
        err = Read(folder / "err");
        return WEXITSTATUS(status);
    }
    void ExpectRefusals(const std::vector<Refused>& rows)
    {
        const auto state = [this] { return Shell("ls -A; find . -type f -size -999k -exec cksum {} + | sort"), out; };
        const auto before = state();
        for (const auto& [status, command, message] : rows) {
            EXPECT_EQ(Shell(command), status) << command;
            EXPECT_THAT(err, testing::HasSubstr(message)) << command;
            EXPECT_EQ(out, "") << command;
            EXPECT_EQ(state(), before) << command;
        }
    }

    const std::filesystem::path folder = NewFolder();
    std::string out;
    std::string err;

private:
    const std::string run_;
};
