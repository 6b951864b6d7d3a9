// The shape that a tool begins. Render thread.
#pragma once

#include <memory>
#include <string>

#include "drawing/Shape.h"
#include "platform/DrawToolState.h"

namespace Corvanta::Drawing {

class TextBox;

// A new shape for the chosen tool with its colours, widths and font; null for a tool that is none. The
// family's text of the record is not looked at.
[[nodiscard]] std::shared_ptr<Shape> MakeToolShape(const DrawToolState& state, const std::string& fontFamily);

// Gives a text the tool's font, of 1 canvas unit or more, and its colour, to be drawn anew. Its underline
// stays.
void ApplyTextTool(TextBox& text, const DrawToolState& state, const std::string& fontFamily);

}  // namespace Corvanta::Drawing
