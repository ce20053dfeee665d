#include "platform/qt/Keys.h"

#include <QAbstractNativeEventFilter>

#include <windows.h>

namespace platform {

// By the system's word: the toolkit takes a new Return for a repetition where a box was closed before the key was let
// go.
void IgnoreRepeatedKeys(QCoreApplication& application)
{
    class Filter : public QAbstractNativeEventFilter {
        bool nativeEventFilter(const QByteArray& /*type*/, void* message, qintptr* /*result*/) override
        {
            constexpr LPARAM kWasDown = 1 << 30;
            const auto& key = *static_cast<MSG*>(message);
            return key.message == WM_KEYDOWN && key.wParam == VK_RETURN && (key.lParam & kWasDown) != 0;
        }
    };
    static Filter filter;
    application.installNativeEventFilter(&filter);
}

} // namespace platform
