#include "sound/ChildProgram.h"

#include <array>
#include <thread>

namespace sound {
namespace {

void WaitAMoment()
{
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

} // namespace

std::unique_ptr<ChildProgram> ChildProgram::Start(const std::string& name, const std::vector<std::string>& arguments,
                                                  const core::Progress& progress, std::error_code& error)
{
    const auto program = ProgramNamed(name);
    if (program.empty()) return error = std::make_error_code(std::errc::no_such_file_or_directory), nullptr;
    auto process = StartProcess(program, arguments, error);
    if (!process) return nullptr;
    return std::unique_ptr<ChildProgram>(new ChildProgram(std::move(process), progress));
}

bool ChildProgram::GoesOn()
{
    constexpr std::size_t kMostComplaints = 65536;
    std::array<char, 4096> bytes{};
    for (std::int64_t read = 0;
         (read = process_->ReadNow(Process::Stream::Complaints, bytes.data(), std::ssize(bytes))) > 0;) {
        if (complaints_.size() < kMostComplaints) complaints_.append(bytes.data(), static_cast<std::size_t>(read));
        if (!progress_.GoesOn()) return false;
    }
    return progress_.GoesOn() && !IsSilent();
}

std::int64_t ChildProgram::ReadAt(std::int64_t /*position*/, void* bytes, std::int64_t count)
{
    std::int64_t done = 0;
    while (done < count && GoesOn()) {
        const auto read = process_->ReadNow(Process::Stream::Output, static_cast<char*>(bytes) + done, count - done);
        if (read == 0) break;
        if (read < 0) {
            WaitAMoment();
            continue;
        }
        done += read;
        lastByte_ = Clock::now();
    }
    return done;
}

bool ChildProgram::HasSucceeded()
{
    while (!process_->Status() && GoesOn())
        WaitAMoment();
    return process_->Status() == 0;
}

} // namespace sound
