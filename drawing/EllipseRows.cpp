#include "drawing/EllipseRows.h"

#include <cstddef>
#include <cstdint>
#include <limits>

namespace Corvanta::Drawing {
namespace {

// The outline is walked on a grid finer than the pixels.
[[nodiscard]] int OverscanOf(int radiusX, int radiusY) {
    if (radiusX >= 512 || radiusY >= 512) return 1;
    return radiusX >= 256 || radiusY >= 256 ? 2 : 4;
}

constexpr int kNoColumn = -1;

// How far each column from the centre on reaches up and down. A column can be left out by rounding.
class Columns final {
public:
    Columns(int radiusX, int radiusY) : heights_(static_cast<size_t>(radiusX) + 1, kNoColumn) {
        heights_.front() = radiusY;
        if (radiusX > 0 && radiusY > 0) Walk(radiusX, radiusY);
        if (radiusX > 0 && radiusY == 0) heights_.assign(heights_.size(), 0);
    }

    [[nodiscard]] const std::vector<int>& Heights() const { return heights_; }

private:
    void Walk(int radiusX, int radiusY) {
        const bool wraps = IsWithinLibrary(radiusX, radiusY);
        const auto narrow = [wraps](int64_t value) { return wraps ? static_cast<int32_t>(value) : value; };
        const int overscan = OverscanOf(radiusX, radiusY);
        const int64_t squareX = int64_t{radiusX} * radiusX * overscan * overscan;
        const int64_t squareY = int64_t{radiusY} * radiusY * overscan * overscan;
        int64_t x = 0;
        int64_t y = int64_t{radiusY} * overscan;
        int64_t deltaX = 0;
        int64_t deltaY = 2 * squareX * y;
        int64_t error = narrow(squareY - squareX * y + squareX / 4);
        int64_t lastX = 0;
        int64_t lastY = radiusY;
        while (deltaX <= deltaY) {
            ++x;
            deltaX = narrow(deltaX + 2 * squareY);
            error = narrow(error + deltaX + squareY);
            if (error >= 0) {
                --y;
                deltaY = narrow(deltaY - 2 * squareX);
                error = narrow(error - deltaY);
            }
            if (x / overscan == lastX) continue;
            lastX = x / overscan;
            lastY = y / overscan;
            Set(lastX, lastY);
        }
        if (y <= 0) return;
        error = narrow(squareY * x * (x + 1) + (squareY + 3) / 4 + squareX * (y - 1) * (y - 1) -
                       squareX * squareY);
        while (y > 0) {
            --y;
            deltaY = narrow(deltaY - 2 * squareX);
            error = narrow(error + squareX - deltaY);
            if (error <= 0) {
                ++x;
                deltaX = narrow(deltaX + 2 * squareY);
                error = narrow(error + deltaX);
            }
            if (x / overscan == lastX) continue;
            lastX = x / overscan;
            if (lastY - 1 >= y / overscan) Set(lastX, lastY - 1);
            lastY = y / overscan;
        }
    }
    void Set(int64_t column, int64_t height) {
        if (static_cast<size_t>(column) >= heights_.size())
            heights_.resize(static_cast<size_t>(column) + 1, kNoColumn);
        heights_[static_cast<size_t>(column)] = static_cast<int>(height);
    }

    std::vector<int> heights_;
};

}  // namespace

std::vector<RowRun> EllipseRows(int radiusX, int radiusY) {
    if (radiusX < 0 || radiusY < 0) return {};
    const Columns columns(radiusX, radiusY);
    const std::vector<int>& heights = columns.Heights();
    const int count = static_cast<int>(heights.size());
    std::vector<int> gaps;
    for (int x = 0; x < count; ++x) {
        if (heights[static_cast<size_t>(x)] == kNoColumn) gaps.push_back(x);
    }
    std::vector<RowRun> rows;
    const auto add = [&](int y, int from, int to) {
        if (from > to) return;
        rows.push_back({y, from, to});
        if (y > 0) rows.push_back({-y, from, to});
    };
    // Columns get no higher away from the centre.
    int widest = count - 1;
    for (int y = 0; y <= radiusY; ++y) {
        while (widest >= 0 && heights[static_cast<size_t>(widest)] < y) --widest;
        int from = 0;
        for (const int gap : gaps) {
            if (gap > widest) break;
            if (from == 0) {
                add(y, 1 - gap, gap - 1);
            } else {
                add(y, from, gap - 1);
                add(y, 1 - gap, -from);
            }
            from = gap + 1;
        }
        if (from == 0) {
            add(y, -widest, widest);
        } else {
            add(y, from, widest);
            add(y, -widest, -from);
        }
    }
    return rows;
}

bool IsWithinLibrary(int radiusX, int radiusY) {
    const int overscan = OverscanOf(radiusX, radiusY);
    const int64_t x = int64_t{radiusX} * overscan;
    const int64_t y = int64_t{radiusY} * overscan;
    return 2 * x * x * y + 2 * y * y <= std::numeric_limits<int32_t>::max();
}

}  // namespace Corvanta::Drawing
