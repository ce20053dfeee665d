// Any file, name, target and typed address: each ends in one refusal, or in a file that keeps the rules of its format.
// Input: a byte of switches; the file's name up to a line end; the typed address up to a line end; the file.
#include "App.h"
#include "Application.h"
#include "FakeDialogs.h"
#include "Files.h"
#include "KnownFile.h"

#include <QCoreApplication>

#include <fstream>
#include <iostream>
#include <iterator>
#include <numeric>

#include <cstdlib>

namespace {

enum Switch : unsigned { kPokEmul = 1, kListing = 2, kEnglish = 4, kOversize = 8, kRepeatSamples = 16 };

void Require(bool holds, const char* rule)
{
    if (holds) return;
    std::cerr << "Broken: " << rule << '\n';
    std::abort();
}

std::string TakeLine(std::string& input)
{
    const auto end = input.find('\n');
    auto line = input.substr(0, end);
    input.erase(0, end == std::string::npos ? end : end + 1);
    return line;
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

void RequireFormat(const std::string& saved, const std::string& file, bool pokEmul, unsigned long address)
{
    const std::size_t player = pokEmul ? 0 : 16;
    Require(saved.size() >= player + 115 + 3, "room for header, player, end mark and two zeros");
    const auto runBytes = saved.substr(player + 115, saved.size() - player - 117);
    auto expected = kPlayer;
    expected[73] = file[24] == '\x11' ? 11 : file[24] == '\x40' ? 8 : 6; // the rate's lowest byte
    expected.replace(89, 25, saved.substr(player + 89, 25));             // the name
    const auto word = [](unsigned long n) { return std::string{static_cast<char>(n), static_cast<char>(n >> 8)}; };
    if (!pokEmul)
        expected = Bytes("ff 10 00 00 10") + word(runBytes.size() + 115) + Bytes("00") + word(address) + Bytes("00") +
                   word(address) + Bytes("00 00 0f") + expected;
    Require(saved == expected + runBytes + Bytes("00 00"), "header, player, run bytes, two zeros");
    Require(runBytes.find('\xFF') == runBytes.size() - 1, "one end mark, at the end");
    const auto samples = std::accumulate(runBytes.begin(), runBytes.end() - 1, 0L,
                                         [](auto sum, char c) { return sum + static_cast<unsigned char>(c); });
    Require(samples == LastFall(file), "the periods add up to the last fall");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 1); // NOLINT(concurrency-mt-unsafe)
    static platform::Application application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static FakeDialogs dialogs;
    static App app(dialogs);
    static const auto folder = [] {
        auto name = (std::filesystem::temp_directory_path() / "tonfloss-fuzz-XXXXXX").string();
        return std::filesystem::path(mkdtemp(name.data()));
    }();
    auto& window = app.Window;
    auto& shown = dialogs.shown;
    const auto target = folder / "SOUND";
    dialogs.answer = target;

    std::string file(data, data + size);
    const unsigned switches = file.empty() ? 0 : static_cast<unsigned char>(file.front());
    if (!file.empty()) file.erase(0, 1);
    auto name = "x" + TakeLine(file).substr(0, 200);
    std::erase_if(name, [](char c) { return c == '\0' || c == '/'; });
    const auto typed = TakeLine(file);
    if ((switches & kOversize) != 0) file.resize(500001);
    if ((switches & kRepeatSamples) != 0 && file.size() > 46)
        for (const auto samples = file.substr(44); file.size() + samples.size() < 60000;)
            file += samples;

    shown.clear();
    std::filesystem::remove(target);
    const auto path = folder / name;
    std::ofstream(path, std::ios::binary) << file;
    window.Language = (switches & kEnglish) != 0 ? "eng" : "ger";
    app.MenuBar.OptionDefBWindow.SetHasCheckMark((switches & kListing) != 0);
    const bool pokEmul = (switches & kPokEmul) != 0;
    window.OptionAudioPokEmul_Action();
    if (!pokEmul) window.OptionAudioSharp_Action(); // there and back: no prompt is open

    app.Gate.Run([&] { window.Event_DropObject({platform::FolderItemAt(path)}); });
    const bool accepted = window.TextFieldAudioAdresse.Visible();
    Require(shown.size() == 1 || (accepted && shown.empty()), "one message");
    if (accepted) {
        shown.clear();
        window.TextFieldAudioAdresse.SetText(std::u32string(typed.begin(), typed.end()));
        app.Gate.Run([&] { window.TextFieldAudioAdresse_KeyDown(U"\x0D"); });
        Require(shown.size() == 1, "one message to the address");
        const bool saved = !window.TextFieldAudioAdresse.Visible();
        Require(std::filesystem::exists(target) == saved, "a file, or another try");
        if (saved) {
            std::ifstream stream(target, std::ios::binary);
            RequireFormat({std::istreambuf_iterator<char>(stream), {}}, file, pokEmul, std::stoul(typed, nullptr, 16));
        }
    }
    std::filesystem::remove(path);
    QCoreApplication::processEvents();
    return 0;
}
