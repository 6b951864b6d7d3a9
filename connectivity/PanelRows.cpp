#include "connectivity/PanelRows.h"

#include <limits>

#include "connectivity/ConnectivityText.h"
#include "ui/ControlColors.h"
#include "ui/FontManager.h"

namespace Corvanta::Connectivity {
namespace {

constexpr std::array<const char*, kFactCount> kLabels{
    "DOWNLOAD SPEED", "UPLOAD SPEED",  "ROUND TRIP TIME",  "JITTER",         "CONNECTION TYPE",
    "CPU TYPE",       "CPU APP USAGE", "CPU SYSTEM USAGE", "SYSTEM VERSION", "OPERATING SYSTEM"};
constexpr SDL_Color kLabelColor{255, 255, 255, 178};
constexpr SDL_Point kNowhere{std::numeric_limits<int>::min(), std::numeric_limits<int>::min()};
constexpr SDL_Color kPlateColor{107, 107, 107, 255};

[[nodiscard]] bool IsShown(const UI::TextTexture& value) {
    return !value.GetText().empty();
}

}  // namespace

PanelRows::PanelRows() {
    for (size_t index = 0; index < kFactCount; ++index) {
        Row& row = rows_[index];
        row.label.SetFontName(UI::FontMono);
        row.label.SetColor(kLabelColor);
        row.label.SetText(kLabels[index]);
        row.value.SetFontName(UI::FontMono);
        row.value.SetColor(UI::kWhite);
    }
    whole_.SetFontName(UI::FontMono);
    whole_.SetColor(UI::kWhite);
    SetAllUnknown();
}

void PanelRows::Set(Fact fact, const std::string& value) {
    rows_[static_cast<size_t>(fact)].value.SetText(value);
}

void PanelRows::SetAllUnknown() {
    for (Row& row : rows_) row.value.SetText(kUnknownText);
}

void PanelRows::SetFontSize(int size) {
    for (Row& row : rows_) {
        row.label.SetFontSize(size);
        row.value.SetFontSize(size);
    }
    whole_.SetFontSize(size);
}

int PanelRows::Count() const {
    int count = 0;
    for (const Row& row : rows_) {
        if (IsShown(row.value)) ++count;
    }
    return count;
}

int PanelRows::LabelHeight() const {
    for (const Row& row : rows_) {
        if (IsShown(row.value)) return row.label.MeasureText().y;
    }
    return 0;
}

void PanelRows::Render(SDL_Renderer* renderer, const SDL_Rect& panel, const PanelLayout& layout, int offset,
                       int hoveredInset) {
    int index = Count();
    // From the last to the first: a whole value hangs over the row below its own.
    for (size_t position = kFactCount; position-- > 0;) {
        Row& row = rows_[position];
        row.drawn = false;
        if (!IsShown(row.value)) continue;
        --index;
        const int height = row.label.MeasureText().y;
        const int top = RowTop(layout, height, index, offset);
        if (IsOutsideList(layout, top, height)) continue;
        row.drawn = true;
        RenderRow(renderer, panel, layout, top, hoveredInset, row);
    }
}

void PanelRows::RenderRow(SDL_Renderer* renderer, const SDL_Rect& panel, const PanelLayout& layout,
                          int rowTop, int hoveredInset, Row& row) {
    const SDL_Point place{panel.x + layout.valueColumn, rowTop};
    const int wholeWidth = row.value.MeasureText().x;
    int room = layout.valueWidth;
    if (wholeWidth > room && row.value.IsHovered()) {
        RenderWhole(renderer, panel, row.value, place, {wholeWidth, row.label.MeasureText().y});
        room -= hoveredInset;
    }
    row.value.SetMaxWidth(room);
    for (UI::TextTexture* text : {&row.label, &row.value}) {
        text->SetClipTop(layout.listTop);
        text->SetClipBottom(layout.listBottom);
    }
    row.label.RenderAt(renderer, {panel.x + layout.labelColumn, rowTop});
    row.value.RenderAt(renderer, place);
}

void PanelRows::RenderWhole(SDL_Renderer* renderer, const SDL_Rect& panel, const UI::TextTexture& value,
                            SDL_Point place, SDL_Point measured) {
    const SDL_Rect plate = ExpandedValuePlate(place, measured.x, measured.y);
    UI::FillRect(renderer, plate, kPlateColor);
    UI::ClearDrawColor(renderer);
    whole_.SetText(value.GetText());
    whole_.SetClipTop(panel.y);
    whole_.SetClipBottom(panel.y + panel.h);
    whole_.RenderAt(renderer, {plate.x, plate.y});
}

void PanelRows::OnHover(const SDL_Point& mouse) {
    for (Row& row : rows_) row.value.OnHover(row.drawn ? mouse : kNowhere);
}

void PanelRows::ReleaseTextures() {
    for (Row& row : rows_) {
        row.label.ReleaseTexture();
        row.value.ReleaseTexture();
    }
    whole_.ReleaseTexture();
}

}  // namespace Corvanta::Connectivity
