#include "ui/Divider.h"

namespace Corvanta::UI {

Divider::Divider(int lineWidth, int lineHeight) {
    width = lineWidth;
    height = lineHeight;
}

void Divider::Render(SDL_Renderer* renderer, SDL_Point position) {
    rect = {position.x - width / 2, position.y - height / 2, width, height};
    SDL_SetRenderDrawColor(renderer, colour.r, colour.g, colour.b, colour.a);
    SDL_RenderFillRect(renderer, &rect);
    SDL_SetRenderDrawColor(renderer, 0, 0, 0, 0);
}

}  // namespace Corvanta::UI
