// Any file, name, target and typed address: each ends in one refusal, or in a file that keeps the rules of its format.
// Input: a byte of switches; the file's name up to a line end; the typed address up to a line end; the file.
#include "App.h"
#include "Application.h"
#include "FakeDialogs.h"
#include "Files.h"
#include "KnownFile.h"
#include "Window1.h"

#include <QCoreApplication>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <numeric>

namespace {

enum Switch : unsigned { kPokEmul = 1, kListing = 2, kEnglish = 4, kOversize = 8, kRepeatSamples = 16 };

void Require(bool holds, const char* rule)
{
    if (holds) return;
    std::cerr << "Broken: " << rule << '\n';
    std::abort();
}

struct Program {
    FakeDialogs dialogs;
    platform::EventGate gate{dialogs};
    MainMenuBar menuBar{gate};
    Window1 window{gate, menuBar, dialogs};
    std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("tonfloss-fuzz-" + std::to_string(std::rand()));
    std::filesystem::path target = folder / "saved" / "SOUND";

    Program()
    {
        std::filesystem::create_directories(target.parent_path());
        App().Event_Open(window, menuBar);
        dialogs.answer = target;
    }
};

std::string TakeLine(std::string& input)
{
    const auto end = input.find('\n');
    auto line = input.substr(0, end);
    input.erase(0, end == std::string::npos ? end : end + 1);
    return line;
}

std::uint32_t Number(const std::string& bytes, std::size_t offset, std::size_t count)
{
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < count && offset + i < bytes.size(); ++i)
        number |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[offset + i])) << (8 * i);
    return number;
}

bool ShouldBeRefused(const std::string& file)
{
    const auto rate = Number(file, 24, 4);
    return file.size() > 500000 || Number(file, 20, 2) != 1 || Number(file, 22, 2) != 1 ||
           (rate != 6000 && rate != 8000 && rate != 11025) || Number(file, 34, 2) != 8;
}

/// How many samples lie up to the last fall through the midline, that one included.
std::size_t LastFall(const std::string& file)
{
    std::size_t last = 0;
    bool high = false;
    for (std::size_t i = 44; i + 2 < file.size(); ++i) {
        const auto sample = static_cast<unsigned char>(file[i]);
        if (high && sample < 128) last = i - 43;
        if (sample != 128) high = sample > 128;
    }
    return last;
}

void RequireFormat(const std::string& saved, const std::string& file, bool pokEmul, std::uint32_t address)
{
    const std::size_t player = pokEmul ? 0 : 16;
    Require(saved.size() >= player + 115 + 3, "room for header, player, end mark and two zeros");
    const auto runBytes = saved.substr(player + 115, saved.size() - player - 117);
    Require(saved.substr(saved.size() - 3) == Bytes("ff 00 00"), "FF 00 00 at the end");
    Require(runBytes.find('\xFF') == runBytes.size() - 1, "no end mark before the end");
    auto expected = kPlayer;
    expected.replace(73, 1, 1, static_cast<char>(Number(file, 24, 4) / 1000));
    expected.replace(89, 25, saved.substr(player + 89, 25)); // the name
    Require(saved.substr(player, 115) == expected, "the player is the template but for rate and name");
    if (!pokEmul) {
        Require(Number(saved, 5, 2) == runBytes.size() + 115, "program length");
        Require(Number(saved, 8, 2) == address && Number(saved, 11, 2) == address, "load and start address");
        Require(saved.substr(0, 5) == kFileHeader.substr(0, 5) && saved[7] == 0 && saved[10] == 0 &&
                    saved.substr(13, 3) == kFileHeader.substr(13),
                "constants of the file header");
    }
    const auto samples = std::accumulate(runBytes.begin(), runBytes.end() - 1, std::size_t{0},
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
    static Program program;
    auto& window = program.window;
    auto& shown = program.dialogs.shown;
    const auto& target = program.target;
    std::string file(data, data + size);
    const unsigned switches = file.empty() ? 0 : static_cast<unsigned char>(file.front());
    if (!file.empty()) file.erase(0, 1);
    auto name = TakeLine(file).substr(0, 200);
    std::erase_if(name, [](char c) { return c == '\0' || c == '/'; });
    if (name.empty() || name == "." || name == ".." || name == "saved") name = "x";
    const auto typed = TakeLine(file);
    if ((switches & kOversize) != 0) file.resize(500001);
    if ((switches & kRepeatSamples) != 0 && file.size() > 46)
        for (const auto samples = file.substr(44); file.size() + samples.size() < 60000;)
            file += samples;

    shown.clear();
    std::filesystem::remove(target);
    const auto path = program.folder / name;
    std::ofstream(path, std::ios::binary) << file;
    window.TextFieldAudioAdresse.SetVisible(false);
    window.Language = (switches & kEnglish) != 0 ? "eng" : "ger";
    program.menuBar.OptionDefBWindow.SetHasCheckMark((switches & kListing) != 0);
    const bool pokEmul = (switches & kPokEmul) != 0;
    if (pokEmul)
        window.OptionAudioPokEmul_Action();
    else
        window.OptionAudioSharp_Action();

    program.gate.Run([&] { window.Event_DropObject({platform::FolderItemAt(path)}); });
    const bool accepted = window.TextFieldAudioAdresse.Visible();
    const bool imageTooLarge = window.Title().empty();
    Require(accepted != (ShouldBeRefused(file) || imageTooLarge), "refused by the rules, or accepted");
    Require(shown.size() == 1 || (accepted && shown.empty()), "one message");
    if (accepted) {
        shown.clear();
        window.TextFieldAudioAdresse.SetText(std::u32string(typed.begin(), typed.end()));
        program.gate.Run([&] { window.TextFieldAudioAdresse_KeyDown(U"\x0D"); });
        Require(shown.size() == 1, "one message to the address");
        const bool saved = !window.TextFieldAudioAdresse.Visible();
        Require(std::filesystem::exists(target) == saved, "a file, or another try");
        if (saved) {
            std::ifstream stream(target, std::ios::binary);
            RequireFormat({std::istreambuf_iterator<char>(stream), {}}, file, pokEmul,
                          static_cast<std::uint32_t>(std::stoul(typed, nullptr, 16)));
        }
    }
    std::filesystem::remove(path);
    QCoreApplication::processEvents();
    return 0;
}
