// Where the parts of a button stand. Plain values.
#pragma once

#include <SDL.h>

namespace Corvanta::UI {

struct ButtonShape {
    // The button on screen, and the point that it was drawn around.
    SDL_Rect rect{0, 0, 0, 0};
    SDL_Point centre{0, 0};
    // Requested height; icons follow it.
    int height = 0;
    bool labelBelow = false;
};

// Icon of a plain button: in the middle, over its label, or at the left of its row. pictureSize: pixels of
// the icon.
[[nodiscard]] SDL_Rect LayoutButtonIcon(const ButtonShape& shape, SDL_Point pictureSize, bool fitHeight,
                                        bool hasLabel);
// Icon of a toggle. flat: as high as the button.
[[nodiscard]] SDL_Rect LayoutToggleIcon(const ButtonShape& shape, SDL_Point pictureSize, bool flat,
                                        bool showLabel);
// Badge at the upper right corner of a toggle's icon.
[[nodiscard]] SDL_Rect LayoutBadge(const SDL_Rect& icon, SDL_Point pictureSize, int buttonHeight);

// Font size of a label, and where the label of that size stands.
[[nodiscard]] int LabelFontSize(const ButtonShape& shape, float labelSizeRatio);
[[nodiscard]] SDL_Point LayoutLabel(const ButtonShape& shape, SDL_Point textSize);

}  // namespace Corvanta::UI
