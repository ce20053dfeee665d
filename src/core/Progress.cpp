#include "core/Progress.h"

#include <algorithm>

namespace core {

bool Progress::GoesOn(double done) const
{
    auto& work = *work_;
    work.done = std::max(work.done, from_ + done * (to_ - from_));
    work.isStopped = work.isStopped || !work.tell(work.done);
    return !work.isStopped;
}

Progress Progress::Stage(double from, double to) const
{
    auto stage = *this;
    stage.from_ = from_ + from * (to_ - from_);
    stage.to_ = from_ + to * (to_ - from_);
    return stage;
}

Progress Steps::Next(int others)
{
    const auto from = done_;
    done_ += (1 - done_) / (1 + others);
    return whole_.Stage(from, done_);
}

} // namespace core
