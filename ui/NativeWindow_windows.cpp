#include <SDL_syswm.h>
#include <windows.h>

#include "ui/NativeWindow.h"

namespace Corvanta::UI {

bool IsNativeWindow(void* handle) {
    return IsWindow(static_cast<HWND>(handle)) != FALSE;
}

bool MayDrawOn(SDL_Window* window) {
    SDL_SysWMinfo info;
    SDL_VERSION(&info.version);
    return SDL_GetWindowWMInfo(window, &info) != SDL_TRUE || IsWindow(info.info.win.window) != FALSE;
}

void TolerateLostWindows() {}

void DestroyNativeWindow(SDL_Window* window) {
    SDL_DestroyWindow(window);
}

}  // namespace Corvanta::UI
