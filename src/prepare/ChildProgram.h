// ChildProgram.h: another program, started without a shell, whose output is read through a pipe.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace prepare {

class ChildProgram {
public:
    /// Starts the program `name` of the user's search path. It gets no input, and what it complains about isn't shown.
    /// Null where there is none of that name. Arguments are UTF-8.
    [[nodiscard]] static std::unique_ptr<ChildProgram> Start(const std::string& name,
                                                             const std::vector<std::string>& arguments);
    /// Ends the program, whatever it is doing.
    ~ChildProgram();
    ChildProgram(const ChildProgram&) = delete;
    ChildProgram& operator=(const ChildProgram&) = delete;

    /// What it writes, as a file descriptor.
    [[nodiscard]] int Output() const { return output_; }

private:
    ChildProgram(int output, std::intptr_t process) : output_(output), process_(process) {}

    int output_;
    std::intptr_t process_; // id or handle, as the system has it
};

} // namespace prepare
