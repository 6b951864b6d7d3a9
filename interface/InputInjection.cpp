// Input as the host sees it, put on SDL's queue; the next tick drains it. Each event carries only the fields
// that its consumers read: buttons have no number and no position, keys no modifiers.
#include <SDL.h>

#include <limits>

#include "interface/ProcessState.h"
#include "interface/SDLinterface.h"
#include "ui/Arithmetic.h"
#include "ui/KeyNames.h"

namespace Corvanta::Interface {
namespace {

constexpr float kLeftTheWindow = -1.0F;
// An index that names no window: its id is that of events which belong to none.
constexpr int kNoWindow = 3;

std::atomic<int> gWindowEventsPass{0};

[[nodiscard]] SDL_Event NewEvent(SDL_EventType type) {
    SDL_Event event;
    // All of it: braces would promise no more than the first member.
    SDL_zero(event);
    event.type = type;
    return event;
}

[[nodiscard]] Uint32 EventWindow(int window) {
    return static_cast<Uint32>(GetViewWindowId(window));
}

// The mirror of the lowest number lies beyond the highest.
[[nodiscard]] int Inverted(int value) {
    return value == std::numeric_limits<int>::min() ? std::numeric_limits<int>::max() : -value;
}

void PushButtonEvent(SDL_EventType type, int window) {
    SDL_Event event = NewEvent(type);
    event.button.windowID = EventWindow(window);
    SDL_PushEvent(&event);
}

void PushKeyEvent(SDL_EventType type, int window, const char* keyName) {
    const SDL_Keycode code = UI::GetKeyCodeFromName(keyName);
    if (code <= 0) return;
    SDL_Event event = NewEvent(type);
    event.key.windowID = EventWindow(window);
    event.key.keysym.sym = code;
    SDL_PushEvent(&event);
}

int SDLCALL WindowEventFilter(void* /*userData*/, SDL_Event* event) {
    if (event->type != SDL_WINDOWEVENT) return 1;
    if (static_cast<int>(event->window.windowID) == GetViewWindowId(kNoWindow)) return 1;
    return gWindowEventsPass.load();
}

}  // namespace
}  // namespace Corvanta::Interface

using namespace Corvanta;
using namespace Corvanta::Interface;

void SDLinterface_PushMouseMoveEvent(int window, float x, float y) {
    if (CurrentView() == nullptr) return;
    SDL_Event event = NewEvent(SDL_MOUSEMOTION);
    event.motion.windowID = EventWindow(window);
    if (x == kLeftTheWindow && y == kLeftTheWindow) {
        event.motion.x = -1;
        event.motion.y = -1;
    } else if (const auto size = GetViewSize(window)) {
        event.motion.x = UI::Truncate(static_cast<float>(size->x) * x);
        event.motion.y = UI::Truncate(static_cast<float>(size->y) * y);
    }
    SDL_PushEvent(&event);
}

void SDLinterface_PushMouseButtonDownEvent(int window) {
    PushButtonEvent(SDL_MOUSEBUTTONDOWN, window);
}

void SDLinterface_PushMouseButtonUpEvent(int window) {
    PushButtonEvent(SDL_MOUSEBUTTONUP, window);
}

void SDLinterface_PushScrollWheelEvent(int window, int x, int y) {
    SDL_Event event = NewEvent(SDL_MOUSEWHEEL);
    event.wheel.windowID = EventWindow(window);
    event.wheel.x = Inverted(x);
    event.wheel.y = Inverted(y);
    SDL_PushEvent(&event);
}

void SDLinterface_PushWindowMovedEvent(int window, int x, int y) {
    SDL_Event event = NewEvent(SDL_WINDOWEVENT);
    event.window.windowID = EventWindow(window);
    event.window.event = SDL_WINDOWEVENT_MOVED;
    event.window.data1 = x;
    event.window.data2 = y;
    SDL_PushEvent(&event);
}

void SDLinterface_PushKeyDownEvent(int window, const char* keyName) {
    PushKeyEvent(SDL_KEYDOWN, window, keyName);
}

void SDLinterface_PushKeyUpEvent(int window, const char* keyName) {
    PushKeyEvent(SDL_KEYUP, window, keyName);
}

int SDLinterface_TextInputEnabled(bool enabled) {
    const int state = enabled ? SDL_ENABLE : SDL_DISABLE;
    SDL_EventState(SDL_KEYDOWN, state);
    SDL_EventState(SDL_KEYUP, state);
    SDL_EventState(SDL_TEXTINPUT, state);
    return SDL_EventState(SDL_TEXTEDITING, state);
}

void SDLinterface_DisableWindowResizingEvents(bool disable) {
    gWindowEventsPass.store(disable ? 0 : 1);
    SDL_SetEventFilter(&WindowEventFilter, nullptr);
}
