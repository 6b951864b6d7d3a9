// What of the local user is on, as the room reports it, and how the window says so. Plain values.
#pragma once

#include <string>
#include <string_view>

namespace Corvanta::Host {

struct RoomState {
    bool microphone = false;
    bool camera = false;
    bool sound = false;  // nobody is heard before the person asks for it
    bool drawTool = false;
};

// "Microphone on, camera off, sound on".
[[nodiscard]] std::string StatusText(const RoomState& state);
// "Hold V to talk"; empty without a key. key: as the library names it.
[[nodiscard]] std::string PushToTalkText(std::string_view key);
// What a person calls a key that the library names: "V", "1", "Ctrl". Unknown names stay as they are.
[[nodiscard]] std::string KeyLabelOf(std::string_view key);

// The connection broke: whether it is tried again, and whether this side ended it.
[[nodiscard]] std::string_view ConnectionText(bool willRetry, bool endedHere);

}  // namespace Corvanta::Host
