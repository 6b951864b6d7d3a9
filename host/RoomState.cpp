#include "host/RoomState.h"

#include <algorithm>
#include <array>

namespace Corvanta::Host {
namespace {

struct KeyLabel {
    std::string_view name;
    std::string_view label;
};

constexpr std::array kKeyLabels{
    KeyLabel{"LeftShift", "Shift"},
    KeyLabel{"RightShift", "Right Shift"},
    KeyLabel{"LeftCtrl", "Ctrl"},
    KeyLabel{"RightCtrl", "Right Ctrl"},
    KeyLabel{"LeftAlt", "Alt"},
    KeyLabel{"RightAlt", "Right Alt"},
    KeyLabel{"Back", "Backspace"},
    KeyLabel{"Capital", "Caps Lock"},
    KeyLabel{"PageUp", "Page up"},
    KeyLabel{"PageDown", "Page down"},
    KeyLabel{"Oem1", ";"},
    KeyLabel{"Oem3", "`"},
    KeyLabel{"Oem5", "\\"},
    KeyLabel{"Oem6", "]"},
    KeyLabel{"OemMinus", "-"},
    KeyLabel{"OemPlus", "="},
    KeyLabel{"OemOpenBrackets", "["},
    KeyLabel{"OemQuotes", "'"},
    KeyLabel{"OemQuestion", "/"},
    KeyLabel{"OemPeriod", "."},
    KeyLabel{"OemComma", ","},
};

std::string_view OnOrOff(bool on) {
    return on ? "on" : "off";
}

}  // namespace

std::string StatusText(const RoomState& state) {
    std::string text = "Microphone ";
    text += OnOrOff(state.microphone);
    text += ", camera ";
    text += OnOrOff(state.camera);
    text += ", sound ";
    text += OnOrOff(state.sound);
    return text;
}

std::string PushToTalkText(std::string_view key) {
    if (key.empty()) return {};
    std::string text = "Hold ";
    text += KeyLabelOf(key);
    text += " to talk";
    return text;
}

std::string KeyLabelOf(std::string_view key) {
    if (key.size() == 2 && key[0] == 'D' && key[1] >= '0' && key[1] <= '9') return {key[1]};
    const auto* const found = std::ranges::find(kKeyLabels, key, &KeyLabel::name);
    return std::string(found == kKeyLabels.end() ? key : found->label);
}

std::string_view ConnectionText(bool willRetry, bool endedHere) {
    if (endedHere) return "You have left the room.";
    return willRetry ? "The connection was lost. Trying again..." : "The connection was lost.";
}

}  // namespace Corvanta::Host
