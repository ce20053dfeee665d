#include "audio/Player.h"
#include "command/Bar.h"
#include "command/CommandLine.h"
#include "command/Names.h"
#include "files/Files.h"
#include "preview/Report.h"
#include "preview/SoundFile.h"
#include "preview/SquareWave.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <thread>

namespace {

using namespace preview;

constexpr auto kProgram = "tonfloss-preview";
constexpr auto kStandardOutput = "-";

struct Options {
    std::string input;
    std::string output; // empty: only the report
    bool force = false;
    bool play = false;
    int volume = 25;           // percent; a square wave is loud
    std::int64_t rate = 44100; // Hz
    machine::Machine machine;
};

void Describe(CLI::App& app, Options& options)
{
    app.description(
        "Tell how a sound file of Tonfloss will sound on the machine, play it, or write it as a Wave file.");
    app.footer(
        "The report goes to the standard output, or to standard error with \"-o -\".\n"
        "The exit status is 0, 1 if a file can't be read, is no sound file, or can't be written or played, and 2 "
        "for wrong usage.");
    app.add_option("SOUND.bin", options.input, "A sound file that the window has saved")->required()->type_name("");
    command::AddOutput(app, "A Wave file, 16 bits, mono; - is the standard output", options.output, options.force);
    app.add_flag("--play", options.play, "Play it; Ctrl+C ends that");
    app.add_option("--volume", options.volume, "0 to 100: as loud as in the Wave file; 25 if nothing is said")
        ->type_name("PERCENT")
        ->transform(command::WholeNumber(0, 100));
    app.add_option("--rate", options.rate, "Of the Wave file and the playing, 8000 to 192000; 44100 if nothing is said")
        ->type_name("HERTZ")
        ->transform(command::WholeNumber(8000, 192000));
    command::AddMachine(app, options.machine);
}

/// To the end; or the reason why that can't be.
std::string Play(const machine::Performance& performance, const Options& options)
{
    const auto wave = std::make_shared<const SquareWave>(performance, options.machine.clock, options.rate);
    if (wave->SampleCount() == 0) return {};
    audio::Player player(static_cast<int>(options.rate));
    player.Put(0, {.size = wave->SampleCount(), .read = [wave](auto first, auto into) { wave->Read(first, into); }});
    player.SetVolume(options.volume / 100.0);
    player.Play(0);
    command::Bar bar;
    const auto seconds = static_cast<double>(wave->SampleCount()) / static_cast<double>(options.rate);
    auto status = player.Now();
    for (; status.isPlaying; status = player.Now()) {
        bar.Show(std::min(status.place / seconds, 1.0));
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return status.failure;
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
    const auto performance =
        machine::PerformanceOf(sound.runBytes, {.rate = sound.sampleRate, .machine = options.machine});
    const auto wave = [&](const files::ByteSink& sink) {
        WriteWave(performance, options.machine.clock, options.rate, sink);
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
    if (const auto failure = options.play ? Play(performance, options) : ""; !failure.empty()) {
        command::Complain(kProgram, input, "It can't be played: " + failure);
        return EXIT_FAILURE;
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
