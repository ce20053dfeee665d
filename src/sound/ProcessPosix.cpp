#include "sound/Process.h"

#include <fcntl.h>
#include <paths.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <sstream>
#include <utility>

namespace sound {
namespace {

namespace fs = std::filesystem;

class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int opened) : file_(opened) {}
    Descriptor(Descriptor&& other) noexcept : file_(std::exchange(other.file_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(file_, other.file_);
        return *this;
    }
    ~Descriptor() { Close(); }

    void Close()
    {
        if (file_ >= 0) close(std::exchange(file_, -1));
    }
    operator int() const { return file_; }

private:
    int file_ = -1;
};

struct Pipe {
    Descriptor toRead;
    Descriptor toWrite;
};

bool Open(Pipe& opened)
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) return false;
    opened = {.toRead = Descriptor(ends[0]), .toWrite = Descriptor(ends[1])};
    return true;
}

class PosixProcess : public Process {
public:
    PosixProcess(pid_t process, Descriptor output, Descriptor complaints)
        : process_(process),
          output_(std::move(output)),
          complaints_(std::move(complaints))
    {
        for (const int file : {int{output_}, int{complaints_}})
            fcntl(file, F_SETFL, O_NONBLOCK);
    }
    ~PosixProcess() override
    {
        if (status_) return;
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }

    std::int64_t ReadNow(Stream stream, void* bytes, std::int64_t count) override
    {
        const auto& from = stream == Stream::Output ? output_ : complaints_;
        const auto done = read(from, bytes, static_cast<std::size_t>(count));
        return done < 0 && errno != EAGAIN && errno != EINTR ? 0 : done;
    }
    std::optional<int> Status() override
    {
        int status = 0;
        if (!status_ && waitpid(process_, &status, WNOHANG) == process_)
            status_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return status_;
    }

private:
    pid_t process_;
    Descriptor output_;
    Descriptor complaints_;
    std::optional<int> status_;
};

/// What the child does: only calls that are allowed between fork and exec where other threads run.
[[noreturn]] void Become(const char* program, char* const* arguments, pid_t parent, int output, int complaints,
                         int failure)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(EXIT_FAILURE);     // it has ended already
    static_cast<void>(std::signal(SIGPIPE, SIG_DFL)); // it is to end when nobody reads any more
    const int input = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (dup2(input, STDIN_FILENO) >= 0 && dup2(output, STDOUT_FILENO) >= 0 && dup2(complaints, STDERR_FILENO) >= 0)
        execv(program, arguments);
    const int error = errno;
    static_cast<void>(write(failure, &error, sizeof error) == 0);
    _exit(EXIT_FAILURE);
}

} // namespace

std::unique_ptr<Process> StartProcess(const fs::path& path, const std::vector<std::string>& arguments,
                                      std::error_code& error)
{
    auto all = arguments;
    all.insert(all.begin(), path.native());
    std::vector<char*> argv(all.size() + 1); // the last one stays null
    std::ranges::transform(all, argv.begin(), [](auto& argument) { return argument.data(); });

    Pipe output;
    Pipe complaints;
    Pipe failure; // closes by itself when the program has started
    const auto parent = getpid();
    const pid_t process = Open(output) && Open(complaints) && Open(failure) ? fork() : -1;
    if (process == 0) Become(path.c_str(), argv.data(), parent, output.toWrite, complaints.toWrite, failure.toWrite);
    int reason = errno;
    if (process > 0) {
        for (auto* const pipe : {&output, &complaints, &failure})
            pipe->toWrite.Close();
        auto started = std::make_unique<PosixProcess>(process, std::move(output.toRead), std::move(complaints.toRead));
        if (read(failure.toRead, &reason, sizeof reason) <= 0) return started;
    }
    error = {reason, std::generic_category()};
    return nullptr;
}

fs::path ProgramNamed(const std::string& name)
{
    const auto* const path = std::getenv("PATH");
    std::istringstream folders(path == nullptr ? _PATH_DEFPATH : path);
    fs::path found;
    for (std::string folder; std::getline(folders, folder, ':');) {
        auto program = fs::path(folder) / name;
        if (folder.empty() || access(program.c_str(), F_OK) != 0) continue;
        if (access(program.c_str(), X_OK) == 0) return program;
        if (found.empty()) found = program;
    }
    return found;
}

} // namespace sound
