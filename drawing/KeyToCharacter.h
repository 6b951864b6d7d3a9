// What a key types on a US keyboard, whatever the host's. Plain values.
#pragma once

namespace Corvanta::Drawing {

struct KeyModifiers {
    bool shift = false;
    bool capsLock = false;
};

// keycode: SDL's. 0 for a key that types nothing.
[[nodiscard]] char KeyToCharacter(int keycode, const KeyModifiers& modifiers);

}  // namespace Corvanta::Drawing
