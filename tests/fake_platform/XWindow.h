// A real X11 window that stands for the host's: what a view is opened on. It has a connection of its own to
// the display, and starts a virtual one when there is none. Main thread.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace Corvanta::Testing {

class XWindow final {
public:
    // Opens and shows a window of that size in pixels. Throws std::runtime_error without a display.
    XWindow(int width, int height);
    ~XWindow();
    XWindow(const XWindow&) = delete;
    XWindow& operator=(const XWindow&) = delete;

    // The native handle; of a destroyed window it names nothing.
    [[nodiscard]] void* Handle() const;
    // A handle that names no window of this display.
    [[nodiscard]] static void* BadHandle();

    // Each returns when the display has carried it out.
    void Resize(int width, int height);
    void Destroy();

    // The window's true size in pixels, as the display knows it.
    struct Size {
        int width = 0;
        int height = 0;
        bool operator==(const Size&) const = default;
    };
    [[nodiscard]] Size GetSize() const;

    // What the window shows, row by row, as 0xFFRRGGBB.
    [[nodiscard]] std::vector<uint32_t> ReadPixels() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace Corvanta::Testing
