#include "drawing/ToolShape.h"

#include <SDL_ttf.h>

#include <algorithm>

#include "drawing/Ellipse.h"
#include "drawing/ErasedLinePath.h"
#include "drawing/Line.h"
#include "drawing/LinePath.h"
#include "drawing/Rectangle.h"
#include "drawing/TextBox.h"

namespace Corvanta::Drawing {

namespace {

// In canvas units. The size goes out rounded, and readers refuse 0.
constexpr double kSmallestFont = 1;

// Cut to whole units, of which the low 32 bits count; 0 for what no 64-bit integer holds.
uint32_t ToUnits(double width) {
    constexpr double kLimit = 9223372036854775808.0;
    if (!(width >= -kLimit && width < kLimit)) return 0;
    return static_cast<uint32_t>(static_cast<int64_t>(width));
}

std::shared_ptr<Shape> MakePencil(const DrawToolState& state) {
    auto stroke = std::make_shared<LinePath>();
    stroke->color = Color(state.primaryColor);
    stroke->strokeWidth = ToUnits(state.pencilStrokeWidth);
    return stroke;
}

std::shared_ptr<Shape> MakeLine(const DrawToolState& state) {
    auto line = std::make_shared<Line>();
    line->SetColor(Color(state.primaryColor));
    line->strokeWidth = ToUnits(state.shapeStrokeWidth);
    line->arrow = state.selectedTool == DrawToolArrow;
    if (state.selectedTool == DrawToolDashedLine) line->dash = ToUnits(2 * state.shapeStrokeWidth);
    return line;
}

// A rectangle or an ellipse.
template <typename Box>
std::shared_ptr<Shape> MakeBox(const DrawToolState& state) {
    auto box = std::make_shared<Box>();
    box->strokeColor = Color(state.primaryColor);
    box->fillColor = Color(state.secondaryColor);
    box->strokeWidth = ToUnits(state.shapeStrokeWidth);
    return box;
}

std::shared_ptr<Shape> MakeText(const DrawToolState& state, const std::string& fontFamily) {
    auto text = std::make_shared<TextBox>();
    text->state = TextBox::State::Editing;
    ApplyTextTool(*text, state, fontFamily);
    return text;
}

std::shared_ptr<Shape> MakeEraser(const DrawToolState& state) {
    auto stroke = std::make_shared<ErasedLinePath>();
    stroke->strokeWidth = ToUnits(state.eraserStrokeWidth);
    return stroke;
}

}  // namespace

std::shared_ptr<Shape> MakeToolShape(const DrawToolState& state, const std::string& fontFamily) {
    switch (state.selectedTool) {
        case DrawToolPencil: return MakePencil(state);
        case DrawToolLine:
        case DrawToolArrow:
        case DrawToolDashedLine: return MakeLine(state);
        case DrawToolEllipse: return MakeBox<Ellipse>(state);
        case DrawToolRectangle: return MakeBox<Rectangle>(state);
        case DrawToolText: return MakeText(state, fontFamily);
        case DrawToolEraser: return MakeEraser(state);
        default: return nullptr;
    }
}

void ApplyTextTool(TextBox& text, const DrawToolState& state, const std::string& fontFamily) {
    text.fontFamily = fontFamily;
    // In this order: what is no number is the smallest.
    text.fontSize = std::max(kSmallestFont, state.fontSize);
    text.fontStyle &= ~(TTF_STYLE_BOLD | TTF_STYLE_ITALIC);
    if (state.useBoldFont) text.fontStyle |= TTF_STYLE_BOLD;
    if (state.useItalicizedFont) text.fontStyle |= TTF_STYLE_ITALIC;
    text.color = Color(state.primaryColor);
    text.normalized = false;
}

}  // namespace Corvanta::Drawing
