#include "command/Bar.h"
#include "command/Messages.h"
#include "command/Names.h"
#include "command/Terminal.h"
#include "core/PeriodEncoder.h"
#include "core/RecordingBytes.h"
#include "core/SoundFileHeader.h"
#include "core/WaveAcceptance.h"
#include "files/Files.h"
#include "prepare/command/Answer.h"
#include "prepare/command/Options.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <optional>
#include <stdexcept>

namespace {

using namespace prepare;

namespace fs = std::filesystem;

constexpr auto kProgram = "tonfloss-prepare";

fs::path OutputBeside(const fs::path& input)
{
    auto name = input.stem();
    name += "-ready.wav";
    return input.parent_path() / name;
}

/// The recording, which is seen to lead to the periods that are told.
std::string RecordingOf(const Prepared& prepared, const machine::SampleRate& rate)
{
    auto bytes = core::RecordingBytes(prepared.runBytes, rate);
    core::BackgroundTask yield([] {});
    if (core::EncodePeriods(core::SampleBytes(bytes), yield).runBytes != prepared.runBytes)
        throw std::logic_error("No recording leads to these periods.");
    return bytes;
}

/// Why there is no answer: English, to be shown behind the file's name.
struct Failure {
    std::string reason;
};

constexpr auto kStandardOutput = "-";

fs::path OutputFor(const fs::path& input, const Options& options)
{
    return options.output.empty() ? OutputBeside(input) : options.output;
}

/// What becomes of `input`: the answer, once the recording is where it belongs and somebody has seen it.
std::optional<Failure> MakeRecording(const fs::path& input, const Options& options)
{
    const auto output = OutputFor(input, options);
    const auto isStream = options.output == kStandardOutput;
    const auto existing = options.force ? files::Existing::Replace : files::Existing::Refuse;
    if (!isStream) files::RequireWritable(output, existing, options.inputs);
    std::error_code error;
    if (!isStream && !options.force && fs::is_symlink(fs::symlink_status(output, error))) // which leads nowhere
        throw files::IOException(files::IOException::Kind::Exists, output);
    if (core::IsRecordingOfOurs(files::ReadBytes(input, core::kLargestWaveFile + 1)))
        return Failure{"This is prepared already: drop it on the window of Tonfloss."};

    command::Bar bar;
    const core::Progress progress([&](double done) { return bar.Show(done), true; });
    auto read = sound::ReadSound(input, options.part, MostSeconds(options.playback), progress.Stage(0, 0.1));
    if (const auto* const refusal = std::get_if<sound::Refusal>(&read)) return Failure{Reason(*refusal, options)};
    const auto room = static_cast<std::size_t>(options.size - core::kTokensPC1600 - 1); // the end mark
    const Job job{.recording = std::move(std::get<sound::Recording>(read)),
                  .kind = options.kind,
                  .noise = options.noise,
                  .limits = {.playback = options.playback, .runBytes = room}};
    const auto made = Prepare(job, progress.Stage(0.1, 1));
    if (const auto* const refusal = std::get_if<Refusal>(&made)) return Failure{Reason(*refusal, options)};
    const auto& prepared = std::get<Prepared>(made);
    const auto bytes = RecordingOf(prepared, options.playback.rate);
    const auto answer = Answer(input, output, options, job.recording, prepared);
    bar.End();
    if (isStream) {
        std::cerr << answer;
        command::Show(bytes);
        return std::nullopt;
    }
    const auto recordingThenAnswer = [&](const files::ByteSink& sink) {
        sink(bytes);
        command::Show(answer); // where it can't be shown, there is no file either
    };
    files::Write(output, existing, recordingThenAnswer, options.inputs);
    return std::nullopt;
}

/// False where `input` couldn't be prepared: the user has been told.
bool IsPrepared(const fs::path& input, const Options& options)
{
    const auto text = input.u8string();
    const std::string name(text.begin(), text.end());
    try {
        const auto failure = MakeRecording(input, options);
        if (failure) command::Complain(kProgram, name, failure->reason);
        return !failure;
    } catch (const std::exception& failure) {
        command::Complain(kProgram, name, failure);
        return false;
    }
}

/// A file whose recording would have the name of another one's. Then the user has been told.
bool HasTakenName(const fs::path& input, const Options& options)
{
    std::error_code error;
    const auto nameOf = [&](const fs::path& file) {
        return fs::weakly_canonical(fs::absolute(OutputFor(file, options)), error);
    };
    for (const auto& other : options.inputs) {
        if (&other == &input) return false;
        if (nameOf(other) != nameOf(input)) continue;
        command::Complain(kProgram, command::Shown(input),
                          "Its recording would have the same name as that of " + command::Shown(other) +
                              ". Prepare each by itself, with -o.");
        return true;
    }
    return false;
}

/// Then the user has been told.
bool IsMissing(const fs::path& input)
{
    std::error_code error;
    if (fs::exists(fs::status(input, error))) return false;
    command::Complain(kProgram, "", files::IOException(files::IOException::Kind::System, input, error));
    return true;
}

int Run(std::vector<std::string> arguments)
{
    command::SetUpTerminal();
    const auto parsed = ParseOptions(std::move(arguments));
    if (const auto* const ending = std::get_if<command::Ending>(&parsed)) return command::Show(*ending);
    auto options = std::get<Options>(parsed);
    // Before any work: later one may be there that was made by it.
    bool areAllPrepared = std::erase_if(options.inputs, IsMissing) == 0;
    const auto hasTakenName = [&](const auto& input) { return HasTakenName(input, options); };
    if (std::ranges::any_of(options.inputs, hasTakenName)) return command::kWrongUsage;
    for (const auto& input : options.inputs)
        areAllPrepared = IsPrepared(input, options) && areAllPrepared;
    if (options.waits || command::ClosesWithProgram()) {
        std::cout << "Press Return to close this window." << std::endl;
        std::cin.get();
    }
    return areAllPrepared ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int main(int argc, char* argv[])
{
    return command::Run(kProgram, argc, argv, Run);
}
