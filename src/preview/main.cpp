#include "files/Files.h"
#include "preview/Report.h"
#include "preview/SoundFile.h"
#include "preview/SquareWave.h"

#include <getopt.h>

#include <charconv>
#include <cstdlib>
#include <exception>
#include <iostream>

namespace {

using namespace preview;

constexpr int kWrongUsage = 2;
constexpr const char* kStandardOutput = "-";

constexpr std::string_view kHelp = R"(Usage: tonfloss-preview [OPTION]... SOUND.bin
Tell how a sound file of Tonfloss will sound on the machine, or write it as a Wave file.

  -o, --output FILE   write a Wave file, 16 bits, mono; "-" is the standard output
      --force         replace FILE if it exists
      --rate HERTZ    sample rate of the Wave file, 8000 to 192000; 44100 if nothing is said
      --clock HERTZ   clock of the machine's Z80, 1000000 to 20000000; 3580000 if nothing is said
      --waits 0|1     cycles that it waits at each opcode fetch; 1 if nothing is said
      --help          show this and end
      --version       show the version and end

The report goes to the standard output, or to standard error with "-o -".
The exit status is 0, 1 if a file can't be read, is no sound file or can't be written, and 2 for wrong usage.
)";

enum { kForce = 256, kRate, kClock, kWaits, kHelpAsked, kVersionAsked };
constexpr option kOptions[] = {
    {"output", required_argument, nullptr, 'o'},      {"force", no_argument, nullptr, kForce},
    {"rate", required_argument, nullptr, kRate},      {"clock", required_argument, nullptr, kClock},
    {"waits", required_argument, nullptr, kWaits},    {"help", no_argument, nullptr, kHelpAsked},
    {"version", no_argument, nullptr, kVersionAsked}, {nullptr, 0, nullptr, 0}};

struct Options {
    std::string input;
    std::string output; // empty: only the report
    bool force = false;
    std::int64_t rate = 44100; // Hz
    machine::Machine machine;
    std::string_view answer; // what --help or --version shows
};

/// False, so that whoever has to complain can return it.
bool Complain(std::string_view what, std::string_view reason)
{
    std::cerr << "tonfloss-preview: " << what << ": " << reason << '\n';
    return false;
}

/// Takes the number behind the option that getopt has just found.
bool TakeNumber(const char* name, std::int64_t least, std::int64_t most, std::int64_t& number)
{
    const std::string_view text = optarg;
    const auto* const textEnd = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), textEnd, number);
    if (error == std::errc() && end == textEnd && number >= least && number <= most) return true;
    return Complain(name, std::string(text) + " is no whole number from " + std::to_string(least) + " to " +
                              std::to_string(most));
}

/// Takes one option as getopt names it; false for a wrong one.
bool TakeOption(int found, Options& options)
{
    switch (found) {
    case 'o': options.output = optarg; return !options.output.empty() || Complain("--output", "the name is empty");
    case kForce: options.force = true; return true;
    case kRate: return TakeNumber("--rate", 8000, 192000, options.rate);
    // From 1 MHz on the longest sound stays below the 4 GiB of a Wave file.
    case kClock: return TakeNumber("--clock", 1'000'000, 20'000'000, options.machine.clock);
    case kWaits: return TakeNumber("--waits", 0, 1, options.machine.waits);
    case kHelpAsked: options.answer = kHelp; return true;
    case kVersionAsked: options.answer = "tonfloss-preview " TONFLOSS_VERSION "\n"; return true;
    default: return false; // getopt has told what is wrong
    }
}

bool TakeOptions(int argc, char* argv[], Options& options)
{
    for (int found = 0; (found = getopt_long(argc, argv, "o:", kOptions, nullptr)) != -1;) {
        if (!TakeOption(found, options)) return false;
        if (!options.answer.empty()) return true;
    }
    if (argc == optind) {
        std::cerr << kHelp.substr(0, kHelp.find('\n') + 1);
        return false;
    }
    if (argc - optind != 1) return Complain("SOUND.bin", "name one sound file");
    options.input = argv[optind];
    return true;
}

void Show(std::string_view text)
{
    files::WriteStandardOutput([&](const files::ByteSink& sink) { sink(text); });
}

/// Arguments are UTF-8 on Windows too, as the program's manifest says.
std::filesystem::path PathOf(const std::string& argument)
{
    return std::u8string(argument.begin(), argument.end());
}

bool Preview(const Options& options)
{
    const auto input = PathOf(options.input);
    const auto parsed = ParseSoundFile(files::ReadBytes(input, kLargestFile + 1));
    if (const auto* const refusal = std::get_if<Refusal>(&parsed)) return Complain(options.input, refusal->reason);
    const auto& sound = std::get<SoundFile>(parsed);
    for (const auto& warning : WarningsOf(sound))
        Complain(options.input, "warning: " + warning);
    const auto report = ReportOn(sound, options.machine);
    const auto wave = [&](const files::ByteSink& sink) {
        WriteWave(machine::PerformanceOf(sound.runBytes, sound.sampleRate, options.machine.waits),
                  options.machine.clock, options.rate, sink);
    };
    if (options.output == kStandardOutput) {
        std::cerr << report;
        files::WriteStandardOutput(wave);
    } else if (options.output.empty()) {
        Show(report);
    } else {
        const auto waveThenReport = [&](const files::ByteSink& sink) {
            wave(sink);
            Show(report); // where it can't be shown, there is no file either
        };
        files::Write(PathOf(options.output), options.force ? files::Existing::Replace : files::Existing::Refuse,
                     waveThenReport, input);
    }
    return true;
}

/// What the library can't know is added.
std::string ReasonOf(const files::IOException& failure)
{
    switch (failure.ErrorKind) {
    case files::IOException::Kind::Exists: return failure.Reason() + " --force replaces it.";
    case files::IOException::Kind::IsTheSource: return "This is the sound file itself.";
    default: return failure.Reason();
    }
}

} // namespace

int main(int argc, char* argv[])
{
    try {
        files::BeginWriting();
        Options options;
        if (!TakeOptions(argc, argv, options)) {
            std::cerr << "Try 'tonfloss-preview --help'.\n";
            return kWrongUsage;
        }
        if (options.answer.empty()) return Preview(options) ? EXIT_SUCCESS : EXIT_FAILURE;
        Show(options.answer);
        return EXIT_SUCCESS;
    } catch (const files::IOException& failure) {
        Complain(failure.Name(), ReasonOf(failure));
        return EXIT_FAILURE;
    } catch (const std::exception& failure) {
        std::cerr << "tonfloss-preview: " << failure.what() << '\n';
        return EXIT_FAILURE;
    }
}
