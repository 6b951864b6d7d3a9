// The stroke of the eraser: it writes full transparency into the texture that is the target, which is the
// layer of the participant who made it.
#pragma once

#include <mutex>

#include "drawing/LinePath.h"
#include "ui/LockOrder.h"

namespace Corvanta::Drawing {

class ErasedLinePath final : public LinePath {
public:
    ErasedLinePath();
    // The path's points and width; the colour becomes (0, 0, 0, 0).
    explicit ErasedLinePath(const LinePath& path);
    explicit ErasedLinePath(const nlohmann::json& data);

    void Render(SDL_Renderer* renderer) override;
    [[nodiscard]] bool IsSolid(SDL_Renderer* /*renderer*/) const override { return false; }
    // Sets the colour to opaque black, as which an eraser travels.
    [[nodiscard]] nlohmann::json ToJson() override;

private:
    // It is written again for each newcomer, on another thread than the render thread's.
    UI::OrderedMutex<std::mutex, UI::LockRank::Leaf> colorMutex_;
    // guards: color, once the shape is shared
};

}  // namespace Corvanta::Drawing
