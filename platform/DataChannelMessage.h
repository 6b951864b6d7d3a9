// One text message from a remote participant's data channel. Plain value type; the order of its members is
// part of the binary interface.
#pragma once

#include <string>

namespace Corvanta {

struct DataChannelMessage {
    // Stream id of the participant who sent it.
    std::string senderId;
    // One JSON text, an object.
    std::string text;
};

}  // namespace Corvanta
