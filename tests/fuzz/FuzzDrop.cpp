// Any file, name, target and typed address: each ends in one refusal, or in a file that the preview takes and that
// lasts as long as the recording.
// Input: a byte of switches; the file's name up to a line end; the typed address up to a line end; the file.
#include "platform/Application.h"
#include "platform/FolderItem.h"
#include "preview/SoundFile.h"
#include "support/FakeDialogs.h"
#include "support/KnownFile.h"
#include "support/WaveBytes.h"
#include "support/WithBytes.h"
#include "window/App.h"

#include <QCoreApplication>

#include <iostream>
#include <numeric>

namespace {

enum Switch : unsigned { kPokEmul = 1, kListing = 2, kEnglish = 4, kOversize = 8, kRepeatSamples = 16 };

void Require(bool holds, const std::string& rule)
{
    if (holds) return;
    std::cerr << "Broken: " << rule << '\n';
    std::abort();
}

/// How many samples lie up to the last fall through the midline, that one included.
long LastFall(const std::string& file)
{
    long last = 0;
    bool high = false;
    for (std::size_t i = 44; i + 2 < file.size(); ++i) {
        const auto sample = static_cast<unsigned char>(file[i]);
        if (high && sample < 128) last = static_cast<long>(i) - 43;
        if (sample != 128) high = sample > 128;
    }
    return last;
}

void RequireSound(const std::filesystem::path& saved, const std::string& file, std::optional<std::int64_t> address)
{
    const auto parsed = preview::ParseSoundFile(Read(saved));
    const auto* const refusal = std::get_if<preview::Refusal>(&parsed);
    Require(refusal == nullptr, refusal != nullptr ? refusal->reason : "");
    const auto& sound = std::get<preview::SoundFile>(parsed);
    Require(sound.loadAddress == address, "the typed address");
    Require(sound.sampleRate.hertz == (file[24] == '\x11'   ? 11025
                                       : file[24] == '\x40' ? 8000
                                                            : 6000),
            "the file's rate");
    const auto samples = std::accumulate(sound.runBytes.begin(), sound.runBytes.end(), 0L,
                                         [](auto sum, auto byte) { return sum + byte; });
    Require(samples == LastFall(file), "the periods add up to the last fall");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    static platform::Application application((*argv)[0]);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static FakeDialogs dialogs;
    static App app(dialogs);
    static const auto folder = NewFolder();
    auto& window = app.Window;
    auto& shown = dialogs.shown;
    const auto target = folder / "SOUND";
    dialogs.answer = target;

    std::istringstream input(std::string(data, data + size));
    const unsigned switches = size == 0 ? 0 : static_cast<unsigned>(input.get());
    std::string name;
    std::string typed;
    std::getline(input, name);
    std::getline(input, typed);
    std::string file(std::istreambuf_iterator<char>(input), {});
    std::erase_if(name, [](char c) { return c == '\0' || c == '/'; });
    if ((switches & kOversize) != 0) file.resize(500001);
    if ((switches & kRepeatSamples) != 0 && file.size() > 46)
        file += Times(60000 / (file.size() - 44), file.substr(44));

    shown.clear();
    std::filesystem::remove(target);
    const auto path = folder / ("x" + name.substr(0, 200));
    std::ofstream(path, std::ios::binary) << file;
    window.Language = (switches & kEnglish) != 0 ? "eng" : "ger";
    app.MenuBar.OptionDefBWindow.SetHasCheckMark((switches & kListing) != 0);
    const bool pokEmul = (switches & kPokEmul) != 0;
    window.OptionAudioSharp_Action();
    window.OptionAudioPokEmul_Action();
    if (!pokEmul) window.OptionAudioSharp_Action(); // there and back: no prompt is open

    app.Gate.Run([&] { window.Event_DropObject(WithBytes({platform::FolderItemAt(path)})); });
    const bool accepted = window.TextFieldAudioAdresse.Visible();
    Require(shown.size() == 1 || (accepted && shown.empty()), "one message");
    if (accepted) {
        shown.clear();
        window.TextFieldAudioAdresse.SetText(std::u32string(typed.begin(), typed.end()));
        app.Gate.Run([&] { window.TextFieldAudioAdresse_KeyDown(U"\x0D"); });
        Require(shown.size() == 1, "one message to the address");
        const bool saved = !window.TextFieldAudioAdresse.Visible();
        Require(std::filesystem::exists(target) == saved, "a file, or another try");
        if (saved) RequireSound(target, file, pokEmul ? std::nullopt : std::optional(std::stol(typed, nullptr, 16)));
    }
    std::filesystem::remove(path);
    QCoreApplication::processEvents();
    return 0;
}
