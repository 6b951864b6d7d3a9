// What the programs in a room tell each other over the data channels of the main video that each shows. Plain
// functions of values.
#pragma once

#include <optional>
#include <string>

namespace Corvanta::Engine {

// {"type":"mainStream","message":{"streamId":ID}}
[[nodiscard]] std::string WriteMainStream(const std::string& streamId);
// The id; nothing for every other message.
[[nodiscard]] std::optional<std::string> ReadMainStream(const std::string& text);

}  // namespace Corvanta::Engine
