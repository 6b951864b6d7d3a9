// A thin translucent line between controls, drawn centred on the position. Render thread only.
#pragma once

#include "ui/GraphicElementInterface.h"

namespace Corvanta::UI {

class Divider : public GraphicElementInterface {
public:
    Divider(int width, int height);

    void Render(SDL_Renderer* renderer, SDL_Point position) override;
    bool OnClick() override { return false; }

    SDL_Color colour{255, 255, 255, 31};
};

}  // namespace Corvanta::UI
