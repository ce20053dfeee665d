#include "prepare/Options.h"

#include "command/CommandLine.h"
#include "core/SoundFileHeader.h"
#include "machine/Memory.h"
#include "prepare/TimeText.h"

#include <algorithm>

namespace prepare {
namespace {

constexpr std::int64_t kSmallestSize = core::kTokensPC1600 + 2; // a single period and the end mark
constexpr const char* kFooter = "TIME is in seconds, or m:ss. The exit status is 0, 1 if a file can't be read, "
                                "prepared or written, and 2 for wrong\n"
                                "usage.";

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

    app.add_option("FILE", found.inputs, "Sound files, each prepared by itself")->required()->type_name("");
    command::AddOutput(app, "The recording; else NAME-ready.wav beside the sound file", found.output, options.force);
    app.add_option("--for", found.kind, "speech, music (the melody) or sound (all else); speech if nothing is said")
        ->type_name("KIND")
        ->check([](const std::string& kind) {
            return KindOf(kind) ? std::string() : kind + " is none of speech, music and sound";
        });
    app.add_option("--size", options.size, "What the sound file for the PC-1600 may take; 28474 if nothing is said")
        ->type_name("BYTES")
        ->transform(command::WholeNumber(kSmallestSize, machine::kLargestSize));
    app.add_option("--from", options.part.from, "Leave out what is before")->type_name("TIME")->transform(Time());
    app.add_option("--length", options.part.length, "Take no more than this")->type_name("TIME")->transform(Time());
    app.add_option("--rate", found.rate, "Of the recording, 6000, 8000 or 11025; 11025 if nothing is said")
        ->type_name("HERTZ")
        ->check(Rate());
    command::AddMachine(app, options.playback.machine);
    app.add_flag("--wait", options.waits)->group(""); // of the desktop entry: its terminal closes with the program
}

} // namespace

std::variant<Options, command::Ending> ParseOptions(std::vector<std::string> arguments)
{
    Options options;
    Found found;
    CLI::App app("", "tonfloss-prepare");
    Describe(app, options, found);
    const auto check = [&] {
        if (found.inputs.size() > 1 && !found.output.empty())
            throw CLI::ValidationError("--output", "it can hold one recording, and there are several files");
        if (options.part.length == 0.0) throw CLI::ValidationError("--length", "nothing is left");
    };
    if (auto ending = command::Parse(app, std::move(arguments), check)) return std::move(*ending);
    for (const auto& input : found.inputs)
        options.inputs.push_back(command::PathOf(input));
    options.output = command::PathOf(found.output);
    options.kind = KindOf(found.kind).value();
    options.playback.rate = *machine::RateOfHertz(found.rate);
    return options;
}

} // namespace prepare
