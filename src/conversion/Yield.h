// Yield.h: the point in a long loop at which other work may run.
#pragma once

#include <functional>
#include <utility>

namespace conversion {

/// Called once a pass. All calls but every 1024th only count, so that it may stand in a loop over samples.
class Yield {
public:
    explicit Yield(std::function<void()> otherWork) : otherWork_(std::move(otherWork)) {}

    void operator()()
    {
        if (++passes_ % kPassesPerLook == 0) otherWork_();
    }

private:
    static constexpr unsigned kPassesPerLook = 1024;

    std::function<void()> otherWork_;
    unsigned passes_ = 0;
};

} // namespace conversion
