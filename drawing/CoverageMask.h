// Which pixels of a rectangle several primitives cover together, one bit each, and the union as rectangles,
// so that a stroke of a thousand pieces is drawn by one call. The rows of each primitive are those of
// SDL2_gfx's primitive of that name. A plain value; any thread.
#pragma once

#include <SDL.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "drawing/EllipseRows.h"

namespace Corvanta::Drawing {

// A few pixels by which a mask is covered again and again, one word to a row, its lowest bit the leftmost.
struct MaskStamp {
    // Of the upper left pixel from the place that it is put to.
    SDL_Point offset{0, 0};
    int width = 0;
    std::vector<uint64_t> rows;
};

class CoverageMask final {
public:
    // Pixels to a word of a row, and the most columns of a stamp.
    static constexpr int kWordBits = 64;

    // Whatever lies outside of the bounds is left out. Empty bounds hold nothing.
    explicit CoverageMask(const SDL_Rect& bounds);

    void AddRect(const SDL_Rect& rect);
    // Moved there.
    void AddRows(SDL_Point offset, std::span<const RowRun> rows);
    // Corners of 16 bits or little more. Fewer than three are nothing.
    void AddPolygon(std::span<const SDL_Point> corners);

    // False, and nothing is added, unless all of it is within the bounds.
    [[nodiscard]] bool AddStamp(SDL_Point place, const MaskStamp& stamp);
    // What is covered, seen from that place. Of a mask no wider than a stamp.
    [[nodiscard]] MaskStamp ToStamp(SDL_Point place) const;

    // Leaves out what the other one covers, which then covers what was left out and what stays. Its bounds
    // hold these, and both begin at a multiple of 64.
    void TakeFrom(CoverageMask& covered);

    // Appends rectangles that cover the same pixels, none twice. Runs that stay the same from row to row are
    // one rectangle.
    void AppendRectangles(std::vector<SDL_Rect>& rectangles) const;

private:
    using Word = uint64_t;
    struct Edge;

    // Both ends included, in either order; the row is within the bounds.
    void AddSpan(Word* row, int64_t from, int64_t to) {
        if (from > to) std::swap(from, to);
        from = std::max<int64_t>(from - bounds_.x, 0);
        to = std::min<int64_t>(to - bounds_.x, bounds_.w - 1);
        if (from > to) return;
        constexpr unsigned kLastBit = 63;
        Word* word = row + (from >> 6U);
        Word* const lastWord = row + (to >> 6U);
        const Word first = ~Word{0} << (static_cast<unsigned>(from) & kLastBit);
        const Word last = ~Word{0} >> (~static_cast<unsigned>(to) & kLastBit);
        if (word == lastWord) {
            *word |= first & last;
            return;
        }
        *word |= first;
        while (++word != lastWord) *word = ~Word{0};
        *word |= last;
    }
    void AddRowsBetween(std::span<Edge* const> edges, int top, int last);
    [[nodiscard]] Word* Row(int y) { return words_.data() + static_cast<size_t>(y - bounds_.y) * stride_; }

    SDL_Rect bounds_{0, 0, 0, 0};
    // Words to a row.
    size_t stride_ = 0;
    // One more than the rows have, for what a stamp in the last one does not reach.
    std::vector<Word> words_;
};

}  // namespace Corvanta::Drawing
