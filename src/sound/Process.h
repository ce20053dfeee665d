// Process.h: a started program, as the system has it. Each system has a file that fills this in.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace sound {

class Process {
public:
    enum class Stream { Output, Complaints };

    Process() = default;
    /// Ends the program, whatever it is doing. It ends with this program, too, however that ends.
    virtual ~Process() = default;
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /// Up to so many bytes of those that are there now; 0 at the end, -1 where there are none yet.
    virtual std::int64_t ReadNow(Stream stream, void* bytes, std::int64_t count) = 0;
    /// Its exit status, where it has ended; not 0 where it was killed.
    virtual std::optional<int> Status() = 0;
};

/// Starts the program at `path` without a shell and without input. Null with the reason in `error`. Arguments are
/// UTF-8.
[[nodiscard]] std::unique_ptr<Process> StartProcess(const std::filesystem::path& path,
                                                    const std::vector<std::string>& arguments, std::error_code& error);

/// The file that the name of a program means: the first that can be started, else the first of that name, else empty.
/// None is in the current folder by an empty element of the search path, which some systems take for it.
[[nodiscard]] std::filesystem::path ProgramNamed(const std::string& name);

} // namespace sound
