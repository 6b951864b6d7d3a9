// A thin translucent line between controls. A button that does nothing, so that it stands in the same lists
// as they. Render thread only.
#pragma once

#include "ui/Button.h"

namespace Corvanta::UI {

class Divider final : public Button {
public:
    Divider(int width, int height);

    void Render(SDL_Renderer* renderer, SDL_Point centre) override;
    bool OnClick() override { return false; }

    SDL_Color colour{255, 255, 255, 31};
};

}  // namespace Corvanta::UI
