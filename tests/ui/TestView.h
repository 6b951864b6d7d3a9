// A view that draws nothing and counts what it is told, and the surroundings in which views are tested.
#pragma once

#include <SDL.h>
#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "tests/fake_platform/FakePlatform.h"
#include "tests/fake_platform/SdlRecorder.h"
#include "ui/AbstractView.h"

namespace Corvanta::Testing {

class TestView final : public UI::AbstractView {
public:
    explicit TestView(int id = 0) : AbstractView(id) {}

    void Render() override {}
    void OnResized(int width, int height) override { sizes.emplace_back(width, height); }
    void OnContentScaleChanged(float scale) override {
        scales.push_back(scale);
        sizesAtScale = sizes.size();
    }
    void OnRenderTargetChanged() override { ++targetChanges; }
    [[nodiscard]] bool TakeDirty() { return dirty_.exchange(false); }

    std::vector<std::pair<int, int>> sizes;
    std::vector<float> scales;
    // How many sizes were known when the scale came.
    size_t sizesAtScale = 0;
    int targetChanges = 0;
};

// Views on windows of SDL's own, without a display. Any handle but null will do.
class ViewTest : public FakePlatformTest {
protected:
    ViewTest() {
        Sdl().Reset();
        Sdl().ReplaceForeignWindows(true);
        Sdl().AllowHdrRendererFlag(true);
        SDL_setenv("SDL_VIDEODRIVER", "dummy", 1);
        SDL_setenv("SDL_RENDER_DRIVER", "software", 1);
        SDL_Init(SDL_INIT_VIDEO);
        Fake().ClearCalls();
    }
    ~ViewTest() override {
        SDL_Quit();
        Sdl().Reset();
    }

    [[nodiscard]] void* Handle() { return this; }
};

}  // namespace Corvanta::Testing
