#include "platform/EventGate.h"

#include <utility>

namespace platform {

EventGate::Turn EventGate::TakeTurn()
{
    Turn turn;
    if (!std::exchange(taken_, true)) turn.gate_.reset(this);
    return turn;
}

void EventGate::Run(const std::function<void()>& work)
{
    if (const auto turn = TakeTurn()) turn.Run(work);
}

void EventGate::Turn::Run(const std::function<void()>& work) const
{
    try {
        try {
            work();
        } catch (const std::exception& failure) {
            gate_->failed_(failure);
        }
    } catch (...) { // NOLINT(bugprone-empty-catch): even the message failed, and the toolkit can't pass an exception on
    }
}

} // namespace platform
