#include "sound/Process.h"

#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <utility>

namespace sound {
namespace {

namespace fs = std::filesystem;

class Handle {
public:
    explicit Handle(HANDLE opened = nullptr) : handle_(opened) {}
    Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    Handle& operator=(Handle&& other) noexcept
    {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~Handle()
    {
        if (handle_ != nullptr) CloseHandle(handle_);
    }
    operator HANDLE() const { return handle_; }

private:
    HANDLE handle_;
};

struct Pipe {
    Handle toRead;
    Handle toWrite; // which a child inherits
};

bool Open(Pipe& opened)
{
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE toRead{};
    HANDLE toWrite{};
    if (CreatePipe(&toRead, &toWrite, &inherited, 0) == 0) return false;
    SetHandleInformation(toRead, HANDLE_FLAG_INHERIT, 0);
    opened = {.toRead = Handle(toRead), .toWrite = Handle(toWrite)};
    return true;
}

std::error_code LastError()
{
    return {static_cast<int>(GetLastError()), std::system_category()};
}

/// What is in it ends with its last handle, and that is closed when this program ends.
Handle JobThatEndsWithUs()
{
    Handle job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

/// `argument` so that the program that is started finds it again: quoted, and backslashes before a quote doubled.
std::wstring Quoted(const std::string& argument)
{
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const auto character : fs::path(std::u8string(argument.begin(), argument.end())).wstring()) {
        if (character == L'"') quoted.append(backslashes + 1, L'\\');
        backslashes = character == L'\\' ? backslashes + 1 : 0;
        quoted += character;
    }
    quoted.append(backslashes, L'\\');
    return quoted + L'"';
}

class WindowsProcess : public Process {
public:
    WindowsProcess(Handle job, Handle process, Handle output, Handle complaints)
        : process_(std::move(process)),
          output_(std::move(output)),
          complaints_(std::move(complaints)),
          job_(std::move(job))
    {}

    std::int64_t ReadNow(Stream stream, void* bytes, std::int64_t count) override
    {
        const auto& from = stream == Stream::Output ? output_ : complaints_;
        DWORD waiting = 0;
        if (PeekNamedPipe(from, nullptr, 0, nullptr, &waiting, nullptr) == 0) return 0; // it has ended
        if (waiting == 0) return -1;
        DWORD done = 0;
        const auto most = std::min<std::int64_t>(count, waiting);
        return ReadFile(from, bytes, static_cast<DWORD>(most), &done, nullptr) == 0 ? 0 : done;
    }
    std::optional<int> Status() override
    {
        DWORD status = 0;
        if (WaitForSingleObject(process_, 0) != WAIT_OBJECT_0 || GetExitCodeProcess(process_, &status) == 0)
            return std::nullopt;
        return static_cast<int>(status);
    }

private:
    Handle process_;
    Handle output_;
    Handle complaints_;
    Handle job_;
};

} // namespace

std::unique_ptr<Process> StartProcess(const fs::path& path, const std::vector<std::string>& arguments,
                                      std::error_code& error)
{
    auto line = L'"' + path.wstring() + L'"';
    for (const auto& argument : arguments)
        line += L' ' + Quoted(argument);

    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    const Handle input(
        CreateFileW(L"NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, OPEN_EXISTING, 0, nullptr));
    Pipe output;
    Pipe complaints;
    STARTUPINFOW how{};
    PROCESS_INFORMATION started{};
    auto job = JobThatEndsWithUs();
    bool runs = Open(output) && Open(complaints);
    if (runs) {
        how.cb = sizeof how;
        how.dwFlags = STARTF_USESTDHANDLES;
        how.hStdInput = input;
        how.hStdOutput = output.toWrite;
        how.hStdError = complaints.toWrite;
        runs = CreateProcessW(path.c_str(), line.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr, nullptr,
                              &how, &started) != 0;
    }
    if (!runs) {
        error = LastError();
        return nullptr;
    }
    Handle process(started.hProcess);
    const Handle thread(started.hThread);
    if (AssignProcessToJobObject(job, process) == 0) { // nothing else would end it
        error = LastError();
        TerminateProcess(process, EXIT_FAILURE);
        return nullptr;
    }
    ResumeThread(thread);
    return std::make_unique<WindowsProcess>(std::move(job), std::move(process), std::move(output.toRead),
                                            std::move(complaints.toRead));
}

// In this program's own folder, too. Windows by itself would also take one that lies beside the sound file.
fs::path ProgramNamed(const std::string& name)
{
    std::vector<wchar_t> text(32768); // the longest
    const auto capacity = static_cast<DWORD>(text.size());
    GetModuleFileNameW(nullptr, text.data(), capacity);
    auto all = fs::path(text.data()).parent_path().wstring();
    if (const auto length = GetEnvironmentVariableW(L"PATH", text.data(), capacity); length > 0 && length < capacity)
        all += L';' + std::wstring(text.data(), length);
    std::wistringstream folders(all);
    std::error_code unreadable;
    for (std::wstring folder; std::getline(folders, folder, L';');)
        if (const auto program = fs::path(folder) / (name + ".exe"); !folder.empty() && fs::exists(program, unreadable))
            return program;
    return {};
}

} // namespace sound
