#include "serial/Send.h"

#include "support/Pty.h"

#include <gmock/gmock.h>

#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <future>
#include <thread>

namespace {

using namespace std::chrono_literals;
using enum serial::Refusal::Kind;
using Clock = std::chrono::steady_clock;

core::Progress Unwatched()
{
    return core::Progress([](double) { return true; });
}

TEST(Send, TakesEveryByteOfALongFileOverAndComesBackWhenTheLastHasLeft)
{
    std::string bytes;
    for (int i = 0; i < 30 * 1024; ++i)
        bytes += static_cast<char>(i);
    const Pty pty;
    auto arrived = std::async(std::launch::async, [&] { return pty.Read(bytes.size()); });
    std::vector<double> told;
    const auto start = Clock::now();
    EXPECT_EQ(serial::Send({bytes, pty.Name, 38400}, core::Progress([&](double done) {
                               told.push_back(done);
                               return true;
                           })),
              std::nullopt);
    EXPECT_GE(Clock::now() - start, 8s); // 307200 bits
    EXPECT_EQ(arrived.get(), bytes);
    EXPECT_TRUE(std::ranges::is_sorted(told));
    EXPECT_EQ(told.back(), 1);
    EXPECT_LT(told.at(told.size() / 2), 0.7); // told as they leave, not as they go into a buffer
    EXPECT_TRUE(pty.IsAsBefore());
}

TEST(Send, StopsAtOnceWhereNothingIsTaken)
{
    const Pty pty;
    pty.Fill();
    auto last = Clock::now();
    auto longest = Clock::duration::zero();
    const auto start = last;
    const auto end = serial::Send({"sound", pty.Name, 9600}, core::Progress([&](double done) {
                                      EXPECT_EQ(done, 0);
                                      longest = std::max(longest, Clock::now() - std::exchange(last, Clock::now()));
                                      return Clock::now() - start < 500ms;
                                  }));
    ASSERT_TRUE(end);
    EXPECT_EQ(end->kind, Stopped);
    EXPECT_LT(longest, 100ms);
    EXPECT_LT(Clock::now() - last, 100ms);
    EXPECT_TRUE(pty.IsAsBefore());
}

TEST(Send, TellsWithinTwoSecondsThatThePortIsLost)
{
    const struct {
        const char* when;
        bool isFull;
        std::size_t size;
        int baud;
    } rows[] = {
        {"while bytes go over", false, 30000, 9600},
        {"while none is taken", true, 30000, 9600},
        {"while the last ones are on the way", false, 8, 50},
    };
    for (const auto& [when, isFull, size, baud] : rows) {
        Pty pty;
        if (isFull) pty.Fill();
        const auto start = Clock::now();
        const auto unplugged = std::async(std::launch::async, [&pty] {
            std::this_thread::sleep_for(700ms);
            pty.Unplug();
        });
        const auto end = serial::Send({std::string(size, 'x'), pty.Name, baud}, Unwatched());
        ASSERT_TRUE(end) << when;
        EXPECT_EQ(end->kind, Lost) << when;
        EXPECT_LT(Clock::now() - start, 2700ms) << when;
    }
}

TEST(Send, RefusesWhatItCanNotUseAndLeavesItAsItWas)
{
    const Pty busy;
    flock(busy.Port(), LOCK_EX);
    const Pty forbidden;
    fchmod(forbidden.Port(), 0);
    const Pty good;
    struct Row {
        std::string port;
        std::optional<serial::Refusal::Kind> kind;
    };
    std::vector<Row> rows{
        {good.Name, std::nullopt},
        {good.Name.substr(4), NoSuchPort}, // /pts/3: a name with a folder stands as it is
        {"/dev/tonfloss-none", NoSuchPort},
        {"tonfloss-none", NoSuchPort}, // in /dev
        {"/dev/null/none", NoSuchPort},
        {"null", NotAPort}, // in /dev
        {"/tmp", NotAPort},
        {busy.Name, Busy},
    };
    if (geteuid() != 0) rows.push_back({forbidden.Name, NoRights}); // root may all
    for (const auto& [port, kind] : rows) {
        const auto refusal = serial::RefusalOf({"sound", port, 9600});
        EXPECT_EQ(refusal ? std::optional(refusal->kind) : std::nullopt, kind) << port;
    }
    EXPECT_TRUE(busy.IsAsBefore());
    EXPECT_TRUE(good.IsAsBefore());
}

} // namespace
