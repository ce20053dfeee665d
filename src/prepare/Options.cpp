#include "prepare/Options.h"

#include "core/SoundFileHeader.h"
#include "machine/Memory.h"
#include "prepare/TimeText.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <sstream>

namespace prepare {
namespace {

constexpr int kWrongUsage = 2;
constexpr std::int64_t kSmallestSize = core::kTokensPC1600 + 2; // a single period and the end mark
constexpr const char* kFooter = "TIME is in seconds, or m:ss. The exit status is 0, 1 if a file can't be read, "
                                "prepared or written, and 2 for wrong\n"
                                "usage.";

/// What is wrong with a number, told as the other commands do.
CLI::Validator WholeNumber(std::int64_t least, std::int64_t most)
{
    return {[=](const std::string& text) -> std::string {
                std::int64_t number = 0;
                const auto* const end = text.data() + text.size();
                const auto [rest, error] = std::from_chars(text.data(), end, number);
                if (error == std::errc() && rest == end && number >= least && number <= most) return {};
                return text + " is no whole number from " + std::to_string(least) + " to " + std::to_string(most);
            },
            ""};
}

/// Makes a time of the text a number of seconds.
CLI::Validator Time()
{
    return {[](std::string& text) -> std::string {
                const auto seconds = SecondsOf(text);
                if (!seconds || *seconds > 1e6) return text + " is no time: write seconds, or m:ss";
                text = std::to_string(*seconds);
                return {};
            },
            ""};
}

CLI::Validator Rate()
{
    return {[](const std::string& text) -> std::string {
                const auto isIt = [&](const auto& rate) { return std::to_string(rate.hertz) == text; };
                if (std::ranges::any_of(machine::kSampleRates, isIt)) return {};
                return text + " is none of the rates that the machine knows";
            },
            ""};
}

std::filesystem::path PathOf(const std::string& argument)
{
    return std::u8string(argument.begin(), argument.end());
}

/// What the library leaves as text or number, until all has been found.
struct Found {
    std::vector<std::string> inputs;
    std::string output;
    std::string kind = "speech";
    std::uint32_t rate = Options().playback.rate.hertz;
};

std::optional<Kind> KindOf(std::string_view name)
{
    if (name == "speech") return Kind::Speech;
    if (name == "music") return Kind::Music;
    if (name == "sound") return Kind::AnySound;
    return std::nullopt;
}

void Describe(CLI::App& app, Options& options, Found& found)
{
    app.description("Make of any sound file the recording that sounds best on the machine, for Tonfloss's window.");
    app.footer(kFooter);
    app.allow_windows_style_options(false); // a path may begin with a slash
    app.set_help_flag();                    // which would come first

    app.add_option("FILE", found.inputs, "Sound files, each prepared by itself")->required()->type_name("");
    app.add_option("-o,--output", found.output, "The recording; else NAME-ready.wav beside the sound file")
        ->type_name("FILE")
        ->check(
            [](const std::string& name) { return name.empty() ? std::string("the name is empty") : std::string(); });
    app.add_flag("--force", options.force, "Replace the recording if it exists");
    app.add_option("--for", found.kind, "speech, music (the melody) or sound (all else); speech if nothing is said")
        ->type_name("KIND")
        ->check([](const std::string& kind) {
            return KindOf(kind) ? std::string() : kind + " is none of speech, music and sound";
        });
    app.add_option("--size", options.size, "What the sound file for the PC-1600 may take; 28474 if nothing is said")
        ->type_name("BYTES")
        ->check(WholeNumber(kSmallestSize, machine::kLargestSize));
    app.add_option("--from", options.part.from, "Leave out what is before")->type_name("TIME")->transform(Time());
    app.add_option("--length", options.part.length, "Take no more than this")->type_name("TIME")->transform(Time());
    app.add_option("--rate", found.rate, "Of the recording, 6000, 8000 or 11025; 11025 if nothing is said")
        ->type_name("HERTZ")
        ->check(Rate());
    app.add_option("--clock", options.playback.machine.clock,
                   "Of the machine's Z80, 1000000 to 20000000; 3580000 if nothing is said")
        ->type_name("HERTZ")
        ->check(WholeNumber(1'000'000, 20'000'000));
    app.add_option("--waits", options.playback.machine.waits,
                   "Cycles that it waits at each opcode fetch; 1 if nothing is said")
        ->type_name("0|1")
        ->check(WholeNumber(0, 1));
    app.set_help_flag("--help", "Show this and end");
    app.set_version_flag("--version", "tonfloss-prepare " TONFLOSS_VERSION, "Show the version and end");
    app.add_flag("--wait", options.waits)->group(""); // of the desktop entry: its terminal closes with the program
}

} // namespace

std::variant<Options, Ending> ParseOptions(std::vector<std::string> arguments)
{
    Options options;
    Found found;
    CLI::App app("", "tonfloss-prepare");
    Describe(app, options, found);
    // The library would take a file named [a,b] for two, and one named ++ for nothing.
    for (auto& argument : arguments)
        if (argument.starts_with('[') || argument == "++") argument.insert(0, "./");
    std::ranges::reverse(arguments);
    try {
        app.parse(std::move(arguments));
        if (found.inputs.size() > 1 && !found.output.empty())
            throw CLI::ValidationError("--output", "it can hold one recording, and there are several files");
        if (options.part.length == 0.0) throw CLI::ValidationError("--length", "nothing is left");
    } catch (const CLI::ParseError& end) {
        std::ostringstream shown;
        const bool isAsked = app.exit(end, shown, shown) == 0;
        return Ending{isAsked ? shown.str()
                              : std::string("tonfloss-prepare: ") + end.what() + "\nTry 'tonfloss-prepare --help'.\n",
                      isAsked ? 0 : kWrongUsage};
    }
    for (const auto& input : found.inputs)
        options.inputs.push_back(PathOf(input));
    options.output = PathOf(found.output);
    options.kind = KindOf(found.kind).value();
    options.playback.rate = *machine::RateOfHertz(found.rate);
    return options;
}

} // namespace prepare
