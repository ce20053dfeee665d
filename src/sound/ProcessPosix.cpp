#include "sound/ChildProgram.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>

namespace sound {

std::unique_ptr<ChildProgram> ChildProgram::Start(const std::string& name, const std::vector<std::string>& arguments,
                                                  const core::Progress& progress)
{
    std::array<int, 2> ends{}; // of the pipe: to read from, to write to
    if (pipe2(ends.data(), O_CLOEXEC) != 0) return nullptr;

    auto all = arguments;
    all.insert(all.begin(), name);
    std::vector<char*> argv(all.size() + 1); // the last one stays null
    std::ranges::transform(all, argv.begin(), [](auto& argument) { return argument.data(); });

    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawnattr_t attributes{};
    posix_spawnattr_init(&attributes);
    sigset_t usual{};
    sigemptyset(&usual);
    sigaddset(&usual, SIGPIPE); // which this program ignores: the other one is to end when nobody reads any more
    posix_spawnattr_setsigdefault(&attributes, &usual);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);

    pid_t process = 0;
    const int failed = posix_spawnp(&process, name.c_str(), &actions, &attributes, argv.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    if (failed == 0) return std::unique_ptr<ChildProgram>(new ChildProgram(ends[0], process, progress));
    close(ends[0]);
    return nullptr;
}

ChildProgram::~ChildProgram()
{
    close(static_cast<int>(output_));
    const auto process = static_cast<pid_t>(process_);
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
}

std::int64_t ChildProgram::ReadWhatComes(void* bytes, std::int64_t count)
{
    constexpr int kMoment = 50; // ms
    pollfd output{.fd = static_cast<int>(output_), .events = POLLIN, .revents = 0};
    if (poll(&output, 1, kMoment) <= 0) return -1; // or a signal came
    return std::max<ssize_t>(0, read(output.fd, bytes, static_cast<std::size_t>(count)));
}

} // namespace sound
