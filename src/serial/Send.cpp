#include "serial/Send.h"

#include "serial/Line.h"

#include <algorithm>
#include <cassert>

namespace serial {
namespace {

using Clock = std::chrono::steady_clock;

// A port is given what leaves it in that time, so that little is on the way when the user stops, and the end is told
// when it comes: drivers and adapters take a second's worth and more at once, and not all know when it has left.
constexpr double kAhead = 0.2; // seconds

std::optional<Refusal> Send(Line& line, const Job& job, const core::Progress& progress)
{
    const auto perSecond = 1 / SecondsFor(1, job.baud);
    const auto size = job.bytes.size();
    const auto ahead = static_cast<std::size_t>(kAhead * perSecond) + 1;
    const auto start = Clock::now();
    for (std::size_t written = 0;;) {
        const std::chrono::duration<double> passed = Clock::now() - start;
        const auto due = static_cast<std::size_t>(passed.count() * perSecond); // can have left by now
        if (!progress.GoesOn(std::min({written, due, size}), size)) {
            line.Discard();
            return Refusal{Refusal::Kind::Stopped, {}};
        }
        const auto allowed = std::min(size, due + ahead);
        if (written < allowed)
            written += line.Write(job.bytes.substr(written, allowed - written));
        else if (written == size && due >= size && line.IsEmpty())
            return std::nullopt;
        else
            line.Wait();
    }
}

} // namespace

std::optional<Refusal> RefusalOf(const Job& job)
try {
    const Line line(job.port, job.baud);
    return std::nullopt;
} catch (const LineError& error) {
    return error.refusal;
}

std::optional<Refusal> Send(const Job& job, const core::Progress& progress)
try {
    assert(!job.bytes.empty());
    Line line(job.port, job.baud);
    return Send(line, job, progress);
} catch (const LineError& error) {
    return error.refusal;
}

} // namespace serial
