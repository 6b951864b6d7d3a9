// Where the engine has put a still picture. Any thread.
#pragma once

#include <string>

namespace Corvanta::Room {

// The file that was written for that path: the engine completes a name by the format that it has chosen. Of
// several the newest; the path itself when there is none.
[[nodiscard]] std::string WrittenStill(const std::string& path);

}  // namespace Corvanta::Room
