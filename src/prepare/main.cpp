#include "command/Messages.h"
#include "prepare/Options.h"
#include "prepare/Prepare.h"
#include "prepare/Refusal.h"
#include "prepare/Terminal.h"

#include <chrono>
#include <cstdlib>
#include <exception>
#include <iostream>

namespace {

using namespace prepare;

constexpr auto kProgram = "tonfloss-prepare";

/// A bar on the terminal, for work that takes more than a second.
class Bar {
public:
    ~Bar()
    {
        if (isShown_) std::cerr << '\r' << std::string(kWidth + 8, ' ') << '\r';
    }

    void Show(double done)
    {
        const auto percent = static_cast<int>(done * 100);
        if (percent == percent_ || Clock::now() - start_ < std::chrono::seconds(1)) return;
        percent_ = percent;
        isShown_ = true;
        const auto full = static_cast<std::size_t>(done * kWidth);
        std::cerr << "\r[" << std::string(full, '#') << std::string(kWidth - full, '.') << "] " << percent << " %"
                  << std::flush;
    }

private:
    using Clock = std::chrono::steady_clock;
    static constexpr std::size_t kWidth = 50;

    Clock::time_point start_ = Clock::now();
    int percent_ = -1;
    bool isShown_ = false;
};

std::string PrepareWithBar(const std::filesystem::path& input, const Options& options)
{
    Bar bar;
    return Prepare(
        input, options, ShowsProgress() ? Progress([&](double done) { bar.Show(done); }) : [](double) {});
}

/// False where `input` couldn't be prepared: the user has been told.
bool IsPrepared(const std::filesystem::path& input, const Options& options)
{
    try {
        command::Show(PrepareWithBar(input, options));
        return true;
    } catch (const std::exception& failure) {
        const auto name = input.u8string();
        command::Complain(kProgram, std::string(name.begin(), name.end()), failure);
        return false;
    }
}

int Run(std::vector<std::string> arguments)
{
    SetUpTerminal();
    const auto parsed = ParseOptions(std::move(arguments));
    if (const auto* const ending = std::get_if<command::Ending>(&parsed)) return command::Show(*ending);
    const auto& options = std::get<Options>(parsed);
    bool areAllPrepared = true;
    for (const auto& input : options.inputs)
        areAllPrepared = IsPrepared(input, options) && areAllPrepared;
    if (options.waits || ClosesWithProgram()) {
        std::cout << "Press Return to close this window." << std::endl;
        std::cin.get();
    }
    return areAllPrepared ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int main(int argc, char* argv[])
{
    return command::Run(kProgram, argc, argv, Run);
}
