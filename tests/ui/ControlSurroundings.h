// What controls need in order to be drawn in a test: a software renderer, a folder with pictures of one
// colour each and the product's fonts as working directory, a clock that the test turns, and readers of what
// was drawn. One thread.
#pragma once

#include <SDL.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "tests/fake_platform/PixelReader.h"
#include "tests/ui/WorkingFolder.h"
#include "ui/GraphicElementInterface.h"

namespace Corvanta::Testing {

// The controls' clock stands until it is turned.
class StandingClock final {
public:
    StandingClock();
    ~StandingClock();
    StandingClock(const StandingClock&) = delete;
    StandingClock& operator=(const StandingClock&) = delete;

    static void TurnMs(int64_t milliseconds) { nowNs_ += milliseconds * 1'000'000; }
    static void TurnNs(int64_t nanoseconds) { nowNs_ += nanoseconds; }

private:
    static inline int64_t nowNs_ = 0;
};

// A picture of one colour each, 0xAARRGGBB.
inline constexpr const char* kSomeIcon = "icons/some.png";
inline constexpr uint32_t kSomeColour = 0xFFFF8000;
inline constexpr uint32_t kBlack = 0xFF000000;
// The pieces of the scrollbar: first, middle and last.
inline constexpr uint32_t kFirstColour = 0xFFFF0000;
inline constexpr uint32_t kMiddleColour = 0xFF00FF00;
inline constexpr uint32_t kLastColour = 0xFF0000FF;

// One SDL_RenderCopy.
struct Copy {
    std::string texture;
    bool cut = false;
    SDL_Rect source{0, 0, 0, 0};
    SDL_Rect destination{0, 0, 0, 0};
};

class ControlTest : public ::testing::Test {
protected:
    ControlTest();
    ~ControlTest() override;

    [[nodiscard]] SDL_Renderer* Renderer() const { return reader_->Renderer(); }
    [[nodiscard]] Picture Read() const { return reader_->Read(); }
    // Black again, and nothing recorded.
    void Wipe();
    // What was drawn since.
    [[nodiscard]] static std::vector<SDL_Rect> Fills();
    [[nodiscard]] static std::vector<Copy> Copies();
    // The renderer goes with everything on it, and another takes its place.
    void ReplaceRenderer();
    // What it leaves behind after each drawing.
    [[nodiscard]] SDL_Color DrawColour() const;

    const StandingClock clock_;

private:
    void MakeRenderer();

    const WorkingFolder folder_;
    std::unique_ptr<PixelReader> reader_;
};

// An element that stands in a slot of another and writes down what it is told.
class SlotElement final : public UI::GraphicElementInterface {
public:
    explicit SlotElement(int slotWidth) : slotWidth_(slotWidth) {}

    void Render(SDL_Renderer* /*renderer*/, SDL_Point position) override {
        rect = {position.x, position.y, slotWidth_, slotWidth_};
        ++renders;
        lastPosition = position;
    }
    bool OnClick() override {
        ++clicks;
        return false;
    }
    void OnHover(const SDL_Point& mouse) override {
        ++hovers;
        lastMouse = mouse;
    }

    int renders = 0;
    int clicks = 0;
    int hovers = 0;
    SDL_Point lastPosition{0, 0};
    SDL_Point lastMouse{0, 0};

private:
    int slotWidth_;
};

[[nodiscard]] inline SDL_Point CentreOf(const UI::GraphicElementInterface& element) {
    return {element.rect.x + element.rect.w / 2, element.rect.y + element.rect.h / 2};
}

}  // namespace Corvanta::Testing

// So that values are compared and printed by the test library.
inline bool operator==(const SDL_Point& left, const SDL_Point& right) {
    return left.x == right.x && left.y == right.y;
}
inline bool operator==(const SDL_Rect& left, const SDL_Rect& right) {
    return left.x == right.x && left.y == right.y && left.w == right.w && left.h == right.h;
}
inline std::ostream& operator<<(std::ostream& stream, const SDL_Point& point) {
    return stream << point.x << ' ' << point.y;
}
inline std::ostream& operator<<(std::ostream& stream, const SDL_Rect& rect) {
    return stream << rect.x << ' ' << rect.y << ' ' << rect.w << ' ' << rect.h;
}
