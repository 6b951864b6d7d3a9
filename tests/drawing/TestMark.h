// A shape for tests of canvases and sources: a filled rectangle that notes how it was used. Render thread.
#pragma once

#include <SDL.h>

#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "drawing/Shape.h"

namespace Corvanta::Testing {

class TestMark final : public Drawing::Shape {
public:
    // place: in canvas units. argb: 0xAARRGGBB.
    TestMark(std::string id, SDL_FRect place, uint32_t argb) : place_(place), argb_(argb) {
        controlId = std::move(id);
    }

    void Normalize(double canvasWidth, double canvasHeight) override {
        if (normalized) return;
        fractions_ = {static_cast<float>(place_.x / canvasWidth), static_cast<float>(place_.y / canvasHeight),
                      static_cast<float>(place_.w / canvasWidth),
                      static_cast<float>(place_.h / canvasHeight)};
        normalized = true;
    }

    void Render(SDL_Renderer* renderer) override {
        ++renders;
        if (log != nullptr) log->push_back(controlId);
        target = SDL_GetRenderTarget(renderer);
        SDL_GetRenderDrawBlendMode(renderer, &blendMode);
        SDL_RenderGetViewport(renderer, &viewport);
        SDL_SetRenderDrawColor(renderer, static_cast<Uint8>(argb_ >> 16U), static_cast<Uint8>(argb_ >> 8U),
                               static_cast<Uint8>(argb_), static_cast<Uint8>(argb_ >> 24U));
        const auto width = static_cast<float>(viewport.w);
        const auto height = static_cast<float>(viewport.h);
        const SDL_Rect area{static_cast<int>(fractions_.x * width), static_cast<int>(fractions_.y * height),
                            static_cast<int>(fractions_.w * width), static_cast<int>(fractions_.h * height)};
        SDL_RenderFillRect(renderer, &area);
        if (leavesBlendMode) SDL_SetRenderDrawBlendMode(renderer, SDL_BLENDMODE_NONE);
    }

    void SetStart(double x, double y) override {
        place_.x = static_cast<float>(x);
        place_.y = static_cast<float>(y);
        normalized = false;
    }
    void SetEnd(double /*x*/, double /*y*/) override {}
    [[nodiscard]] nlohmann::json ToJson() override { return {}; }
    void ReleaseTextures(SDL_Renderer* renderer) override { released.push_back(renderer); }

    bool normalized = false;
    int renders = 0;
    // Of the last drawing.
    SDL_Texture* target = nullptr;
    SDL_BlendMode blendMode = SDL_BLENDMODE_INVALID;
    SDL_Rect viewport{};
    std::vector<SDL_Renderer*> released;
    // Its id goes there with each drawing.
    std::vector<std::string>* log = nullptr;
    // It ends with another blend mode than it found.
    bool leavesBlendMode = false;

private:
    SDL_FRect place_;
    SDL_FRect fractions_{};
    uint32_t argb_;
};

}  // namespace Corvanta::Testing
