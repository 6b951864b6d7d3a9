#include "drawing/DrawToolSettings.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <string_view>

#include "platform/Configuration.h"

namespace Corvanta::Drawing {

namespace {

constexpr const char* kComplexSelectedShape = "DrawToolState.ComplexSelectedShape";
constexpr const char* kPencilStrokeWidth = "DrawToolState.PencilStrokeWidth";
constexpr const char* kShapeStrokeWidth = "DrawToolState.ShapeStrokeWidth";
constexpr const char* kFontFamilyName = "DrawToolState.FontFamilyName";
constexpr const char* kFontSize = "DrawToolState.FontSize";
constexpr const char* kUseBoldFont = "DrawToolState.UseBoldFont";
constexpr const char* kUseItalicizedFont = "DrawToolState.UseItalicizedFont";
constexpr const char* kPrimaryColor = "DrawToolState.PrimaryColor";
constexpr const char* kSecondaryColor = "DrawToolState.SecondaryColor";
constexpr const char* kEraserStrokeWidth = "DrawToolState.EraserStrokeWidth";

constexpr std::string_view kDefaultFamily = "Arial";

// What the reader finds under the key, or the default.
template <typename Value>
Value Read(bool (*reader)(const char*, Value*), const char* key, Value defaultValue) {
    Value value = defaultValue;
    return reader(key, &value) ? value : defaultValue;
}

std::unique_ptr<char[]> ReadFamily() {
    int32_t size = 0;
    if (!Configuration_GetStringPropertySize(kFontFamilyName, &size) || size < 1) {
        auto text = std::make_unique<char[]>(kDefaultFamily.size() + 1);
        kDefaultFamily.copy(text.get(), kDefaultFamily.size());
        return text;
    }
    // One byte more than the text has, for its end.
    const int32_t room = std::min(size, std::numeric_limits<int32_t>::max() - 1) + 1;
    auto text = std::make_unique<char[]>(static_cast<size_t>(room));
    Configuration_GetPropertyString(kFontFamilyName, text.get(), room);
    return text;
}

}  // namespace

void LoadDrawToolSettings(DrawToolState& state) {
    state.selectedTool = DrawToolPencil;
    state.complexSelectedShape = Read<int32_t>(&Configuration_GetPropertyInt, kComplexSelectedShape, -1);
    if (state.complexSelectedShape < DrawToolArrow || state.complexSelectedShape > DrawToolRectangle) {
        state.complexSelectedShape = DrawToolRectangle;
    }
    state.pencilStrokeWidth = Read(&Configuration_GetPropertyDouble, kPencilStrokeWidth, 10.0);
    state.shapeStrokeWidth = Read(&Configuration_GetPropertyDouble, kShapeStrokeWidth, 20.0);

    std::unique_ptr<char[]> family = ReadFamily();
    delete[] state.fontFamilyName;
    state.fontFamilyName = family.release();

    state.fontSize = Read(&Configuration_GetPropertyDouble, kFontSize, 32.0);
    state.useBoldFont = Read(&Configuration_GetPropertyBoolean, kUseBoldFont, false);
    state.useItalicizedFont = Read(&Configuration_GetPropertyBoolean, kUseItalicizedFont, false);
    state.primaryColor = Read<uint32_t>(&Configuration_GetPropertyUint32, kPrimaryColor, 0xE85C41FF);
    state.secondaryColor = Read<uint32_t>(&Configuration_GetPropertyUint32, kSecondaryColor, 0xFFFFFFFF);
    state.eraserStrokeWidth = Read(&Configuration_GetPropertyDouble, kEraserStrokeWidth, 10.0);
}

void StoreDrawToolSettings(const DrawToolState& state) {
    Configuration_SetPropertyInt(kComplexSelectedShape, state.complexSelectedShape);
    Configuration_SetPropertyDouble(kPencilStrokeWidth, state.pencilStrokeWidth);
    Configuration_SetPropertyDouble(kShapeStrokeWidth, state.shapeStrokeWidth);
    Configuration_SetPropertyString(kFontFamilyName,
                                    state.fontFamilyName != nullptr ? state.fontFamilyName : "");
    Configuration_SetPropertyDouble(kFontSize, state.fontSize);
    Configuration_SetPropertyBoolean(kUseBoldFont, state.useBoldFont);
    Configuration_SetPropertyBoolean(kUseItalicizedFont, state.useItalicizedFont);
    Configuration_SetPropertyUint32(kPrimaryColor, state.primaryColor);
    Configuration_SetPropertyUint32(kSecondaryColor, state.secondaryColor);
    Configuration_SetPropertyDouble(kEraserStrokeWidth, state.eraserStrokeWidth);
}

}  // namespace Corvanta::Drawing
