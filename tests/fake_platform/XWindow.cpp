#include "tests/fake_platform/XWindow.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <cstddef>
#include <stdexcept>

#include "tests/fake_platform/VirtualDisplay.h"

namespace Corvanta::Testing {

struct XWindow::State {
    Display* display = nullptr;
    Window window = 0;
    bool exists = false;
};

XWindow::XWindow(int width, int height) : state_(std::make_unique<State>()) {
    if (!EnsureDisplay()) {
        throw std::runtime_error("There is no display, and Xvfb cannot be started");
    }
    state_->display = XOpenDisplay(nullptr);
    if (state_->display == nullptr) {
        throw std::runtime_error("The display does not answer");
    }
    Display* const display = state_->display;
    state_->window =
        XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, static_cast<unsigned>(width),
                            static_cast<unsigned>(height), 0, 0, BlackPixel(display, DefaultScreen(display)));
    state_->exists = true;
    XSelectInput(display, state_->window, StructureNotifyMask);
    XMapWindow(display, state_->window);
    // Nothing can be drawn, nor read back, before the window is mapped.
    XEvent event;
    do {
        XNextEvent(display, &event);
    } while (event.type != MapNotify);
}

XWindow::~XWindow() {
    Destroy();
    XCloseDisplay(state_->display);
}

void* XWindow::Handle() const {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): a native handle is the window's number.
    return reinterpret_cast<void*>(state_->window);
}

void* XWindow::BadHandle() {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): as above.
    return reinterpret_cast<void*>(uintptr_t{0x1FFFFFF});
}

void XWindow::Resize(int width, int height) {
    XResizeWindow(state_->display, state_->window, static_cast<unsigned>(width),
                  static_cast<unsigned>(height));
    XSync(state_->display, False);
}

void XWindow::Destroy() {
    if (state_->exists) {
        XDestroyWindow(state_->display, state_->window);
        XSync(state_->display, False);
        state_->exists = false;
    }
}

XWindow::Size XWindow::GetSize() const {
    XWindowAttributes attributes{};
    XGetWindowAttributes(state_->display, state_->window, &attributes);
    return {attributes.width, attributes.height};
}

std::vector<uint32_t> XWindow::ReadPixels() const {
    const Size size = GetSize();
    XImage* const image = XGetImage(state_->display, state_->window, 0, 0, static_cast<unsigned>(size.width),
                                    static_cast<unsigned>(size.height), AllPlanes, ZPixmap);
    std::vector<uint32_t> pixels;
    if (image == nullptr) {
        return pixels;
    }
    pixels.reserve(static_cast<size_t>(size.width) * static_cast<size_t>(size.height));
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            pixels.push_back(static_cast<uint32_t>(XGetPixel(image, x, y)) | 0xFF000000U);
        }
    }
    XDestroyImage(image);
    return pixels;
}

}  // namespace Corvanta::Testing
