#include "connectivity/PanelLayout.h"

#include "ui/Arithmetic.h"

namespace Corvanta::Connectivity {
namespace {

constexpr int kCloseSizeParts = 10;
constexpr int kCloseMarginParts = 20;
constexpr double kTopPaddingParts = 4.5;
constexpr double kBottomPaddingParts = 15.0;
constexpr int kRowGapParts = 213;
constexpr int kLabelColumnParts = 22;
constexpr double kValueColumnParts = 1.45;

}  // namespace

PanelLayout LayOutPanel(const SDL_Rect& panel) {
    const int size = panel.w / kCloseSizeParts;
    const int margin = panel.w / kCloseMarginParts;
    const int valueColumn = UI::Truncate(panel.w / kValueColumnParts);
    return {.closeSize = size,
            .closeCentre = {panel.x + panel.w - size / 2 - margin, panel.y + size / 2 + margin},
            .labelColumn = panel.w / kLabelColumnParts,
            .valueColumn = valueColumn,
            .valueWidth = panel.w - valueColumn,
            .rowGap = panel.w / kRowGapParts,
            .listTop = panel.y + UI::Truncate(panel.h / kTopPaddingParts),
            .listBottom = panel.y - UI::Truncate(panel.h / kBottomPaddingParts) + panel.h};
}

int ContentHeight(const PanelLayout& layout, int labelHeight, int rows) {
    return (labelHeight + layout.rowGap) * rows;
}

int RowTop(const PanelLayout& layout, int labelHeight, int row, int offset) {
    return (layout.rowGap + labelHeight) * row + layout.listTop + offset;
}

bool IsOutsideList(const PanelLayout& layout, int rowTop, int rowHeight) {
    return rowTop + rowHeight <= layout.listTop || rowTop >= layout.listBottom;
}

SDL_Rect ExpandedValuePlate(SDL_Point value, int valueWidth, int labelHeight) {
    return {value.x + labelHeight / 2, value.y + labelHeight, valueWidth + labelHeight / 2, labelHeight};
}

}  // namespace Corvanta::Connectivity
