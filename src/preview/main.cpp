#include "command/CommandLine.h"
#include "command/Names.h"
#include "files/Files.h"
#include "preview/Report.h"
#include "preview/SoundFile.h"
#include "preview/SquareWave.h"

#include <cstdlib>
#include <iostream>

namespace {

using namespace preview;

constexpr auto kProgram = "tonfloss-preview";
constexpr auto kStandardOutput = "-";

struct Options {
    std::string input;
    std::string output; // empty: only the report
    bool force = false;
    std::int64_t rate = 44100; // Hz
    machine::Machine machine;
};

void Describe(CLI::App& app, Options& options)
{
    app.description("Tell how a sound file of Tonfloss will sound on the machine, or write it as a Wave file.");
    app.footer("The report goes to the standard output, or to standard error with \"-o -\".\n"
               "The exit status is 0, 1 if a file can't be read, is no sound file or can't be written, and 2 for wrong "
               "usage.");
    app.add_option("SOUND.bin", options.input, "A sound file that the window has saved")->required()->type_name("");
    command::AddOutput(app, "A Wave file, 16 bits, mono; - is the standard output", options.output, options.force);
    app.add_option("--rate", options.rate, "Of the Wave file, 8000 to 192000; 44100 if nothing is said")
        ->type_name("HERTZ")
        ->transform(command::WholeNumber(8000, 192000));
    command::AddMachine(app, options.machine);
}

int Preview(const Options& options)
{
    const auto input = command::PathOf(options.input);
    const auto parsed = ParseSoundFile(files::ReadBytes(input, kLargestFile + 1));
    if (const auto* const refusal = std::get_if<Refusal>(&parsed)) {
        command::Complain(kProgram, input, refusal->reason);
        return EXIT_FAILURE;
    }
    const auto& sound = std::get<SoundFile>(parsed);
    for (const auto& warning : WarningsOf(sound))
        command::Complain(kProgram, input, "warning: " + warning);
    const auto report = ReportOn(sound, options.machine);
    const auto wave = [&](const files::ByteSink& sink) {
        WriteWave(machine::PerformanceOf(sound.runBytes, {.rate = sound.sampleRate, .machine = options.machine}),
                  options.machine.clock, options.rate, sink);
    };
    if (options.output == kStandardOutput) {
        std::cerr << report;
        files::WriteStandardOutput(wave);
    } else if (options.output.empty()) {
        command::Show(report);
    } else {
        const auto waveThenReport = [&](const files::ByteSink& sink) {
            wave(sink);
            command::Show(report); // where it can't be shown, there is no file either
        };
        files::Write(command::PathOf(options.output),
                     options.force ? files::Existing::Replace : files::Existing::Refuse, waveThenReport, {input});
    }
    return EXIT_SUCCESS;
}

int Run(std::vector<std::string> arguments)
{
    Options options;
    CLI::App app("", kProgram);
    Describe(app, options);
    const auto ending = command::Parse(app, std::move(arguments));
    return ending ? command::Show(*ending) : Preview(options);
}

} // namespace

int main(int argc, char* argv[])
{
    return command::Run(kProgram, argc, argv, Run);
}
