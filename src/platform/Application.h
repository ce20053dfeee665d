// Application.h: the toolkit's start, its event loop and the screen.
#pragma once

#include <memory>

namespace platform {

struct ScreenSize {
    int Width;
    int Height;
};

/// The full size of the first screen. Requires: an Application.
[[nodiscard]] ScreenSize FirstScreen();

/// Made before anything else of the platform, destroyed after it.
class Application {
public:
    /// The toolkit gets `programName`, the first of main's arguments, and no other.
    explicit Application(char* programName);
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    /// Runs until the window is closed; the exit status.
    int Run();

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace platform
