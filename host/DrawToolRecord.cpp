#include "host/DrawToolRecord.h"

#include <cstring>

namespace Corvanta::Host {
namespace {

bool SharesAButton(DrawTool tool) {
    return tool >= DrawToolArrow && tool <= DrawToolRectangle;
}

}  // namespace

DrawToolRecord::~DrawToolRecord() {
    delete[] state_.fontFamilyName;
}

void DrawToolRecord::Load() {
    SDLinterface_LoadDrawToolState(&state_);
}

void DrawToolRecord::Send() const {
    SDLinterface_SetDrawToolState(&state_);
}

bool DrawToolRecord::HasFill() const {
    return Tool() == DrawToolEllipse || Tool() == DrawToolRectangle;
}

double DrawToolRecord::StrokeWidth() const {
    switch (Tool()) {
        case DrawToolPencil: return state_.pencilStrokeWidth;
        case DrawToolEraser: return state_.eraserStrokeWidth;
        case DrawToolText: return 0.0;
        default: return state_.shapeStrokeWidth;
    }
}

void DrawToolRecord::SetStrokeWidth(double width) {
    switch (Tool()) {
        case DrawToolPencil: state_.pencilStrokeWidth = width; break;
        case DrawToolEraser: state_.eraserStrokeWidth = width; break;
        case DrawToolText: break;
        default: state_.shapeStrokeWidth = width; break;
    }
}

std::string DrawToolRecord::FontFamily() const {
    return state_.fontFamilyName == nullptr ? std::string() : state_.fontFamilyName;
}

void DrawToolRecord::Choose(DrawTool tool) {
    state_.selectedTool = tool;
    if (SharesAButton(tool)) state_.complexSelectedShape = tool;
}

void DrawToolRecord::SetFontFamily(const std::string& family) {
    auto* const text = new char[family.size() + 1];
    std::memcpy(text, family.c_str(), family.size() + 1);
    delete[] state_.fontFamilyName;
    state_.fontFamilyName = text;
}

}  // namespace Corvanta::Host
