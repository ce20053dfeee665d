// What the encoder costs, as ratios to one pass over the same samples.
#include "Best.h"
#include "Signals.h"
#include "core/PeriodEncoder.h"

#include <malloc.h>

#include <cstdio>

namespace {

void Floor(benchmark::State& state, const std::string& file)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(CountFalls(std::string_view(file).substr(44)));
}

/// Into new texts each time, as the first drop does: their memory has been given back to the system.
void Encode(benchmark::State& state, const std::string& file, bool listing)
{
    core::BackgroundTask yield([] {});
    for (auto _ : state) {
        const auto periods = core::EncodePeriods(std::string_view(file).substr(44), yield);
        benchmark::DoNotOptimize(core::TokensOf(periods));
        if (listing) benchmark::DoNotOptimize(core::ListingOf(periods));
    }
}

} // namespace

int main(int argc, char** argv)
{
    mallopt(M_MMAP_THRESHOLD, 128 << 10); // and stays there: large texts are always new memory
    benchmark::Initialize(&argc, argv);
    for (const auto& signal : kSignals) {
        const auto file = SignalFile(signal, false);
        const std::string name = signal.name;
        benchmark::RegisterBenchmark((name + ": floor").c_str(), [=](auto& state) { Floor(state, file); });
        benchmark::RegisterBenchmark((name + ": encode").c_str(), [=](auto& state) { Encode(state, file, false); });
        benchmark::RegisterBenchmark((name + ": listing").c_str(), [=](auto& state) { Encode(state, file, true); });
    }
    Best best;
    benchmark::RunSpecifiedBenchmarks(&best);
    std::puts("                   floor, ms   encode   with listing");
    for (const auto& signal : kSignals) {
        const std::string name = signal.name;
        const auto at = [&](const char* row) { return best.milliseconds.at(name + row); };
        std::printf("%-18s %9.3f %8.2f %14.2f\n", signal.name, at(": floor"), at(": encode") / at(": floor"),
                    at(": listing") / at(": floor"));
    }
    return 0;
}
