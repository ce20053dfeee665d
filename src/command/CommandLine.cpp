#include "command/CommandLine.h"

#include "command/Names.h"
#include "core/ImageSize.h"
#include "core/LoadAddress.h"

#include <algorithm>
#include <charconv>
#include <sstream>

namespace command {
namespace {

constexpr std::string_view kHere = "./";

/// Whether the library would take a value apart that is a file's name or a title: [a,b] for two, and ++ for nothing.
bool IsTakenApart(std::string_view value)
{
    while (value.starts_with(kHere)) // which may be one of ours
        value.remove_prefix(kHere.size());
    return value.starts_with('[') || value == "++";
}

/// A name means the same file behind it; TextOf takes it away again.
void KeepWhole(std::string& argument)
{
    const auto value = argument.starts_with("--") ? argument.find('=') + 1 : 0; // 0, too, where there is none
    if (IsTakenApart(std::string_view(argument).substr(value))) argument.insert(value, kHere);
}

} // namespace

CLI::Validator WholeNumber(std::int64_t least, std::int64_t most)
{
    return {[=](std::string& text) -> std::string {
                std::int64_t number = 0;
                const auto* const end = text.data() + text.size();
                const auto [rest, error] = std::from_chars(text.data(), end, number);
                if (error != std::errc() || rest != end || number < least || number > most)
                    return text + " is no whole number from " + std::to_string(least) + " to " + std::to_string(most);
                text = std::to_string(number); // the library would take 010 for 8
                return {};
            },
            ""};
}

std::u32string TextOf(std::string_view value)
{
    if (IsTakenApart(value)) value.remove_prefix(kHere.size());
    return Composed(CharactersOf(PathOf(value)));
}

void AddOutput(CLI::App& app, const std::string& description, std::string& output, bool& force)
{
    const auto refusal = [](const std::string& name) { return std::string(name.empty() ? "the name is empty" : ""); };
    app.add_option("-o,--output", output, description)->type_name("FILE")->check(refusal);
    app.add_flag("--force", force, "Replace it if it exists");
}

void AddAddress(CLI::App& app, const std::string& description, std::optional<std::int64_t>& address)
{
    const CLI::Validator isAddress(
        [](std::string& text) -> std::string {
            const auto found = core::LoadAddressOf(CharactersOf(PathOf(text)), core::kSmallestSize);
            if (const auto* const refusal = std::get_if<core::AddressRefusal>(&found))
                return text + core::ReasonOf(*refusal, core::kSmallestSize);
            text = std::to_string(std::get<std::int64_t>(found));
            return {};
        },
        "");
    app.add_option("--address", address, description)->type_name("HEX")->transform(isAddress);
}

void AddMachine(CLI::App& app, machine::Machine& machine)
{
    // From 1 MHz on the longest sound stays below the 4 GiB of a Wave file.
    app.add_option("--clock", machine.clock, "Of the machine's Z80, 1000000 to 20000000; 3580000 if nothing is said")
        ->type_name("HERTZ")
        ->transform(WholeNumber(1'000'000, 20'000'000));
    app.add_option("--waits", machine.waits, "Cycles that it waits at each opcode fetch; 1 if nothing is said")
        ->type_name("0|1")
        ->transform(WholeNumber(0, 1));
}

std::optional<Ending> Parse(CLI::App& app, std::vector<std::string> arguments, const std::function<void()>& check)
{
    app.allow_windows_style_options(false); // a path may begin with a slash
    app.set_help_flag("--help", "Show this and end");
    app.set_version_flag("--version", app.get_name() + " " TONFLOSS_VERSION, "Show the version and end");
    std::ranges::for_each(arguments, KeepWhole);
    std::ranges::reverse(arguments);
    try {
        app.parse(std::move(arguments));
        check();
        return std::nullopt;
    } catch (const CLI::ParseError& end) {
        std::ostringstream shown;
        if (app.exit(end, shown, shown) == 0) return Ending{shown.str(), 0};
        return Ending{app.get_name() + ": " + end.what() + "\nTry '" + app.get_name() + " --help'.\n", kWrongUsage};
    }
}

} // namespace command
