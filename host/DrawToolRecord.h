// The drawing tool's record as the host keeps it: loaded from the settings, changed by the palette, and
// handed to the library as a whole. Main thread only.
#pragma once

#include <cstdint>
#include <string>

#include "interface/SDLinterface.h"

namespace Corvanta::Host {

class DrawToolRecord final {
public:
    DrawToolRecord() = default;
    ~DrawToolRecord();
    DrawToolRecord(const DrawToolRecord&) = delete;
    DrawToolRecord& operator=(const DrawToolRecord&) = delete;

    // The settings of the last time, with the pencil chosen. Whether drawing is on stays as it is.
    void Load();
    // To the room, which keeps the settings; to nobody where there is none.
    void Send() const;

    [[nodiscard]] const DrawToolState& State() const { return state_; }
    [[nodiscard]] DrawTool Tool() const { return static_cast<DrawTool>(state_.selectedTool); }
    // The last chosen of those that share a button: arrow, dashed line, ellipse, rectangle.
    [[nodiscard]] DrawTool ComplexTool() const { return static_cast<DrawTool>(state_.complexSelectedShape); }
    // Whether the second colour fills what the tool draws.
    [[nodiscard]] bool HasFill() const;
    // Of the chosen tool, in canvas units; 0 for text, which has none.
    [[nodiscard]] double StrokeWidth() const;
    [[nodiscard]] std::string FontFamily() const;

    void SetEnabled(bool on) { state_.enabled = on; }
    void Choose(DrawTool tool);
    void SetStrokeWidth(double width);
    // 0xRRGGBBAA.
    void SetPrimaryColor(std::uint32_t color) { state_.primaryColor = color; }
    void SetSecondaryColor(std::uint32_t color) { state_.secondaryColor = color; }
    void SetFontFamily(const std::string& family);
    void SetFontSize(double size) { state_.fontSize = size; }
    void SetBold(bool on) { state_.useBoldFont = on; }
    void SetItalic(bool on) { state_.useItalicizedFont = on; }

private:
    DrawToolState state_{};
};

}  // namespace Corvanta::Host
