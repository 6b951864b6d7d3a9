// Shapes as other clients send them. Any thread.
#pragma once

#include <memory>
#include <nlohmann/json_fwd.hpp>

#include "drawing/Shape.h"

namespace Corvanta::Drawing {

// One element of a message's "shapes", which is not to be read again: what is long is moved out of it, also
// when this throws. Null for a class of shape that this client does not know, which is logged. Throws what
// the JSON library throws at a bad or missing field, and what ParseFontText throws at a text's font.
[[nodiscard]] std::shared_ptr<Shape> ReadShape(nlohmann::json&& element);

}  // namespace Corvanta::Drawing
