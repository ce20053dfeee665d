// What a drop and a save cost, as ratios to the least that anyone could do, all in one run.
#include "Best.h"
#include "Signals.h"
#include "core/PeriodEncoder.h"
#include "platform/Application.h"
#include "platform/FolderItem.h"
#include "support/FakeDialogs.h"
#include "support/WithBytes.h"
#include "window/App.h"

#include <QFile>
#include <QPlainTextEdit>
#include <QSaveFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>

namespace {

/// The program with a folder for files.
struct Program {
    FakeDialogs dialogs;
    App app{dialogs};
    QTemporaryDir folder;

    Program()
    {
        app.Window.Show();
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
        app.Gate.Run([&] { app.Window.Event_DropObject(WithBytes(item)); });
    }
};

void Drop(benchmark::State& state, const std::string& file, bool listing)
{
    Program program;
    program.app.MenuBar.OptionDefBWindow.SetHasCheckMark(listing);
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
    core::BackgroundTask yield([] {});
    if (listing) text = core::ListingOf(core::EncodePeriods(std::string_view(file).substr(44), yield));
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
    const auto item = program.Item(WaveBytes().samples(Tone(2, kLargest)));
    for (auto _ : state) {
        state.PauseTiming();
        program.Drop(item);
        program.app.Window.TextFieldAudioAdresse.SetText(U"80C5");
        state.ResumeTiming();
        program.app.Gate.Run([&] { program.app.Window.TextFieldAudioAdresse_KeyDown(U"\x0D"); });
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

void Print(const Best& best)
{
    const auto at = [&](const std::string& name) { return best.milliseconds.at(name); };
    std::puts("                                 ms   times the reference   twice the input");
    for (const auto& signal : kSignals) {
        const std::string name = signal.name;
        for (const auto& [row, reference] : std::initializer_list<std::pair<std::string, std::string>>{
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
    platform::Application application(argv[0]);
    benchmark::Initialize(&argc, argv);
    for (const auto& signal : kSignals) {
        for (const bool half : {false, true}) {
            const auto file = SignalFile(signal, half);
            const auto add = [&](const std::string& row, auto run) {
                benchmark::RegisterBenchmark((std::string(signal.name) + ": " + row + (half ? ", half" : "")).c_str(),
                                             run);
            };
            for (const bool listing : {false, true}) {
                const std::string suffix = listing ? ", listing" : "";
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
