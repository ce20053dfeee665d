// studio_bench SOUND: how long somebody waits in the studio for the picture of a file and for 20 seconds out of it,
// what its window stands still for, how soon work ends that was overtaken, and the memory for all of it.
#include "prepare/Prepare.h"
#include "studio/Jobs.h"
#include "studio/Studio.h"

#include <sndfile.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <fstream>
#include <mutex>
#include <random>
#include <string>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

double Milliseconds(Clock::time_point since)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
}

double PeakMebibytes()
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        double kibibytes = 0;
        if (word == "VmHWM:" && status >> kibibytes) return kibibytes / 1024;
    }
    return 0;
}

/// All of it, by libsndfile alone.
double DecodingTime(const char* file)
{
    const auto begin = Clock::now();
    SF_INFO info{};
    auto* const sound = sf_open(file, SFM_READ, &info);
    if (sound == nullptr) return 0;
    std::vector<float> samples(static_cast<std::size_t>(4096 * info.channels));
    while (sf_readf_float(sound, samples.data(), 4096) > 0) {
    }
    sf_close(sound);
    return Milliseconds(begin);
}

/// A model, and a window that only measures.
class Window {
public:
    /// Until that holds; the milliseconds that it took.
    double Until(const auto& holds)
    {
        const auto begin = Clock::now();
        while (!holds(model.Now())) {
            std::unique_lock lock(mutex_);
            woken_.wait(lock, [&] { return isWoken_; });
            isWoken_ = false;
            lock.unlock();
            Measured([&] { model.Pump(); });
        }
        return Milliseconds(begin);
    }
    void Measured(const auto& action)
    {
        const auto begin = Clock::now();
        action();
        longest = std::max(longest, Milliseconds(begin));
    }

private:
    std::mutex mutex_;
    std::condition_variable woken_;
    bool isWoken_ = false;

public:
    double longest = 0; // ms
    studio::Studio model{{.wake =
                              [this] {
                                  const std::lock_guard lock(mutex_);
                                  isWoken_ = true;
                                  woken_.notify_all();
                              },
                          .nameOf = [](const auto& path) { return path.filename().string(); }}};
};

/// The longest time from a stop somewhere in the preparing of each kind to its end.
double LongestStop(const studio::Request& asked)
{
    std::mt19937 random(1); // the same each time
    double longest = 0;
    for (const auto kind : prepare::kKinds)
        for (int stop = 0; stop < 15; ++stop) {
            auto request = asked;
            request.settings.kind = kind;
            std::atomic<bool> isStopped = false;
            std::thread work([&] {
                const core::Progress progress([&](double /*done*/) { return !isStopped; });
                const auto made = studio::Make(request, progress);
                if (const auto* const done = std::get_if<studio::Made>(&made))
                    static_cast<void>(studio::Draw(*done->result, *done->samples, progress));
            });
            std::this_thread::sleep_for(std::chrono::milliseconds(random() % 1500));
            const auto begin = Clock::now();
            isStopped = true;
            work.join();
            longest = std::max(longest, Milliseconds(begin));
        }
    return longest;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) return 2;
    const std::filesystem::path file = argv[1];
    {
        Window window;
        window.Measured([&] { window.model.Open(file); });
        const auto first = window.Until([](const auto& now) { return now.file && now.file->waveform; });
        window.Measured([&] { window.model.Cancel(); });
        const auto whole = first + window.Until([](const auto& now) { return now.file->isRead; });
        const auto alone = DecodingTime(argv[1]);
        std::printf("%s, %.0f s\nfirst picture %.0f ms, whole %.0f ms, %.2f times libsndfile's decoding\n", argv[1],
                    window.model.Now().file->seconds, first, whole, whole / alone);
        std::printf("peak %.0f MiB\n", PeakMebibytes());

        const studio::Span span{.from = 60, .to = 80};
        for (const auto kind : prepare::kKinds) {
            window.Measured([&] { window.model.SetKind(kind); });
            window.Measured([&] { window.model.SetPart({.from = 61, .to = 79}); });
            window.Measured([&] { window.model.SetPart(span); });
            const auto ready = window.Until([](const auto& now) { return now.isCurrent || !now.preparing.isGoing; });
            const auto pictures = ready + window.Until([](const auto& now) { return now.pictures || !now.isCurrent; });
            const core::Progress progress([](double /*done*/) { return true; });
            const auto begin = Clock::now();
            auto read = sound::ReadSound(file, {.from = span.from, .length = span.Length()}, 48, progress);
            const prepare::Job job{.recording = std::get<sound::Recording>(read),
                                   .kind = kind,
                                   .limits = {.playback = {machine::kSampleRates.back(), {}}, .runBytes = 28342}};
            static_cast<void>(prepare::Prepare(job, progress));
            std::printf("20 s as %-6s playable %5.0f ms, pictures %5.0f ms; the preparing alone %5.0f ms\n",
                        std::string(NameOf(kind)).c_str(), ready, pictures, Milliseconds(begin));
        }
        window.Measured([&] {
            window.model.LookAt({70, 70.02}, 1000);
            static_cast<void>(window.model.Peaks({0, window.model.Now().file->axis}, 2000));
        });
        window.Measured([&] {
            if (const auto pictures = window.model.Now().pictures)
                static_cast<void>(pictures->source.Picture(span, 1600, 300));
        });
        std::printf("the longest that the window stood still %.1f ms; peak %.0f MiB\n", window.longest,
                    PeakMebibytes());
    }
    const studio::Request request{
        .path = file, .state = files::StateOf(file), .part = {.from = 60, .to = 90}, .toEnd = false, .settings = {}};
    std::printf("stopped work ended within %.0f ms\n", LongestStop(request));
    return 0;
}
