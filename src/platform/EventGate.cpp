#include "EventGate.h"

#include <exception>
#include <new>

namespace platform {
namespace {

class BusyMark {
public:
    explicit BusyMark(bool& busy) : busy_(busy) { busy_ = true; }
    ~BusyMark() { busy_ = false; }
    BusyMark(const BusyMark&) = delete;
    BusyMark& operator=(const BusyMark&) = delete;

private:
    bool& busy_;
};

} // namespace

bool EventGate::Run(const std::function<void()>& handler)
{
    if (busy_) return false;
    const BusyMark mark(busy_);
    try {
        handler();
    } catch (const std::bad_alloc&) {
        dialogs_.MsgBox("There is not enough memory for this.");
    } catch (const std::exception& failure) {
        dialogs_.MsgBox(failure.what());
    }
    return true;
}

} // namespace platform
