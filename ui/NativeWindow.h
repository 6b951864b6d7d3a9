// What the window system must be asked about a host's window before SDL draws on it. Host thread.
#pragma once

#include <SDL.h>

namespace Corvanta::UI {

// Whether the handle names a window that exists. SDL does not refuse a bad one: it would make a window of
// garbage size, on which some drivers crash. True where the running video driver gives no way to ask.
[[nodiscard]] bool IsNativeWindow(void* handle);

// False once the host has destroyed the window that SDL draws on with OpenGL: its drivers then read a size
// that nobody gave them, and crash. It costs an exchange with the display, so other windows, which the
// tolerance below is enough for, count as there.
[[nodiscard]] bool MayDrawOn(SDL_Window* window);

// Makes drawing on a window that its host has already destroyed a logged failure instead of the end of the
// process.
void TolerateLostWindows();

// Destroys SDL's window and waits until the window system has taken note: what it may complain of, for a
// window that its host has destroyed already, comes while that is still tolerated.
void DestroyNativeWindow(SDL_Window* window);

}  // namespace Corvanta::UI
