// What tests of canvases and sources share: a canvas on a software renderer of 640 by 360 pixels, whose
// reference size is 1280 by 720 canvas units unless a test says otherwise.
#pragma once

#include <SDL.h>

#include <memory>
#include <string>
#include <vector>

#include "drawing/DrawingCanvas.h"
#include "tests/drawing/TestMark.h"
#include "tests/fake_platform/FakePlatform.h"
#include "tests/fake_platform/PixelReader.h"
#include "tests/fake_platform/SdlRecorder.h"

namespace Corvanta::Testing {

constexpr uint32_t kBlack = 0xFF000000;
constexpr uint32_t kRed = 0xFFFF0000;
constexpr uint32_t kGreen = 0xFF00FF00;
constexpr uint32_t kBlue = 0xFF0000FF;
constexpr SDL_Rect kAll{0, 0, 0, 0};
constexpr SDL_Rect kScreen{0, 0, 640, 360};
constexpr SDL_FRect kWholeCanvas{0, 0, 1280, 720};
constexpr SDL_FRect kLeftHalf{0, 0, 640, 720};
constexpr SDL_FRect kRightHalf{640, 0, 640, 720};

class CanvasTest : public FakePlatformTest {
protected:
    CanvasTest() { Sdl().Reset(); }
    ~CanvasTest() override {
        if (canvas != nullptr) canvas->ReleaseResources(Renderer());
        canvas.reset();
        Sdl().Reset();
    }

    [[nodiscard]] SDL_Renderer* Renderer() const { return reader.Renderer(); }

    static std::shared_ptr<TestMark> Mark(const std::string& id, const SDL_FRect& place = kWholeCanvas,
                                          uint32_t argb = kRed) {
        return std::make_shared<TestMark>(id, place, argb);
    }
    std::shared_ptr<TestMark> Add(const std::string& participant, const std::string& id,
                                  const SDL_FRect& place = kWholeCanvas, uint32_t argb = kRed) const {
        auto mark = Mark(id, place, argb);
        canvas->AddShape(participant, mark);
        return mark;
    }

    // One frame of a tile that fills the screen.
    Picture Frame(const SDL_Rect& source = kAll, const SDL_Rect& destination = kScreen) {
        reader.Fill(kBlack);
        canvas->Render(Renderer(), source, destination);
        return reader.Read();
    }
    // The same, and the SDL calls in it.
    std::vector<Call> CallsOfFrame() {
        Calls().Clear();
        canvas->Render(Renderer(), kAll, kScreen);
        return Calls().All();
    }

    PixelReader reader{kScreen.w, kScreen.h};
    std::unique_ptr<Drawing::DrawingCanvas> canvas = std::make_unique<Drawing::DrawingCanvas>();
};

// A canvas that has its size.
class SizedCanvasTest : public CanvasTest {
protected:
    SizedCanvasTest() { canvas->Resize(Renderer(), 1280, 720); }
};

}  // namespace Corvanta::Testing
