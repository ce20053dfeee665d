#include "command/Bar.h"
#include "command/Messages.h"
#include "command/Names.h"
#include "command/Terminal.h"
#include "core/ImageSize.h"
#include "core/PeriodEncoder.h"
#include "core/RecordingBytes.h"
#include "core/SoundFileImage.h"
#include "core/WaveAcceptance.h"
#include "files/Files.h"
#include "prepare/command/Answer.h"
#include "prepare/command/Options.h"

#include <algorithm>
#include <cstdint>
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

core::SoundFile SoundFileOf(const fs::path& input, const Prepared& prepared, const Options& options)
{
    const auto& file = *options.soundFile;
    return {.loadAddress = file.loadAddress,
            .sampleRate = options.playback.rate,
            .title = file.title.value_or(core::TitleOf(command::Composed(command::CharactersOf(input.stem())))),
            .runBytes = prepared.runBytes};
}

constexpr auto kStandardOutput = "-";

fs::path OutputFor(const fs::path& input, const Options& options)
{
    return options.output.empty() ? OutputBeside(input) : options.output;
}

files::Existing ExistingOf(const Options& options)
{
    return options.force ? files::Existing::Replace : files::Existing::Refuse;
}

/// Throws where the recording couldn't be put there, before any work is done.
void RequirePlace(const fs::path& output, const Options& options)
{
    if (output == kStandardOutput) return;
    files::RequireWritable(output, ExistingOf(options), options.inputs);
    std::error_code error;
    if (!options.force && fs::is_symlink(fs::symlink_status(output, error))) // which leads nowhere
        throw files::IOException(files::IOException::Kind::Exists, output);
}

void Deliver(const std::string& made, const std::string& answer, const fs::path& output, const Options& options)
{
    if (output == kStandardOutput) {
        std::cerr << answer;
        return command::Show(made);
    }
    const auto madeThenAnswer = [&](const files::ByteSink& sink) {
        sink(made);
        command::Show(answer); // where it can't be shown, there is no file either
    };
    files::Write(output, ExistingOf(options), madeThenAnswer, options.inputs);
}

/// Makes what is asked for of `input`, puts it where it belongs and tells of it; or the reason why there is none.
std::optional<std::string> MakeOutput(const fs::path& input, const Options& options)
{
    const auto output = OutputFor(input, options);
    RequirePlace(output, options);
    constexpr auto kOneTooMany = static_cast<std::uint64_t>(core::kLargestWaveFile) + 1;
    if (core::IsRecordingOfOurs(files::ReadBytes(input, kOneTooMany)))
        return "This is prepared already: drop it on the window of Tonfloss.";

    command::Bar bar;
    const core::Progress progress([&](double done) { return bar.Show(done), true; });
    auto read = sound::ReadSound(input, options.part, MostSeconds(options.playback), progress.Stage(0, 0.1));
    if (const auto* const refusal = std::get_if<sound::Refusal>(&read)) return Reason(*refusal, options);
    const Job job{.recording = std::move(std::get<sound::Recording>(read)),
                  .kind = options.kind,
                  .noise = options.noise,
                  .limits = {.playback = options.playback, .runBytes = core::RunBytesIn(options.size)}};
    const auto made = Prepare(job, progress.Stage(0.1, 1));
    if (const auto* const refusal = std::get_if<Refusal>(&made)) return Reason(*refusal, options);
    const auto& prepared = std::get<Prepared>(made);
    std::optional<core::SoundFile> file;
    if (options.soundFile) file = SoundFileOf(input, prepared, options);
    const auto bytes =
        file ? std::get<std::string>(core::LaidOutFile(*file)) : RecordingOf(prepared, options.playback.rate);
    const auto answer = Answer({input, output}, options, job.recording, prepared, file);
    bar.End();
    Deliver(bytes, answer, output, options);
    return std::nullopt;
}

/// False where `input` couldn't be prepared: the user has been told.
bool IsPrepared(const fs::path& input, const Options& options)
{
    try {
        const auto reason = MakeOutput(input, options);
        if (reason) command::Complain(kProgram, input, *reason);
        return !reason;
    } catch (const std::exception& failure) {
        command::Complain(kProgram, input, failure);
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
        command::Complain(kProgram, input,
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
    const bool isWrongUsage = std::ranges::any_of(options.inputs, hasTakenName);
    for (const auto& input : options.inputs)
        areAllPrepared = !isWrongUsage && IsPrepared(input, options) && areAllPrepared;
    if (options.waits || command::ClosesWithProgram()) {
        std::cout << "Press Return to close this window." << std::endl;
        std::cin.get();
    }
    if (isWrongUsage) return command::kWrongUsage;
    return areAllPrepared ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int main(int argc, char* argv[])
{
    return command::Run(kProgram, argc, argv, Run);
}
