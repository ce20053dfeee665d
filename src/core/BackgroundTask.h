// BackgroundTask.h: the point in a long loop at which other work may run.
#pragma once

#include <cstddef>
#include <functional>
#include <utility>

namespace core {

/// Counts the passes of a loop and runs the other work now and then, so that it may be called for every sample.
class BackgroundTask {
public:
    explicit BackgroundTask(std::function<void()> otherWork) : otherWork_(std::move(otherWork)) {}

    void operator()(std::ptrdiff_t passes = 1)
    {
        passes_ += passes;
        if (passes_ < kPassesPerLook) return;
        passes_ = 0;
        otherWork_();
    }

private:
    static constexpr std::ptrdiff_t kPassesPerLook = 1024;

    std::function<void()> otherWork_;
    std::ptrdiff_t passes_ = 0;
};

} // namespace core
