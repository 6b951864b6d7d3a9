// Takes pictures of the whole X screen or of one window, with the pointer. A window is seen whole although
// others cover it or it reaches over the screen's edge. One thread at a time.
#pragma once

#include <xcb/xcb.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "engine/webrtc/XDisplay.h"

namespace Corvanta::Engine {

class ScreenGrabber final {
public:
    // 0 for the whole screen.
    explicit ScreenGrabber(std::uint32_t capturedWindow);
    ~ScreenGrabber();
    ScreenGrabber(const ScreenGrabber&) = delete;
    ScreenGrabber& operator=(const ScreenGrabber&) = delete;

    // What hinders it, as one line for the user.
    [[nodiscard]] std::optional<std::string> Problem() const;

    enum class State {
        Visible,
        // A minimised window: there is nothing to be taken at this moment.
        Hidden,
        // The window has closed, or the display is no more. For good.
        Gone,
    };
    struct Look {
        State state = State::Gone;
        // Pixels; where Visible.
        int width = 0;
        int height = 0;
    };
    // Where it stands and how large it is.
    [[nodiscard]] Look Check();
    // Writes the picture, of the size of the last Check, as rows of four bytes a pixel (blue, green, red,
    // 255). False when the window has changed since.
    [[nodiscard]] bool Take(uint8_t* target, std::size_t stride);

private:
    struct SharedMemory {
        std::size_t size = 0;
        uint32_t segment = 0;
        void* memory = nullptr;
    };

    [[nodiscard]] bool EnsureSharedMemory(std::size_t size);
    void ReleaseSharedMemory();
    [[nodiscard]] bool TakeShared(xcb_drawable_t source, int x, int y, uint8_t* target, std::size_t stride);
    [[nodiscard]] bool TakeCopied(xcb_drawable_t source, int x, int y, uint8_t* target,
                                  std::size_t stride) const;
    void DrawPointer(uint8_t* target, std::size_t stride) const;

    const XDisplay display;
    const std::uint32_t window;
    bool hasSharedMemory = false;
    bool hasComposition = false;
    bool hasPointer = false;
    int depth = 0;
    int borderWidth = 0;
    Look last;
    SharedMemory shared;
};

}  // namespace Corvanta::Engine
