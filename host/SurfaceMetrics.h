// The size of the room's surface in the two units that meet in the host: the desktop's logical pixels, in
// which the toolkit lays windows out, and the physical pixels, in which the X server measures them. Plain
// values.
#pragma once

namespace Corvanta::Host {

// The library resizes the native window to the very numbers that it is told, and the X server takes them as
// physical pixels. So the library is given physical sizes with a content scale of 1, and a scaled desktop
// reaches it as the window scale, by which it enlarges its controls.
constexpr float kContentScale = 1.0F;

struct SurfaceMetrics {
    int physicalWidth = 0;
    int physicalHeight = 0;
    float windowScale = 1.0F;

    bool operator==(const SurfaceMetrics&) const = default;
};

// `pixelRatio` is the number of physical pixels to one logical pixel. Rounds as the toolkit does for the
// native window; no side is below 1.
[[nodiscard]] SurfaceMetrics MetricsOf(int logicalWidth, int logicalHeight, double pixelRatio);

}  // namespace Corvanta::Host
