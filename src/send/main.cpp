#include "command/Bar.h"
#include "command/CommandLine.h"
#include "command/Names.h"
#include "command/Terminal.h"
#include "core/MachineSteps.h"
#include "core/SoundFileImage.h"
#include "files/Files.h"
#include "preview/Report.h"
#include "preview/SoundFile.h"
#include "serial/Ports.h"
#include "serial/Send.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <iostream>

namespace {

using namespace preview;

constexpr auto kProgram = "tonfloss-send";

struct Options {
    std::string input;
    std::string port; // empty: the only one
    int baud = 9600;
    bool now = false;
};

void Describe(CLI::App& app, Options& options)
{
    app.description("Send a sound file of Tonfloss to the PC-1600 over a serial port: 8 bits, no parity, 1 stop bit.");
    app.footer("Before it sends, it shows what to type on the machine, and waits for Return.\n"
               "The exit status is 0, 1 if the file is no sound file or can't be sent, and 2 for wrong usage.");
    app.add_option("SOUND.bin", options.input, "A sound file for the PC-1600")->required()->type_name("");
    app.add_option("--port", options.port, "The serial port; if nothing is said, the only one there is")
        ->type_name("NAME")
        ->check([](const std::string& name) { return std::string(name.empty() ? "the name is empty" : ""); });
    std::string bauds;
    for (const auto baud : serial::kBauds)
        bauds += (bauds.empty() ? "" : ", ") + std::to_string(baud);
    const auto refusal = [bauds](const std::string& text) {
        const auto isIt = [&](int baud) { return text == std::to_string(baud); };
        return std::ranges::any_of(serial::kBauds, isIt) ? std::string() : text + " is none of " + bauds;
    };
    app.add_option("--baud", options.baud, "Bits a second: " + bauds + "; 9600 if nothing is said")
        ->type_name("N")
        ->check(refusal);
    app.add_flag("--now", options.now, "Don't wait for Return");
}

std::string Listed(const std::vector<serial::Port>& ports)
{
    std::string text;
    for (const auto& [name, description] : ports)
        text += "\n  " + name + (description.empty() ? "" : "  " + command::Shown(command::PathOf(description)));
    return text;
}

std::string Reason(const serial::Refusal& refusal, const Options& options)
{
    using enum serial::Refusal::Kind;
    switch (refusal.kind) {
    case NoSuchPort: {
        const auto ports = serial::Ports();
        return "There is no such port. " + (ports.empty() ? "This machine has none." : "There are:" + Listed(ports));
    }
    case NotAPort: return "This is no serial port.";
    case Busy: return "Another program uses this port. Close it, and try again.";
    case NoRights:
        return "You may not use this port. On Debian and Ubuntu the group dialout may: sudo usermod -aG dialout $USER, "
               "then log out and in again.";
    case Baud: return "This port can't be set to " + std::to_string(options.baud) + " baud.";
    case Lost:
        return "The port went while it was in use. Look after the cable, have the machine wait with BLOAD again, and "
               "send again.";
    case Stopped: return "It was stopped. What the machine has got isn't whole.";
    case System: break;
    }
    return refusal.reason.message();
}

int Refused(const serial::Refusal& refusal, const Options& options)
{
    command::Complain(kProgram, command::PathOf(options.port), Reason(refusal, options));
    return EXIT_FAILURE;
}

/// While it is there, a signal that asks the program to end is noted, so that the port gets its settings back.
class Signals {
public:
    Signals()
    {
        for (std::size_t i = 0; i < kAll.size(); ++i) {
            before_.at(i) = std::signal(kAll.at(i), [](int signal) { came = signal; });
            if (before_.at(i) == SIG_IGN) static_cast<void>(std::signal(kAll.at(i), SIG_IGN)); // as under nohup
        }
    }
    ~Signals()
    {
        for (std::size_t i = 0; i < kAll.size(); ++i)
            static_cast<void>(std::signal(kAll.at(i), before_.at(i)));
    }
    Signals(const Signals&) = delete;
    Signals& operator=(const Signals&) = delete;

    static inline volatile std::sig_atomic_t came = 0;

private:
#ifdef SIGHUP
    static constexpr std::array kAll{SIGINT, SIGTERM, SIGHUP};
#else
    static constexpr std::array kAll{SIGINT, SIGTERM};
#endif
    std::array<void (*)(int), kAll.size()> before_{};
};

std::optional<serial::Refusal> SendWithBar(const serial::Job& job)
{
    const Signals signals;
    command::Bar bar;
    const auto all = static_cast<double>(job.bytes.size());
    const core::Progress progress([&](double done) {
        bar.Show(done, serial::SecondsFor((1 - done) * all, job.baud));
        return Signals::came == 0;
    });
    return serial::Send(job, progress);
}

void ShowSteps(const SoundFile& sound, const Options& options)
{
    std::string text = "Type on the machine:\n";
    for (const auto& step : core::StepsFor(*sound.loadAddress, core::SizeOf(sound), options.baud))
        text += "  " + step + '\n';
    command::Show(text);
}

/// False where nobody can press it.
bool ReturnCame()
{
    command::Show("Press Return here when BLOAD waits.\n");
    std::string line;
    return static_cast<bool>(std::getline(std::cin, line));
}

/// The port, or the status where there is none to be taken: the user has been told.
bool HasPort(Options& options)
{
    if (!options.port.empty()) return true;
    const auto ports = serial::Ports();
    if (ports.size() == 1) {
        options.port = ports.front().name;
        return true;
    }
    command::Complain(kProgram, "",
                      ports.empty() ? "This machine has no serial port. Plug in the adapter, or name one with --port."
                                    : "There are several serial ports. Name one with --port:" + Listed(ports));
    return false;
}

int SendFile(Options options)
{
    const auto input = command::PathOf(options.input);
    const auto bytes = files::ReadBytes(input, kLargestFile + 1);
    const auto parsed = ParseSoundFile(bytes);
    if (const auto* const refusal = std::get_if<Refusal>(&parsed)) {
        command::Complain(kProgram, input, refusal->reason);
        return EXIT_FAILURE;
    }
    const auto& sound = std::get<SoundFile>(parsed);
    if (!sound.loadAddress) {
        command::Complain(kProgram, input, "This is a file for PokEmul. The machine takes one for the PC-1600.");
        return EXIT_FAILURE;
    }
    for (const auto& warning : WarningsOf(sound))
        command::Complain(kProgram, input, "warning: " + warning);
    if (!HasPort(options)) return EXIT_FAILURE;
    const serial::Job job{.bytes = bytes, .port = options.port, .baud = options.baud};
    if (const auto refusal = serial::RefusalOf(job)) return Refused(*refusal, options); // before anybody types
    ShowSteps(sound, options);
    if (!options.now && !ReturnCame()) {
        command::Complain(kProgram, "", "Nothing was sent, since no Return came; with --now it doesn't wait for it.");
        return EXIT_FAILURE;
    }
    if (const auto refusal = SendWithBar(job)) {
        const auto status = Refused(*refusal, options);
        if (refusal->kind == serial::Refusal::Kind::Stopped) static_cast<void>(std::raise(Signals::came));
        return status;
    }
    command::Show("sent: " + std::to_string(bytes.size()) + " bytes to " +
                  command::Shown(command::PathOf(options.port)) + '\n');
    return EXIT_SUCCESS;
}

int Run(std::vector<std::string> arguments)
{
    command::SetUpTerminal();
    Options options;
    CLI::App app("", kProgram);
    Describe(app, options);
    const auto ending = command::Parse(app, std::move(arguments));
    return ending ? command::Show(*ending) : SendFile(std::move(options));
}

} // namespace

int main(int argc, char* argv[])
{
    return command::Run(kProgram, argc, argv, Run);
}
