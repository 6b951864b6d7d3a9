// Names for shapes. Any thread.
#pragma once

#include <string>

namespace Corvanta::Drawing {

// 15 of the 62 letters and digits, none twice: a name for a shape that no other client gives.
[[nodiscard]] std::string GenerateControlId();

}  // namespace Corvanta::Drawing
