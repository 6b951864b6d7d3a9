#include <windows.h>

#include "ui/NativeWindow.h"

namespace Corvanta::UI {

bool IsNativeWindow(void* handle) {
    return IsWindow(static_cast<HWND>(handle)) != FALSE;
}

void TolerateLostWindows() {}

void DestroyNativeWindow(SDL_Window* window) {
    SDL_DestroyWindow(window);
}

}  // namespace Corvanta::UI
