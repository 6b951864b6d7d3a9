#include <windows.h>

#include "ui/NativeWindow.h"

namespace Corvanta::UI {

bool IsNativeWindow(void* handle) {
    return IsWindow(static_cast<HWND>(handle)) != FALSE;
}

void TolerateLostWindows() {}

}  // namespace Corvanta::UI
