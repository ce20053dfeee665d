// start_bench PROGRAM REFERENCE: from process start to the mapped window, in turn, 21 times each; and the peak memory
// by then. Prints the medians and their ratio. Needs a display without a window manager.
#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace {

struct Start {
    double milliseconds;
    double peakMebibytes;
};

double PeakMebibytes(pid_t process)
{
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string word; status >> word;) {
        double kibibytes = 0;
        if (word == "VmHWM:" && status >> kibibytes) return kibibytes / 1024;
    }
    return 0;
}

Start Measure(xcb_connection_t* display, const char* program)
{
    const auto begin = std::chrono::steady_clock::now();
    const auto process = fork();
    if (process == 0) {
        execl(program, program, nullptr);
        _exit(127);
    }
    std::chrono::duration<double, std::milli> time{};
    while (time.count() == 0) {
        const std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> event(xcb_wait_for_event(display), &std::free);
        if (event && (event->response_type & 0x7F) == XCB_MAP_NOTIFY) time = std::chrono::steady_clock::now() - begin;
    }
    usleep(200'000); // the first frame is drawn
    const double peak = PeakMebibytes(process);
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
    return {time.count(), peak};
}

double Median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + static_cast<long>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char** argv)
{
    auto* const display = xcb_connect(nullptr, nullptr);
    if (argc != 3 || xcb_connection_has_error(display) != 0) return 2;
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(display)).data->root;
    xcb_change_window_attributes(display, root, XCB_CW_EVENT_MASK, &events);
    xcb_flush(display);

    std::vector<double> times[2];
    std::vector<double> peaks[2];
    for (int run = 0; run < 21; ++run) {
        for (const int which : {0, 1}) {
            const auto start = Measure(display, argv[1 + which]);
            times[which].push_back(start.milliseconds);
            peaks[which].push_back(start.peakMebibytes);
        }
    }
    std::puts("start          tonfloss   bare window");
    std::printf("median ms  %12.1f %13.1f    ratio %.2f\n", Median(times[0]), Median(times[1]),
                Median(times[0]) / Median(times[1]));
    std::printf("peak MiB   %12.1f %13.1f    more  %.1f\n", Median(peaks[0]), Median(peaks[1]),
                Median(peaks[0]) - Median(peaks[1]));
    xcb_disconnect(display);
    return 0;
}
