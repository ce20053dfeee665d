#include "prepare/command/Options.h"

#include "command/CommandLine.h"
#include "command/Names.h"
#include "core/ImageSize.h"
#include "core/LoadAddress.h"
#include "core/TimeText.h"
#include "core/Title.h"

#include <algorithm>

namespace prepare {
namespace {

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

std::vector<std::string> Targets()
{
    return {"pc1600", "pokemul"};
}

const auto kHertz = [](const machine::SampleRate& rate) { return std::to_string(rate.hertz); };

/// What the library leaves as text, until all has been found.
struct Found {
    std::vector<std::string> inputs;
    std::string output;
    std::string kind{NameOf(Options().kind)};
    std::string noise{Noises().front()};
    std::optional<double> to; // seconds
    std::optional<std::string> target;
    std::optional<std::int64_t> address;
    std::optional<std::string> title;
    std::optional<std::int64_t> size; // bytes
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
    command::AddOutput(app,
                       "The recording; else NAME-ready.wav beside the sound file. A name that ends with .bin: the file "
                       "for the machine",
                       found.output, options.force);
    app.add_option("--for", found.kind,
                   Listed(Texts(kKinds, Explained), "or") + "; " + found.kind + " if nothing is said")
        ->type_name("KIND")
        ->transform(OneOf(kinds, Listed(kinds, "and")));
    app.add_option("--noise", found.noise,
                   "What becomes of noise that goes through all of it, " + Listed(Noises(), "or") + "; " + found.noise +
                       " if nothing is said")
        ->type_name("WHAT")
        ->transform(OneOf(Noises(), Listed(Noises(), "and")));
    app.add_option("--size", found.size,
                   "What the sound file for the PC-1600 may take, also in K of 1024; " + std::to_string(options.size) +
                       ", or what --address leaves, if nothing is said")
        ->type_name("BYTES")
        ->transform(command::WholeNumber(core::kSmallestSize, machine::kLargestSize))
        ->transform(Kilobytes()); // the last one comes first
    app.add_option("--target", found.target,
                   "Of a file for the machine, " + Listed(Targets(), "or") + "; " + Targets().front() +
                       " if nothing is said")
        ->type_name("TARGET")
        ->transform(OneOf(Targets(), Listed(Targets(), "and")));
    command::AddAddress(app,
                        "Of a file for the PC-1600, where it is loaded and started, " +
                            core::AddressText(machine::kLowestWithoutExtension) +
                            " or more without the 32 KB module; " + core::AddressText(machine::kLowestAddress) +
                            " if nothing is said",
                        found.address);
    app.add_option("--title", found.title,
                   "Of a file for the machine, at most 25 characters of Latin-1; else the sound file's name")
        ->type_name("TEXT");
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

/// Throws for options that don't go together with it.
std::optional<SoundFileOptions> SoundFileFor(const Found& found)
{
    if (!CLI::detail::to_lower(found.output).ends_with(".bin")) {
        for (const auto& [option, isSaid] : {std::pair("--target", found.target.has_value()),
                                             {"--address", found.address.has_value()},
                                             {"--title", found.title.has_value()}})
            if (isSaid) throw CLI::ValidationError(option, "it is for -o with a name that ends with .bin");
        return std::nullopt;
    }
    SoundFileOptions made;
    if (found.target.value_or(Targets().front()) == Targets().front())
        made.loadAddress = found.address.value_or(machine::kLowestAddress);
    else if (found.address)
        throw CLI::ValidationError("--address", "a file for PokEmul has none");
    if (!found.title) return made;
    made.title = command::TextOf(*found.title);
    if (const auto refusal = core::RefusalOfTitle(*made.title))
        throw CLI::ValidationError("--title", *refusal == core::TitleRefusal::TooLong
                                                  ? std::to_string(made.title->size()) +
                                                        " characters, and the machine shows 25 at most"
                                                  : "it has a character beyond Latin-1");
    return made;
}

/// The most that may be taken. Throws where that has no room.
std::int64_t SizeFor(const Found& found)
{
    const auto address = found.address.value_or(machine::kLowestAddress);
    const auto size = found.size.value_or(machine::RoomAt(address));
    if (const auto refusal = core::RefusalOf(address, size))
        throw CLI::ValidationError("--address", core::AddressText(address) + core::ReasonOf(*refusal, size));
    return size;
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
        options.soundFile = SoundFileFor(found);
        options.size = SizeFor(found);
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
