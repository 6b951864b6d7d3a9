// Names for shapes. Any thread.
#pragma once

#include <string>

namespace Corvanta::Drawing {

// 15 of the 62 letters and digits, none twice: a name for a shape, which no other shape of this client has.
// Clients that ask first in the same second give the same names; the shapes of each participant are kept
// apart, so that does no harm.
[[nodiscard]] std::string GenerateControlId();

}  // namespace Corvanta::Drawing
