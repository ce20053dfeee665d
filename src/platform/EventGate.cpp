#include "platform/EventGate.h"

#include <iostream>
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
        work();
    } catch (const std::exception& failure) {
        try {
            gate_->failed_(failure);
        } catch (const std::exception& further) { // even the message failed, and the toolkit can't pass an exception on
            std::cerr << "tonfloss: " << failure.what() << "; " << further.what() << '\n';
        }
    }
}

} // namespace platform
