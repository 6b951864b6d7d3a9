// Names that this program makes up. Plain functions of values.
#pragma once

#include <string>

namespace Corvanta::Host {

// A room's name that nobody else comes upon, of small letters and digits.
[[nodiscard]] std::string MakeOwnRoomName();

}  // namespace Corvanta::Host
