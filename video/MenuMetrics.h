// Sizes of the tiles' menus, which follow the height of a tile. One width holds for every wall of the
// process.
#pragma once

namespace Corvanta::Video {

class VideoFrame;

// On a tile of the design's height of 160.
inline constexpr int kMenuWidth = 140;
inline constexpr int kWideMenuWidth = 145;
inline constexpr int kMenuItemHeight = 25;

// The width in use, in pixels of the design. Any thread.
[[nodiscard]] int CurrentMenuWidth();
void SetCurrentMenuWidth(int width);

struct MenuMetrics {
    int menuWidth = 0;
    int itemHeight = 0;
    int scrollbarWidth = 0;
};

// For tiles of that height, in logical pixels.
[[nodiscard]] MenuMetrics MenuMetricsFor(int tileHeight);

// Sizes the tile's menu, if it has one.
void ApplyMenuMetrics(VideoFrame& tile, const MenuMetrics& metrics);

}  // namespace Corvanta::Video
