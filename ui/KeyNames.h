// The keys' names in the vocabulary of hosts' toolkits, as SDL key codes. Immutable; any thread.
#pragma once

#include <SDL.h>

#include <set>

namespace Corvanta::UI {

// A name of the table gives its code, a single character the code of its lower case; 0 for null, an empty and
// an unknown name. At most the first 1024 bytes are looked at. The right-hand shift and control count as the
// left ones.
[[nodiscard]] SDL_Keycode GetKeyCodeFromName(const char* name);

// The keys that count as this one: both sides of a modifier, else the key alone.
[[nodiscard]] std::set<SDL_Keycode> GetEquivalentKeys(SDL_Keycode key);

}  // namespace Corvanta::UI
