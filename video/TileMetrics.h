// Where the overlays of a tile stand: lengths that follow its size, and places in its rectangle. Plain values
// in logical pixels, any thread. Places are asked only for tiles that IsShowable takes.
#pragma once

#include <SDL.h>

namespace Corvanta::Video {

// n pixels on a tile of the design's height of 160.
[[nodiscard]] int Scaled(int displayHeight, int n);

// The scale of an avatar, which is designed for the same height.
[[nodiscard]] double AvatarScale(int displayHeight);

// Whether the rectangle is one in which overlays could be seen: it has an area, and neither its sides nor its
// place are beyond any window.
[[nodiscard]] bool IsShowable(const SDL_Rect& tile);

// A control of the same width and height, by its centre.
struct SquarePlace {
    int size = 0;
    SDL_Point centre{0, 0};
};

// The connection button at the bottom left; what stands right of it begins at its ConnectionButtonWidth.
[[nodiscard]] SquarePlace ConnectionButtonPlace(const SDL_Rect& tile);
[[nodiscard]] int ConnectionButtonWidth(const SDL_Rect& tile);
// The sign for main video or for a muted microphone, xOffset from the left edge.
[[nodiscard]] SDL_Rect SignPlace(const SDL_Rect& tile, int xOffset);

// Badges in a row from the right edge, one after the other.
class BadgeRow final {
public:
    explicit BadgeRow(const SDL_Rect& tile);
    // The next badge to the left; pictureSize in pixels, (0, 0) for a picture that is not there.
    [[nodiscard]] SDL_Rect Next(SDL_Point pictureSize);

private:
    const SDL_Rect tile_;
    const int height_;
    int offset_ = 0;
};

// Buttons below each other at the right edge, and the menu that hangs on the last one.
class ButtonColumn final {
public:
    explicit ButtonColumn(const SDL_Rect& tile);
    [[nodiscard]] SquarePlace Next();
    // Top-left corner of the menu beside the button that Next gave last.
    [[nodiscard]] SDL_Point MenuPlace(int menuWidth) const;

private:
    const SDL_Rect tile_;
    const int size_;
    int y_ = 0;
    SDL_Point last_{0, 0};
};

// What the button column keeps free beside the name.
[[nodiscard]] int ReservedWidth(const SDL_Rect& tile);
// How far right the name may reach.
[[nodiscard]] int NameWidth(const SDL_Rect& tile);

// Around the middle of the tile.
[[nodiscard]] SDL_Rect Centred(const SDL_Rect& tile, SDL_Point size);
[[nodiscard]] SDL_Rect GripPlace(const SDL_Rect& tile);
[[nodiscard]] SDL_Rect LostConnectionIconPlace(const SDL_Rect& tile);
// Top-left corner of the words below that icon.
[[nodiscard]] SDL_Point LostConnectionTextPlace(const SDL_Rect& tile, int textWidth);

}  // namespace Corvanta::Video
