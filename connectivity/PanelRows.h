// The ten rows of the connectivity panel: a label and a value each. A row whose value is empty is not there,
// and the rows below it move up. Render thread only.
#pragma once

#include <SDL.h>

#include <array>
#include <cstddef>
#include <string>

#include "connectivity/PanelLayout.h"
#include "ui/TextTexture.h"

namespace Corvanta::Connectivity {

// In the order of the rows.
enum class Fact : size_t {
    DownloadSpeed,
    UploadSpeed,
    RoundTripTime,
    Jitter,
    ConnectionType,
    CpuType,
    CpuAppUsage,
    CpuSystemUsage,
    SystemVersion,
    OperatingSystem,
};

inline constexpr size_t kFactCount = 10;

class PanelRows final {
public:
    // Every value is unknown.
    PanelRows();

    // The empty text takes the row away.
    void Set(Fact fact, const std::string& value);
    void SetAllUnknown();
    void SetFontSize(int size);

    // How many rows there are, and the height of the first one's label.
    [[nodiscard]] int Count() const;
    [[nodiscard]] int LabelHeight() const;

    // Draws what lies between the list's lines. hoveredInset: what a scrollbar takes from the width of a long
    // value under the mouse.
    void Render(SDL_Renderer* renderer, const SDL_Rect& panel, const PanelLayout& layout, int offset,
                int hoveredInset);
    void OnHover(const SDL_Point& mouse);
    void ReleaseTextures();

private:
    struct Row {
        UI::TextTexture label;
        UI::TextTexture value;
        // By the last drawing. Out of sight, a row is under no mouse.
        bool drawn = false;
    };

    void RenderRow(SDL_Renderer* renderer, const SDL_Rect& panel, const PanelLayout& layout, int rowTop,
                   int hoveredInset, Row& row);
    // measured: the value's width and the height of a line.
    void RenderWhole(SDL_Renderer* renderer, const SDL_Rect& panel, const UI::TextTexture& value,
                     SDL_Point place, SDL_Point measured);

    std::array<Row, kFactCount> rows_;
    // The whole of the long value under the mouse. A raster of its own, so that the shortened one stays.
    UI::TextTexture whole_;
};

}  // namespace Corvanta::Connectivity
