// Best.h: the times of a run of benchmarks, and the least that a conversion has to do.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// One pass over the samples that finds the falls and writes nothing.
inline std::int64_t CountFalls(std::string_view samples)
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
