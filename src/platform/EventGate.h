// EventGate.h: lets the user's events through one at a time.
//
// A handler may wait in a message box or yield within a long loop, and the toolkit can deliver a drop, a key or a close
// request there. The conversion has one set of properties, so no second event may start while one is under way.
#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <utility>

namespace platform {

class EventGate {
public:
    /// Held from the moment that an event is taken until its work is over, also where that is queued in between.
    class Turn {
    public:
        /// False where another event is under way: this one must be refused.
        explicit operator bool() const { return gate_ != nullptr; }

        /// Does the work of the event. What it throws ends here and is given to the gate's `failed`.
        void Run(const std::function<void()>& work) const;

    private:
        friend class EventGate;
        struct Release {
            void operator()(EventGate* gate) const { gate->taken_ = false; }
        };
        std::unique_ptr<EventGate, Release> gate_;
    };

    /// `failed` tells the user of an exception; the program goes on.
    explicit EventGate(std::function<void(const std::exception&)> failed) : failed_(std::move(failed)) {}

    [[nodiscard]] Turn TakeTurn();

    /// An event that is over with its work. Refused without a word while another one is under way.
    void Run(const std::function<void()>& work);

private:
    std::function<void(const std::exception&)> failed_;
    bool taken_ = false;
};

} // namespace platform
