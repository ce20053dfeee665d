// EventGate.h: lets the user's events through one at a time, and lets no exception out.
//
// A handler may wait in a message box or yield within a long loop, and the toolkit can deliver a drop, a key or a close
// request there. The conversion has one set of properties, so no second handler may start while one is under way.
#pragma once

#include "Dialogs.h"

#include <functional>

namespace platform {

class EventGate {
public:
    explicit EventGate(Dialogs& dialogs) : dialogs_(dialogs) {}

    /// True while a handler is under way.
    [[nodiscard]] bool Busy() const { return busy_; }

    /// Runs `handler`, or refuses and returns false while another one is under way. An exception ends here, in a
    /// message box that says in plain text what went wrong; the program goes on.
    bool Run(const std::function<void()>& handler);

private:
    Dialogs& dialogs_;
    bool busy_ = false;
};

} // namespace platform
