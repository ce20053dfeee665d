// ChildProgram.h: another program, started without a shell, whose output is read through a pipe.
#pragma once

#include "core/Progress.h"
#include "sound/ByteSource.h"
#include "sound/Process.h"

#include <chrono>
#include <memory>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace sound {

class ChildProgram : public ByteSource {
public:
    /// Starts the program `name` of the user's search path, which gets no input. Null with the reason in `error`:
    /// errc::no_such_file_or_directory where there is none of that name. Arguments are UTF-8. `progress` is asked while
    /// nothing comes.
    [[nodiscard]] static std::unique_ptr<ChildProgram> Start(const std::string& name,
                                                             const std::vector<std::string>& arguments,
                                                             const core::Progress& progress, std::error_code& error);

    [[nodiscard]] std::optional<std::int64_t> Size() const override { return std::nullopt; }
    /// The reading ends, too, where for so long nothing comes.
    static constexpr std::chrono::seconds kLongestSilence{30};
    [[nodiscard]] bool IsSilent() const { return Clock::now() - lastByte_ >= kLongestSilence; }
    /// What it has written to its standard error so far; no more than the beginning.
    [[nodiscard]] const std::string& Complaints() const { return complaints_; }
    /// Waits for its end. False where it didn't end, or with another status than 0. Requires: Read has come to the end.
    [[nodiscard]] bool HasSucceeded();

private:
    using Clock = std::chrono::steady_clock;

    ChildProgram(std::unique_ptr<Process> process, core::Progress progress)
        : process_(std::move(process)),
          progress_(std::move(progress))
    {}

    std::int64_t ReadAt(std::int64_t position, void* bytes, std::int64_t count) override;
    /// Takes its complaints, which would hold it up otherwise. Whether to wait on.
    bool GoesOn();

    std::unique_ptr<Process> process_;
    core::Progress progress_;
    std::string complaints_;
    Clock::time_point lastByte_ = Clock::now();
};

} // namespace sound
