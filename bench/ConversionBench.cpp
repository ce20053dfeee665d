// What a drop and a save cost, as ratios to the least that anyone could do, all in one run.
#include "App.h"
#include "Application.h"
#include "FakeDialogs.h"
#include "Files.h"
#include "PeriodEncoder.h"
#include "Signals.h"
#include "Window1.h"

#include <QFile>
#include <QPlainTextEdit>
#include <QSaveFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>

namespace {

/// The least that a conversion has to do: one pass over the samples that finds the falls and writes nothing.
std::int64_t CountFalls(std::string_view samples)
{
    std::int64_t falls = 0;
    bool high = false;
    for (const char c : samples) {
        const auto sample = static_cast<unsigned char>(c);
        if (high && sample < 128) {
            ++falls;
            high = false;
        } else if (sample > 128) {
            high = true;
        }
    }
    return falls;
}

struct Program {
    FakeDialogs dialogs;
    platform::EventGate gate{dialogs};
    MainMenuBar menuBar{gate};
    Window1 window{gate, menuBar, dialogs};
    QTemporaryDir folder;

    Program()
    {
        App().Event_Open(window, menuBar);
        window.Show();
        dialogs.answer = folder.filePath("SOUND").toStdString();
    }

    platform::DragItem Item(const std::string& file) const
    {
        const auto path = folder.filePath("signal.wav").toStdString();
        std::ofstream(path, std::ios::binary) << file;
        return {platform::FolderItemAt(path)};
    }

    void Drop(const platform::DragItem& item)
    {
        dialogs.shown.clear();
        gate.Run([&] { window.Event_DropObject(item); });
    }
};

void Floor(benchmark::State& state, const std::string& file)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(CountFalls(std::string_view(file).substr(44)));
}

void Encode(benchmark::State& state, const std::string& file, bool listing)
{
    conversion::Yield yield([] {});
    std::string tokens;
    for (auto _ : state) {
        std::string text;
        std::int64_t count = 0;
        tokens = {};
        const conversion::ListingSink flush = [&](std::string_view line) { (text += line) += '\r'; };
        conversion::EncodePeriods(std::string_view(file).substr(44), tokens, count,
                                  listing ? flush : conversion::ListingSink(), yield);
        benchmark::DoNotOptimize(text.data());
    }
}

void Drop(benchmark::State& state, const std::string& file, bool listing)
{
    Program program;
    program.menuBar.OptionDefBWindow.SetHasCheckMark(listing);
    const auto item = program.Item(file);
    for (auto _ : state)
        program.Drop(item);
}

/// Reads the file, finds the falls, and shows the text that the drop shows.
void DropReference(benchmark::State& state, const std::string& file, bool listing)
{
    const Program program;
    const auto item = program.Item(file);
    std::string text;
    if (listing) {
        conversion::Yield yield([] {});
        std::string tokens;
        std::int64_t count = 0;
        conversion::EncodePeriods(
            std::string_view(file).substr(44), tokens, count, [&](std::string_view line) { (text += line) += '\r'; },
            yield);
    }
    QPlainTextEdit area;
    for (auto _ : state) {
        QFile source(QString::fromStdString(item.FolderItem->NativePath));
        if (!source.open(QIODevice::ReadOnly)) state.SkipWithError("no file");
        const auto bytes = source.readAll();
        benchmark::DoNotOptimize(CountFalls({bytes.constData(), static_cast<std::size_t>(bytes.size())}));
        area.setPlainText(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    }
}

constexpr std::size_t kLargest = 28343; // run bytes that fit between 80C5 and EFFF

void Save(benchmark::State& state)
{
    Program program;
    program.Drop(program.Item(WaveBytes().samples(Tone(2, kLargest))));
    for (auto _ : state) {
        program.window.BinStringPC1600.clear();
        program.window.TextFieldAudioAdresse.SetVisible(true);
        program.window.TextFieldAudioAdresse.SetText(U"80C5");
        program.gate.Run([&] { program.window.TextFieldAudioAdresse_KeyDown(U"\x0D"); });
    }
    if (program.dialogs.shown.back() != "PC-1600 Soundfile erfogreich erstellt !") state.SkipWithError("not saved");
}

void SaveReference(benchmark::State& state)
{
    const QTemporaryDir folder;
    const QByteArray bytes(kLargest + 133, '\x08');
    for (auto _ : state) {
        QSaveFile file(folder.filePath("SOUND"));
        if (!file.open(QIODevice::WriteOnly)) state.SkipWithError("no file");
        file.write(bytes);
        if (!file.flush() || !file.commit()) state.SkipWithError("not saved");
    }
}

/// Keeps the best of each benchmark's repetitions, in milliseconds: whatever else the machine does only adds to it.
class Best : public benchmark::BenchmarkReporter {
public:
    std::map<std::string, double> milliseconds;
    bool failed = false;

    bool ReportContext(const Context& /*context*/) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const auto& run : runs) {
            failed |= run.error_occurred;
            if (run.run_type != Run::RT_Iteration) continue;
            const auto time = run.GetAdjustedRealTime() / 1e6;
            auto& best = milliseconds.try_emplace(run.run_name.function_name, time).first->second;
            best = std::min(best, time);
        }
    }
};

void Print(const Best& best)
{
    const auto at = [&](const std::string& name) { return best.milliseconds.at(name); };
    std::puts("                                 ms   times the reference   twice the input");
    for (const auto& signal : kSignals) {
        const std::string name = signal.name;
        for (const auto& [row, reference] : std::initializer_list<std::pair<std::string, std::string>>{
                 {"floor", "floor"},
                 {"encode", "floor"},
                 {"encode, listing", "floor"},
                 {"drop", "drop reference"},
                 {"drop, listing", "drop reference, listing"},
             }) {
            const double whole = at(name + ": " + row);
            std::printf("%-26s %8.3f %12.2f %19.2f\n", (name + ": " + row).c_str(), whole,
                        whole / at(name + ": " + reference), whole / at(name + ": " + row + ", half"));
        }
    }
    std::printf("%-26s %8.3f %12.2f\n", "save", at("save"), at("save") / at("save reference"));
}

} // namespace

int main(int argc, char** argv)
{
    platform::Application application(argc, argv);
    benchmark::Initialize(&argc, argv);
    for (const auto& signal : kSignals) {
        for (const bool half : {false, true}) {
            const auto file = SignalFile(signal, half);
            const auto add = [&](const std::string& row, auto run) {
                benchmark::RegisterBenchmark((std::string(signal.name) + ": " + row + (half ? ", half" : "")).c_str(),
                                             run);
            };
            add("floor", [file](auto& state) { Floor(state, file); });
            for (const bool listing : {false, true}) {
                const std::string suffix = listing ? ", listing" : "";
                add("encode" + suffix, [=](auto& state) { Encode(state, file, listing); });
                add("drop" + suffix, [=](auto& state) { Drop(state, file, listing); });
                add("drop reference" + suffix, [=](auto& state) { DropReference(state, file, listing); });
            }
        }
    }
    benchmark::RegisterBenchmark("save", Save);
    benchmark::RegisterBenchmark("save reference", SaveReference);
    Best best;
    benchmark::RunSpecifiedBenchmarks(&best);
    if (best.failed) return 1;
    Print(best);
    return 0;
}
