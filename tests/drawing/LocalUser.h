// A manager with one canvas of 1280x720 units under a video of half that size, and the events, messages and
// reports of its local user. Time stands still but for what a gesture takes. One thread.
#pragma once

#include <SDL.h>

#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "drawing/DrawingCanvas.h"
#include "drawing/DrawingCanvasManager.h"
#include "drawing/DrawingSurface.h"
#include "drawing/TextBox.h"
#include "platform/DrawToolState.h"
#include "tests/fake_platform/FakePlatform.h"

namespace Corvanta::Testing {

class TestSurface final : public Drawing::DrawingSurface {
public:
    [[nodiscard]] Drawing::DrawingCanvas* GetMainCanvas() override { return canvas; }
    [[nodiscard]] SDL_Rect GetMainVideoArea() const override { return area; }
    void ReportHistoryState(bool canUndo, bool canRedo) override {
        reports.emplace_back(canUndo, canRedo);
        if (onReport) onReport();
    }

    Drawing::DrawingCanvas* canvas = nullptr;
    SDL_Rect area{100, 50, 640, 360};
    std::vector<std::pair<bool, bool>> reports;
    std::function<void()> onReport;
};

// Puts a clock that stands still in the place of the system's.
class HandClock final {
public:
    HandClock();
    ~HandClock();
    HandClock(const HandClock&) = delete;
    HandClock& operator=(const HandClock&) = delete;

    static void Turn(int milliseconds);
};

// All settings at the values that an empty configuration gives, drawing on.
DrawToolState ToolState(uint32_t tool);

// Events as the room's view dispatches them.
SDL_Event Motion(SDL_Point position);
SDL_Event ButtonDown(int button = SDL_BUTTON_LEFT);
SDL_Event ButtonUp(int button = SDL_BUTTON_LEFT);
SDL_Event KeyDown(int keycode);
SDL_Event KeyUp(int keycode);

class LocalUserTest : public FakePlatformTest {
protected:
    LocalUserTest();

    void Dispatch(const SDL_Event& event) { manager.Input().Dispatch(event); }
    void Choose(uint32_t tool) { manager.SetDrawToolState(ToolState(tool)); }
    // To a point of the canvas, in canvas units, which must be even.
    void MoveTo(SDL_Point point);
    void PressAt(SDL_Point point);
    void Release() { Dispatch(ButtonUp()); }
    // A stroke of the present tool.
    void Drag(SDL_Point from, SDL_Point to);
    // Finishes a rectangle of its own place, and returns it.
    std::shared_ptr<Drawing::Shape> DrawRectangle();
    void Type(int keycode);

    [[nodiscard]] const std::shared_ptr<Drawing::Shape>& Current() {
        return manager.LocalDrawings().CurrentShape();
    }
    // The shape in progress, which must be of that class.
    template <typename ShapeClass>
    [[nodiscard]] ShapeClass& CurrentAs() {
        return dynamic_cast<ShapeClass&>(*Current());
    }
    [[nodiscard]] Drawing::TextBox& Text() { return CurrentAs<Drawing::TextBox>(); }
    // A text at (200, 200), open, that has been drawn 80 wide and 40 high in canvas units.
    Drawing::TextBox& OpenText();

    // What the source holds of the local user.
    [[nodiscard]] std::vector<std::shared_ptr<Drawing::Shape>> OwnShapes() const {
        return source->ShapesOf("me");
    }
    static std::vector<std::string> SentTexts();
    static std::vector<nlohmann::json> Sent();
    // The last message; its shapes' ids.
    static nlohmann::json LastSent() { return Sent().back(); }
    static std::vector<std::string> IdsOf(const nlohmann::json& message);
    static std::vector<std::string> IdsOf(const std::vector<std::shared_ptr<Drawing::Shape>>& shapes);
    void Forget();

    HandClock clock;
    TestSurface surface;
    Drawing::DrawingCanvasManager manager{&surface};
    std::shared_ptr<Drawing::DrawingSource> source = manager.GetOrCreateSource("stream");
    Drawing::DrawingCanvas canvas;

private:
    int drawnRectangles_ = 0;
};

}  // namespace Corvanta::Testing
