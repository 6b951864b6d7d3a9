#include "drawing/KeyToCharacter.h"

#include <string_view>

namespace Corvanta::Drawing {

namespace {

// Pairs: what the key types, and what it types with shift.
constexpr std::string_view kPairs = "0)1!2@3#4$5%6^7&8*9(`~-_=+[{]}\\|;:'\"/?.>,<";

}  // namespace

char KeyToCharacter(int keycode, const KeyModifiers& modifiers) {
    if (keycode >= 'a' && keycode <= 'z') {
        const bool upperCase = modifiers.shift || modifiers.capsLock;
        return static_cast<char>(upperCase ? keycode - 'a' + 'A' : keycode);
    }
    if (keycode == ' ') return ' ';
    if (keycode == '\r') return '\n';
    for (size_t i = 0; i < kPairs.size(); i += 2) {
        if (kPairs[i] == keycode) return kPairs[modifiers.shift ? i + 1 : i];
    }
    return 0;
}

}  // namespace Corvanta::Drawing
