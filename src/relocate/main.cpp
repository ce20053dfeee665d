#include "command/CommandLine.h"
#include "command/Names.h"
#include "command/PC1600.h"
#include "files/Files.h"
#include "relocate/Relocate.h"

#include <cstdlib>

namespace {

using namespace relocate;

namespace fs = std::filesystem;

constexpr auto kProgram = "tonfloss-relocate";

struct Options {
    std::string input;
    std::optional<std::int64_t> address; // none: the one in the file's header
    std::string output;                  // empty: a name beside the input
    bool force = false;
};

void Describe(CLI::App& app, Options& options)
{
    app.description(
        "Lay the player of a sound file out for the address that it is loaded at. The window lays it out for "
        "80C5, whatever\naddress is typed.");
    app.footer(
        "The exit status is 0, also where nothing had to be done; 1 if a file can't be read, is no sound file for "
        "the PC-1600 or\ncan't be written; and 2 for wrong usage.");
    app.add_option("SOUND.bin", options.input, "A sound file for the PC-1600")->required()->type_name("");
    command::AddAddress(app, "Load it there, 80C5 to EFFF, in place of the address in the file", options.address);
    command::AddOutput(app, "The new file; else NAME-ADDRESS.bin beside the old one", options.output, options.force);
}

fs::path OutputBeside(const fs::path& input, std::int64_t address)
{
    auto name = input.stem();
    name += '-' + core::AddressText(address);
    name += input.extension();
    return input.parent_path() / name;
}

std::string ReasonOf(const Refusal& refusal, const Options& options)
{
    if (const auto* const noSoundFile = std::get_if<preview::Refusal>(&refusal.why)) return noSoundFile->reason;
    if (const auto* const address = std::get_if<core::AddressRefusal>(&refusal.why))
        return "the address " + core::AddressText(options.address.value()) + core::ReasonOf(*address, refusal.size);
    return "it is a file for PokEmul, which has no address";
}

std::string Answer(const Relocated& relocated, const fs::path& output)
{
    const auto& before = relocated.before;
    return "made: " + command::Shown(output) + "\nbefore: load address " + core::AddressText(*before.loadAddress) +
           ", player laid out for " + core::AddressText(before.playerAddress) + '\n' +
           command::OnThePC1600(relocated.address, core::SizeOf(before));
}

int Relocate(const Options& options)
{
    const auto input = command::PathOf(options.input);
    const auto made = relocate::Relocate(files::ReadBytes(input, preview::kLargestFile + 1), options.address);
    if (const auto* const refusal = std::get_if<Refusal>(&made)) {
        command::Complain(kProgram, input, ReasonOf(*refusal, options));
        return EXIT_FAILURE;
    }
    const auto& relocated = std::get<Relocated>(made);
    const auto output =
        options.output.empty() ? OutputBeside(input, relocated.address) : command::PathOf(options.output);
    if (relocated.WasRight()) {
        command::Show(command::Shown(input) + " is laid out for " + core::AddressText(relocated.address) +
                      " already. Nothing was written.\n");
    } else {
        const auto fileThenAnswer = [&](const files::ByteSink& sink) {
            sink(relocated.bytes);
            command::Show(Answer(relocated, output)); // where it can't be shown, there is no file either
        };
        files::Write(output, options.force ? files::Existing::Replace : files::Existing::Refuse, fileThenAnswer,
                     {input});
    }
    return EXIT_SUCCESS;
}

int Run(std::vector<std::string> arguments)
{
    Options options;
    CLI::App app("", kProgram);
    Describe(app, options);
    const auto ending = command::Parse(app, std::move(arguments));
    return ending ? command::Show(*ending) : Relocate(options);
}

} // namespace

int main(int argc, char* argv[])
{
    return command::Run(kProgram, argc, argv, Run);
}
