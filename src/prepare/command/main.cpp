#include "command/Bar.h"
#include "command/Messages.h"
#include "command/Terminal.h"
#include "core/RecordingBytes.h"
#include "core/SoundFileHeader.h"
#include "files/Files.h"
#include "prepare/command/Answer.h"
#include "prepare/command/Options.h"

#include <cstdlib>
#include <exception>
#include <iostream>

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

/// Why there is no answer: English, to be shown behind the file's name.
struct Failure {
    std::string reason;
};

/// The answer to `input`, once its recording is at `output`.
std::variant<std::string, Failure> AnswerTo(const fs::path& input, const fs::path& output, const Options& options)
{
    const auto existing = options.force ? files::Existing::Replace : files::Existing::Refuse;
    std::error_code error;
    if (!options.force && fs::exists(fs::symlink_status(output, error))) // asked again when it is written
        throw files::IOException(files::IOException::Kind::Exists, output);

    command::Bar bar;
    const core::Progress progress([&](double done) { return bar.Show(done), true; });
    auto read = sound::ReadSound(input, options.part, MostSeconds(options.playback), progress.Stage(0, 0.1));
    if (const auto* const refusal = std::get_if<sound::Refusal>(&read)) return Failure{Reason(*refusal)};
    const auto room = static_cast<std::size_t>(options.size - core::kTokensPC1600 - 1); // the end mark
    const Job job{.recording = std::move(std::get<sound::Recording>(read)),
                  .kind = options.kind,
                  .limits = {.playback = options.playback, .runBytes = room}};
    const auto made = Prepare(job, progress.Stage(0.1, 1));
    if (const auto* const refusal = std::get_if<Refusal>(&made)) return Failure{Reason(*refusal, options)};
    const auto& prepared = std::get<Prepared>(made);
    const auto bytes = core::RecordingBytes(prepared.runBytes, options.playback.rate);
    files::Write(
        output, existing, [&](const files::ByteSink& sink) { sink(bytes); }, options.inputs);
    return Answer(input, output, options, job.recording, prepared);
}

/// False where `input` couldn't be prepared: the user has been told.
bool IsPrepared(const fs::path& input, const Options& options)
{
    const auto text = input.u8string();
    const std::string name(text.begin(), text.end());
    try {
        const auto answer = AnswerTo(input, options.output.empty() ? OutputBeside(input) : options.output, options);
        const auto* const failure = std::get_if<Failure>(&answer);
        if (failure == nullptr)
            command::Show(std::get<std::string>(answer));
        else
            command::Complain(kProgram, name, failure->reason);
        return failure == nullptr;
    } catch (const std::exception& failure) {
        command::Complain(kProgram, name, failure);
        return false;
    }
}

int Run(std::vector<std::string> arguments)
{
    command::SetUpTerminal();
    const auto parsed = ParseOptions(std::move(arguments));
    if (const auto* const ending = std::get_if<command::Ending>(&parsed)) return command::Show(*ending);
    const auto& options = std::get<Options>(parsed);
    bool areAllPrepared = true;
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
