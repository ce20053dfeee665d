#include "prepare/command/Options.h"

#include "command/CommandLine.h"
#include "command/Names.h"
#include "core/SoundFileHeader.h"
#include "core/TimeText.h"

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
                const auto seconds = core::SecondsOf(text);
                if (!seconds || *seconds > 1e6) return text + " is no time: write seconds, or m:ss";
                text = std::to_string(*seconds);
                return {};
            },
            ""};
}

/// "a, b or c".
std::string Listed(std::vector<std::string> names, const std::string& last)
{
    auto list = std::move(names.front());
    for (auto name = names.begin() + 1; name != names.end(); ++name)
        list += (name + 1 == names.end() ? " " + last + " " : ", ") + *name;
    return list;
}

std::string Explained(Kind kind)
{
    switch (kind) {
    case Kind::Speech: return "speech";
    case Kind::Music: return "music";
    case Kind::Melody: return "melody (one voice of it)";
    case Kind::AnySound: return "sound (all else)";
    }
    return {};
}

/// Each of `values` as `text` shows it.
std::vector<std::string> Texts(const auto& values, const auto& text)
{
    std::vector<std::string> texts;
    texts.reserve(values.size());
    for (const auto& value : values)
        texts.emplace_back(text(value));
    return texts;
}

std::vector<std::string> Noises()
{
    return {"reduce", "keep"};
}

const auto kHertz = [](const machine::SampleRate& rate) { return std::to_string(rate.hertz); };

/// What the library leaves as text, until all has been found.
struct Found {
    std::vector<std::string> inputs;
    std::string output;
    std::string kind{NameOf(Options().kind)};
    std::string noise{Noises().front()};
    std::optional<double> to; // seconds
    std::string rate = kHertz(Options().playback.rate);
};

/// Refuses what is none of `names`, in any case. The reason ends so.
CLI::Validator OneOf(std::vector<std::string> names, std::string reason)
{
    return {[names = std::move(names), reason = std::move(reason)](std::string& text) {
                const auto lower = CLI::detail::to_lower(text);
                if (std::ranges::count(names, lower) == 0) return text + " is none of " + reason;
                return text = lower, std::string();
            },
            ""};
}

/// Makes 12K bytes a number.
CLI::Validator Kilobytes()
{
    return {[](std::string& text) {
                const auto digits = text.substr(0, text.size() - 1);
                const auto number = std::strtol(digits.c_str(), nullptr, 10);
                if ((text.ends_with('K') || text.ends_with('k')) && digits == std::to_string(number))
                    text = std::to_string(1024 * number);
                return std::string();
            },
            ""};
}

void Describe(CLI::App& app, Options& options, Found& found)
{
    app.description("Make of any sound file the recording that sounds best on the machine, for Tonfloss's window.");
    app.footer(kFooter);

    const auto kinds = Texts(kKinds, NameOf);
    const auto rates = Texts(machine::kSampleRates, kHertz);
    app.add_option("FILE", found.inputs, "Sound files, each prepared by itself")->required()->type_name("");
    command::AddOutput(app, "The recording; else NAME-ready.wav beside the sound file", found.output, options.force);
    app.add_option("--for", found.kind,
                   Listed(Texts(kKinds, Explained), "or") + "; " + found.kind + " if nothing is said")
        ->type_name("KIND")
        ->transform(OneOf(kinds, Listed(kinds, "and")));
    app.add_option("--noise", found.noise,
                   "What becomes of noise that goes through all of it, " + Listed(Noises(), "or") + "; " + found.noise +
                       " if nothing is said")
        ->type_name("WHAT")
        ->transform(OneOf(Noises(), Listed(Noises(), "and")));
    app.add_option("--size", options.size,
                   "What the sound file for the PC-1600 may take, also in K of 1024; " + std::to_string(options.size) +
                       " if nothing is said")
        ->type_name("BYTES")
        ->transform(command::WholeNumber(kSmallestSize, machine::kLargestSize))
        ->transform(Kilobytes()); // the last one comes first
    app.add_option("--from", options.part.from, "Leave out what is before")->type_name("TIME")->transform(Time());
    auto* const to = app.add_option("--to", found.to, "Leave out what is behind")->type_name("TIME")->transform(Time());
    app.add_option("--length", options.part.length, "Take no more than this, instead of --to")
        ->type_name("TIME")
        ->transform(Time())
        ->excludes(to);
    app.add_option("--rate", found.rate,
                   "Of the recording, " + Listed(rates, "or") + "; " + found.rate + " if nothing is said")
        ->type_name("HERTZ")
        ->transform(OneOf(rates, "the rates that the machine knows"));
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
        if (found.to) options.part.length = std::max(0.0, *found.to - options.part.from);
        if (found.to && options.part.length == 0.0) throw CLI::ValidationError("--to", "nothing is left");
        if (options.part.length == 0.0) throw CLI::ValidationError("--length", "nothing is left");
    };
    if (auto ending = command::Parse(app, std::move(arguments), check)) return std::move(*ending);
    for (const auto& input : found.inputs)
        options.inputs.push_back(command::PathOf(input));
    options.output = command::PathOf(found.output);
    options.kind = *std::ranges::find(kKinds, found.kind, NameOf);
    options.noise = found.noise == Noises().front() ? Noise::TakenOut : Noise::Kept;
    options.playback.rate = *std::ranges::find(machine::kSampleRates, found.rate, kHertz);
    return options;
}

} // namespace prepare
