// A test that draws controls without a display: one surface for the code under test, and one on which the
// test draws by bare SDL what it expects. Runs where icons/ and fonts/ lie. One thread.
#pragma once

#include <SDL.h>
#include <SDL_ttf.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "tests/fake_platform/CallLog.h"
#include "tests/fake_platform/FakePlatform.h"
#include "tests/fake_platform/PixelReader.h"
#include "tests/fake_platform/SdlRecorder.h"
#include "tests/ui/TextCalls.h"
#include "ui/FontManager.h"

// So that values are compared and printed by the test library.
inline bool operator==(const SDL_Rect& left, const SDL_Rect& right) {
    return left.x == right.x && left.y == right.y && left.w == right.w && left.h == right.h;
}
inline bool operator==(const SDL_Point& left, const SDL_Point& right) {
    return left.x == right.x && left.y == right.y;
}
inline std::ostream& operator<<(std::ostream& stream, const SDL_Rect& rect) {
    return stream << rect.x << ' ' << rect.y << ' ' << rect.w << ' ' << rect.h;
}
inline std::ostream& operator<<(std::ostream& stream, const SDL_Point& point) {
    return stream << point.x << ' ' << point.y;
}

namespace Corvanta::Testing {

// 40 x 40, 60 x 40 and 10 x 36 pixels.
inline const std::string kSquareIcon = "icons/cam.png";
inline const std::string kWideIcon = "icons/nativeStreamVolume.png";
inline const std::string kTallIcon = "icons/nativeStreamVolumeSliderThumb.png";
inline const std::string kOtherIcon = "icons/record-circle-white.png";
inline const std::string kMissingIcon = "icons/there-is-no-such-icon.png";

inline constexpr SDL_Color kOpaqueWhite{255, 255, 255, 255};

class ToolkitTest : public FakePlatformTest {
protected:
    static constexpr int kCanvasWidth = 320;
    static constexpr int kCanvasHeight = 240;

    ToolkitTest();
    ~ToolkitTest() override;

    [[nodiscard]] SDL_Renderer* Renderer() const { return drawn_.Renderer(); }
    void SetContentScale(float scale);
    // Both surfaces black again.
    void Clear();

    // On the surface of what is expected.
    void ExpectFill(const SDL_Rect& rect, SDL_Color color);
    void ExpectOutline(const SDL_Rect& rect, SDL_Color color);
    void ExpectIcon(const std::string& name, const SDL_Rect& destination);
    void ExpectIconPart(const std::string& name, const SDL_Rect& source, const SDL_Rect& destination);
    void ExpectText(const std::string& font, int size, const std::string& text, SDL_Point topLeft,
                    SDL_Color color = kOpaqueWhite, int style = TTF_STYLE_NORMAL);

    [[nodiscard]] ::testing::AssertionResult DrawnAsExpected();
    [[nodiscard]] ::testing::AssertionResult NothingDrawn();
    [[nodiscard]] Picture Drawn() const { return drawn_.Read(); }
    [[nodiscard]] bool DrawColourIsZero() const;

    // Pixels of a text in a font of that name and size.
    [[nodiscard]] static SDL_Point SizeOf(const std::string& font, int size, const std::string& text);

    // How many rasters were made since the calls were cleared.
    [[nodiscard]] static size_t Rebuilds() { return Calls().Count("SDL_CreateTextureFromSurface"); }

private:
    PixelReader drawn_{kCanvasWidth, kCanvasHeight};
    PixelReader expected_{kCanvasWidth, kCanvasHeight};
};

}  // namespace Corvanta::Testing
