#include "sound/ChildProgram.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <filesystem>

namespace sound {
namespace {

/// `argument` so that the program that is started finds it again: quoted, and backslashes before a quote doubled.
std::wstring Quoted(const std::string& argument)
{
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const auto character : std::filesystem::path(std::u8string(argument.begin(), argument.end())).wstring()) {
        if (character == L'"') quoted.append(backslashes + 1, L'\\');
        backslashes = character == L'\\' ? backslashes + 1 : 0;
        quoted += character;
    }
    quoted.append(backslashes, L'\\');
    return quoted + L'"';
}

/// The program in this program's own folder or in one of the search path; empty where there is none. Windows by itself
/// would also take one that lies beside the sound file.
std::wstring Find(const std::string& name)
{
    std::array<wchar_t, 32768> text{};
    const auto capacity = static_cast<DWORD>(text.size());
    GetModuleFileNameW(nullptr, text.data(), capacity);
    auto folders = std::filesystem::path(text.data()).parent_path().wstring();
    if (const auto length = GetEnvironmentVariableW(L"PATH", text.data(), capacity); length > 0 && length < capacity)
        folders += L';' + std::wstring(text.data(), length);
    const auto length =
        SearchPathW(folders.c_str(), std::filesystem::path(name).c_str(), L".exe", capacity, text.data(), nullptr);
    return length < capacity ? std::wstring(text.data(), length) : std::wstring();
}

} // namespace

std::unique_ptr<ChildProgram> ChildProgram::Start(const std::string& name, const std::vector<std::string>& arguments,
                                                  const core::Progress& progress)
{
    const auto program = Find(name);
    if (program.empty()) return nullptr;
    auto line = Quoted(name);
    for (const auto& argument : arguments)
        line += L' ' + Quoted(argument);

    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE ours{};
    STARTUPINFOW how{};
    how.cb = sizeof how;
    how.dwFlags = STARTF_USESTDHANDLES;
    if (CreatePipe(&ours, &how.hStdOutput, &inherited, 0) == 0) return nullptr;
    SetHandleInformation(ours, HANDLE_FLAG_INHERIT, 0);
    how.hStdInput =
        CreateFileW(L"NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, OPEN_EXISTING, 0, nullptr);
    how.hStdError =
        CreateFileW(L"NUL", GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, OPEN_EXISTING, 0, nullptr);

    PROCESS_INFORMATION started{};
    const bool runs =
        CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &how, &started) != 0;
    for (auto* const handle : {how.hStdInput, how.hStdOutput, how.hStdError, started.hThread})
        CloseHandle(handle);
    if (!runs) {
        CloseHandle(ours);
        return nullptr;
    }
    return std::unique_ptr<ChildProgram>(new ChildProgram(reinterpret_cast<std::intptr_t>(ours),
                                                          reinterpret_cast<std::intptr_t>(started.hProcess), progress));
}

ChildProgram::~ChildProgram()
{
    CloseHandle(reinterpret_cast<HANDLE>(output_));
    auto* const process = reinterpret_cast<HANDLE>(process_);
    TerminateProcess(process, 1);
    CloseHandle(process);
}

std::int64_t ChildProgram::ReadWhatComes(void* bytes, std::int64_t count)
{
    constexpr DWORD kMoment = 10; // ms
    auto* const output = reinterpret_cast<HANDLE>(output_);
    DWORD waiting = 0;
    if (PeekNamedPipe(output, nullptr, 0, nullptr, &waiting, nullptr) == 0) return 0; // it has ended
    if (waiting == 0) return Sleep(kMoment), -1;
    DWORD done = 0;
    const auto most = std::min<std::int64_t>(count, waiting);
    return ReadFile(output, bytes, static_cast<DWORD>(most), &done, nullptr) == 0 ? 0 : done;
}

} // namespace sound
