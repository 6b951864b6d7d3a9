#include <SDL.h>
#include <SDL_syswm.h>
#include <X11/Xlib.h>

#include <atomic>
#include <cstdint>
#include <string_view>

#include "platform/Logger.h"
#include "ui/NativeWindow.h"

namespace Corvanta::UI {
namespace {

bool RunsOnX11() {
    const char* driver = SDL_GetCurrentVideoDriver();
    return driver != nullptr && std::string_view(driver) == "x11";
}

// Xlib's own handler ends the process. The error belongs to a request that has already failed, so going on is
// safe.
int LogAndGoOn(Display*, XErrorEvent* event) {
    // Every drawing on a lost window fails anew; one line tells it.
    static std::atomic<XID> lastResource{None};
    if (lastResource.exchange(event->resourceid) != event->resourceid) {
        LOG(3, "Window system error %d on resource %lu", static_cast<int>(event->error_code),
            event->resourceid);
    }
    return 0;
}

int Ignore(Display*, XErrorEvent*) {
    return 0;
}

}  // namespace

bool IsNativeWindow(void* handle) {
    if (!RunsOnX11()) return true;
    Display* display = XOpenDisplay(nullptr);
    if (display == nullptr) return true;
    XErrorHandler previous = XSetErrorHandler(&Ignore);
    XWindowAttributes attributes;
    const bool exists =
        XGetWindowAttributes(display, static_cast<Window>(reinterpret_cast<uintptr_t>(handle)),
                             &attributes) != 0;
    XSync(display, False);
    XSetErrorHandler(previous);
    XCloseDisplay(display);
    return exists;
}

bool MayDrawOn(SDL_Window* window) {
    if ((SDL_GetWindowFlags(window) & SDL_WINDOW_OPENGL) == 0U || !RunsOnX11()) return true;
    SDL_SysWMinfo info;
    SDL_VERSION(&info.version);
    if (SDL_GetWindowWMInfo(window, &info) != SDL_TRUE) return true;
    XWindowAttributes attributes;
    return XGetWindowAttributes(info.info.x11.display, info.info.x11.window, &attributes) != 0;
}

void TolerateLostWindows() {
    if (RunsOnX11()) XSetErrorHandler(&LogAndGoOn);
}

void DestroyNativeWindow(SDL_Window* window) {
    SDL_SysWMinfo info;
    SDL_VERSION(&info.version);
    const bool onX11 = RunsOnX11() && SDL_GetWindowWMInfo(window, &info) == SDL_TRUE;
    SDL_DestroyWindow(window);
    // SDL puts the handler of errors back that ends the process before it leaves the display.
    if (onX11) XSync(info.info.x11.display, False);
}

}  // namespace Corvanta::UI
