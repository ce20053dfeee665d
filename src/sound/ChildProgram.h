// ChildProgram.h: another program, started without a shell, whose output is read through a pipe.
#pragma once

#include "core/Progress.h"
#include "sound/ByteSource.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace sound {

class ChildProgram : public ByteSource {
public:
    /// Starts the program `name` of the user's search path. It gets no input, and what it complains about isn't shown.
    /// Null where there is none of that name. Arguments are UTF-8. `progress` is asked while nothing comes.
    [[nodiscard]] static std::unique_ptr<ChildProgram>
    Start(const std::string& name, const std::vector<std::string>& arguments, const core::Progress& progress);
    /// Ends the program, whatever it is doing.
    ~ChildProgram() override;

    /// Of what it writes.
    std::int64_t Read(void* bytes, std::int64_t count) override;
    std::int64_t Position() override { return position_; }
    void Seek(std::int64_t /*position*/) override {}
    std::optional<std::int64_t> Size() override { return std::nullopt; }

private:
    ChildProgram(std::intptr_t output, std::intptr_t process, const core::Progress& progress)
        : output_(output),
          process_(process),
          progress_(progress)
    {}

    /// Up to so many bytes, as soon as there are some; 0 at the end, -1 where a moment went by without any.
    std::int64_t ReadWhatComes(void* bytes, std::int64_t count);

    std::intptr_t output_;  // of the pipe; descriptor or handle, as the system has it
    std::intptr_t process_; // id or handle
    core::Progress progress_;
    std::int64_t position_ = 0;
};

} // namespace sound
