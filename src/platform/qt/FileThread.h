// FileThread.h: what asks a file system has a thread of its own, since that may answer late or never. Nobody has to
// wait for the thread, not even the program's end.
#pragma once

#include "platform/qt/Descriptors.h"

#include <future>
#include <thread>
#include <type_traits>
#include <utility>

namespace platform {

/// What `work` gives or throws. It may outlive all objects of the program.
template <class Work>
[[nodiscard]] auto InFileThread(Work work)
{
    std::packaged_task<std::invoke_result_t<Work>()> task(std::move(work));
    auto result = task.get_future().share();
    std::thread([task = std::move(task)]() mutable {
        ShareNoDescriptors();
        task();
    }).detach();
    return result;
}

} // namespace platform
