// The rows of a filled ellipse, relative to its centre, with the pixels of SDL2_gfx's ellipse and circle,
// whose arithmetic is of 32 bits and wraps: from a circle of radius 206 on it is a little flat at the sides,
// and an ellipse as large as a layer falls to pieces. Such a large one is an ellipse here. Plain values.
#pragma once

#include <vector>

namespace Corvanta::Drawing {

// Both ends included.
struct RowRun {
    int y = 0;
    int from = 0;
    int to = 0;
};

// Radii of 16 bits; nothing when one is below 0. No pixel is in two runs.
[[nodiscard]] std::vector<RowRun> EllipseRows(int radiusX, int radiusY);

// Whether SDL2_gfx draws an ellipse of these radii that can be told for one.
[[nodiscard]] bool IsWithinLibrary(int radiusX, int radiusY);

}  // namespace Corvanta::Drawing
