// Where the parts of the connectivity panel stand. Plain values: logical pixels, halves and quotients cut
// towards zero.
#pragma once

#include <SDL.h>

namespace Corvanta::Connectivity {

struct PanelLayout {
    int closeSize = 0;
    SDL_Point closeCentre{0, 0};
    // Between the panel's left edge and the labels, the values.
    int labelColumn = 0;
    int valueColumn = 0;
    // Space for a value.
    int valueWidth = 0;
    int rowGap = 0;
    // Lines between which the rows are shown.
    int listTop = 0;
    int listBottom = 0;
};

[[nodiscard]] PanelLayout LayOutPanel(const SDL_Rect& panel);

// What that many rows need.
[[nodiscard]] int ContentHeight(const PanelLayout& layout, int labelHeight, int rows);

// The row's upper edge in a list that is scrolled by the offset.
[[nodiscard]] int RowTop(const PanelLayout& layout, int labelHeight, int row, int offset);

// Whether nothing of the row lies between the list's lines.
[[nodiscard]] bool IsOutsideList(const PanelLayout& layout, int rowTop, int rowHeight);

// Behind the whole text of a value that is too long for its column: one line below its row.
[[nodiscard]] SDL_Rect ExpandedValuePlate(SDL_Point value, int valueWidth, int labelHeight);

}  // namespace Corvanta::Connectivity
