#include "ui/Divider.h"

#include "ui/ControlColors.h"

namespace Corvanta::UI {

Divider::Divider(int lineWidth, int lineHeight)
    : Button(lineWidth, lineHeight, LabelPlace::Beside, ButtonStyle::Plain) {}

void Divider::Render(SDL_Renderer* renderer, SDL_Point centre) {
    PlaceAround(centre);
    FillRect(renderer, rect, colour);
    ClearDrawColor(renderer);
}

}  // namespace Corvanta::UI
