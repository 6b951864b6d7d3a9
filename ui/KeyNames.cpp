#include "ui/KeyNames.h"

#include <cctype>
#include <string>
#include <unordered_map>

namespace Corvanta::UI {
namespace {

constexpr size_t kLongestName = 1024;

const std::unordered_map<std::string, SDL_Keycode> kKeyCodes = {
    {"LeftShift", SDLK_LSHIFT},
    {"RightShift", SDLK_LSHIFT},
    {"Shift", SDLK_LSHIFT},
    {"Space", SDLK_SPACE},
    {"Back", SDLK_BACKSPACE},
    {"Control", SDLK_LCTRL},
    {"LeftCtrl", SDLK_LCTRL},
    {"RightCtrl", SDLK_LCTRL},
    {"Alt", SDLK_LALT},
    {"LeftAlt", SDLK_LALT},
    {"System", SDLK_LALT},
    {"Option", SDLK_LALT},
    {"Command", SDLK_LGUI},
    {"Capital", SDLK_CAPSLOCK},
    {"CapsLock", SDLK_CAPSLOCK},
    {"Tab", SDLK_TAB},
    {"Return", SDLK_RETURN},
    {"Escape", SDLK_ESCAPE},
    {"PageUp", SDLK_PAGEUP},
    {"PageDown", SDLK_PAGEDOWN},
    {"Left", SDLK_LEFT},
    {"Right", SDLK_RIGHT},
    {"Down", SDLK_DOWN},
    {"Up", SDLK_UP},
    {"Delete", SDLK_DELETE},
    {"D0", SDLK_0},
    {"D1", SDLK_1},
    {"D2", SDLK_2},
    {"D3", SDLK_3},
    {"D4", SDLK_4},
    {"D5", SDLK_5},
    {"D6", SDLK_6},
    {"D7", SDLK_7},
    {"D8", SDLK_8},
    {"D9", SDLK_9},
    {"Oem3", SDLK_BACKQUOTE},
    {"OemMinus", SDLK_MINUS},
    {"OemPlus", SDLK_EQUALS},
    {"OemOpenBrackets", SDLK_LEFTBRACKET},
    {"Oem6", SDLK_RIGHTBRACKET},
    {"Oem5", SDLK_BACKSLASH},
    {"Oem1", SDLK_SEMICOLON},
    {"OemQuotes", SDLK_QUOTE},
    {"OemQuestion", SDLK_SLASH},
    {"OemPeriod", SDLK_PERIOD},
    {"OemComma", SDLK_COMMA},
};

const std::unordered_map<SDL_Keycode, std::set<SDL_Keycode>> kEquivalentKeys = {
    {SDLK_LSHIFT, {SDLK_LSHIFT, SDLK_RSHIFT}},
    {SDLK_LCTRL, {SDLK_LCTRL, SDLK_RCTRL}},
    {SDLK_LALT, {SDLK_LALT, SDLK_RALT}},
    {SDLK_LGUI, {SDLK_LGUI, SDLK_RGUI}},
};

}  // namespace

SDL_Keycode GetKeyCodeFromName(const char* name) {
    if (name == nullptr) return 0;
    size_t length = 0;
    while (length < kLongestName && name[length] != '\0') ++length;
    if (length == 0) return 0;
    if (length == 1) return std::tolower(static_cast<unsigned char>(name[0]));
    const auto found = kKeyCodes.find(std::string(name, length));
    return found == kKeyCodes.end() ? 0 : found->second;
}

std::set<SDL_Keycode> GetEquivalentKeys(SDL_Keycode key) {
    const auto found = kEquivalentKeys.find(key);
    return found == kEquivalentKeys.end() ? std::set<SDL_Keycode>{key} : found->second;
}

}  // namespace Corvanta::UI
