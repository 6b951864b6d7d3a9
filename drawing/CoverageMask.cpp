#include "drawing/CoverageMask.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <utility>

namespace Corvanta::Drawing {
namespace {

constexpr int64_t kOne = 65536;
constexpr size_t kUsualCorners = 4;

// The pixel nearest to a place in 1/65536.
[[nodiscard]] int64_t Round(int64_t place) {
    return (place + kOne / 2) >> 16U;
}

// A run of covered pixels, its end excluded, and the row in which it began.
struct Run {
    int from = 0;
    int to = 0;
    int top = 0;
};

}  // namespace

// One side of a polygon, walked downwards. Where it crosses row y is
// ((65536 * (y - y1)) / (y2 - y1)) * (x2 - x1) + 65536 * x1 with an integer division. The quotient is the
// upper half of a sum of rounded-up reciprocals, which is exact since no height has more than 16 bits.
struct CoverageMask::Edge {
    Edge() = default;
    // upper.y is less than lower.y.
    Edge(SDL_Point upper, SDL_Point lower, int lowestRow)
        : top(upper.y),
          last(lower.y == lowestRow ? lower.y : lower.y - 1),
          start(kOne * upper.x),
          width(lower.x - upper.x),
          step(((uint64_t{1} << 48U) - 1) / static_cast<uint64_t>(lower.y - upper.y) + 1) {}

    void Skip(int rows) { sum = step * static_cast<uint64_t>(rows); }
    // The crossing of the row, and on to the next.
    int64_t Next() {
        const int64_t crossing = static_cast<int64_t>(sum >> 32U) * width + start;
        sum += step;
        return crossing;
    }

    // Rows that it crosses, both included.
    int top = 0;
    int last = -1;
    // In 1/65536.
    int64_t start = 0;
    int64_t width = 0;
    uint64_t step = 0;
    uint64_t sum = 0;
};

CoverageMask::CoverageMask(const SDL_Rect& bounds) {
    if (SDL_RectEmpty(&bounds) == SDL_TRUE) return;
    bounds_ = bounds;
    stride_ = (static_cast<size_t>(bounds.w) + kWordBits - 1) / kWordBits;
    words_.resize(stride_ * static_cast<size_t>(bounds.h) + 1);
}

void CoverageMask::AddRect(const SDL_Rect& rect) {
    SDL_Rect inside;
    if (SDL_IntersectRect(&rect, &bounds_, &inside) == SDL_FALSE) return;
    for (int y = inside.y; y < inside.y + inside.h; ++y) AddSpan(Row(y), inside.x, inside.x + inside.w - 1);
}

void CoverageMask::AddRows(SDL_Point offset, std::span<const RowRun> rows) {
    const int end = bounds_.y + bounds_.h;
    for (const RowRun& run : rows) {
        const int y = offset.y + run.y;
        if (y >= bounds_.y && y < end) AddSpan(Row(y), offset.x + run.from, offset.x + run.to);
    }
}

void CoverageMask::AddPolygon(std::span<const SDL_Point> corners) {
    if (corners.size() < 3 || words_.empty()) return;
    const auto [highest, lowest] = std::minmax_element(
        corners.begin(), corners.end(), [](const SDL_Point& a, const SDL_Point& b) { return a.y < b.y; });
    const int firstRow = std::max(highest->y, bounds_.y);
    const int lastRow = std::min(lowest->y, bounds_.y + bounds_.h - 1);
    if (firstRow > lastRow) return;

    std::array<Edge, kUsualCorners> few;
    std::vector<Edge> many(corners.size() > few.size() ? corners.size() : 0);
    std::array<Edge*, kUsualCorners> fewActive{};
    std::vector<Edge*> manyActive(many.size());
    Edge* const edges = many.empty() ? few.data() : many.data();
    Edge** const active = many.empty() ? fewActive.data() : manyActive.data();

    size_t count = 0;
    SDL_Point from = corners.back();
    for (const SDL_Point& to : corners) {
        if (from.y != to.y) {
            Edge edge = from.y < to.y ? Edge(from, to, lowest->y) : Edge(to, from, lowest->y);
            if (edge.last >= firstRow && edge.top <= lastRow) {
                if (edge.top < firstRow) edge.Skip(firstRow - edge.top);
                edges[count++] = edge;
            }
        }
        from = to;
    }
    // From band to band, in each of which the same edges cross every row.
    for (int y = firstRow; y <= lastRow;) {
        int until = lastRow;
        size_t activeCount = 0;
        for (Edge* edge = edges; edge != edges + count; ++edge) {
            if (edge->last < y) continue;
            if (edge->top > y) {
                until = std::min(until, edge->top - 1);
            } else {
                until = std::min(until, edge->last);
                active[activeCount++] = edge;
            }
        }
        AddRowsBetween({active, activeCount}, y, until);
        y = until + 1;
    }
}

void CoverageMask::AddRowsBetween(std::span<Edge* const> edges, int top, int last) {
    Word* row = Row(top);
    if (edges.size() == 2) {
        Edge left = *edges[0];
        Edge right = *edges[1];
        for (int y = top; y <= last; ++y, row += stride_) {
            const int64_t a = left.Next();
            const int64_t b = right.Next();
            AddSpan(row, Round(std::min(a, b) + 1), Round(std::max(a, b) - 1));
        }
        *edges[0] = left;
        *edges[1] = right;
        return;
    }
    std::array<int64_t, kUsualCorners> few{};
    std::vector<int64_t> many(edges.size() > few.size() ? edges.size() : 0);
    int64_t* const crossings = many.empty() ? few.data() : many.data();
    for (int y = top; y <= last; ++y, row += stride_) {
        for (size_t i = 0; i < edges.size(); ++i) crossings[i] = edges[i]->Next();
        std::sort(crossings, crossings + edges.size());
        for (size_t i = 0; i + 1 < edges.size(); i += 2)
            AddSpan(row, Round(crossings[i] + 1), Round(crossings[i + 1] - 1));
    }
}

bool CoverageMask::AddStamp(SDL_Point place, const MaskStamp& stamp) {
    const int left = place.x + stamp.offset.x - bounds_.x;
    const int top = place.y + stamp.offset.y - bounds_.y;
    const int height = static_cast<int>(stamp.rows.size());
    if (left < 0 || top < 0 || left + stamp.width > bounds_.w || top + height > bounds_.h) return false;
    const unsigned shift = static_cast<unsigned>(left) % kWordBits;
    Word* word = words_.data() + static_cast<size_t>(top) * stride_ + static_cast<size_t>(left) / kWordBits;
    for (const Word bits : stamp.rows) {
        word[0] |= bits << shift;
        // In two steps, since a word cannot be shifted by all of its bits.
        word[1] |= bits >> 1U >> (kWordBits - 1U - shift);
        word += stride_;
    }
    return true;
}

MaskStamp CoverageMask::ToStamp(SDL_Point place) const {
    MaskStamp stamp;
    Word all = 0;
    for (const Word row : words_) all |= row;
    if (all == 0 || stride_ != 1) return stamp;
    const auto isEmpty = [](Word row) { return row == 0; };
    const auto first = std::find_if_not(words_.begin(), words_.end(), isEmpty);
    const auto end = std::find_if_not(words_.rbegin(), words_.rend(), isEmpty).base();
    const int left = std::countr_zero(all);
    stamp.offset = {bounds_.x + left - place.x,
                    bounds_.y + static_cast<int>(first - words_.begin()) - place.y};
    stamp.width = kWordBits - left - std::countl_zero(all);
    stamp.rows.assign(first, end);
    for (Word& row : stamp.rows) row >>= static_cast<unsigned>(left);
    return stamp;
}

void CoverageMask::TakeFrom(CoverageMask& covered) {
    Word* own = words_.data();
    for (int y = bounds_.y; y < bounds_.y + bounds_.h; ++y) {
        Word* other = covered.Row(y) + (bounds_.x - covered.bounds_.x) / kWordBits;
        for (size_t i = 0; i < stride_; ++i, ++own, ++other) {
            const Word left = *own & ~*other;
            *other |= *own;
            *own = left;
        }
    }
}

void CoverageMask::AppendRectangles(std::vector<SDL_Rect>& rectangles) const {
    std::vector<Run> open;
    std::vector<Run> runs;
    const auto close = [&](const Run& run, int y) {
        rectangles.push_back({run.from, run.top, run.to - run.from, y - run.top});
    };
    const int end = bounds_.y + bounds_.h;
    for (int y = bounds_.y; y < end; ++y) {
        const Word* const row = words_.data() + static_cast<size_t>(y - bounds_.y) * stride_;
        if (y > bounds_.y && std::memcmp(row, row - stride_, stride_ * sizeof(Word)) == 0) continue;
        runs.clear();
        Word before = 0;
        bool inside = false;
        int base = bounds_.x;
        for (size_t i = 0; i < stride_; ++i, base += kWordBits) {
            // Set where a pixel differs from the one before it.
            Word changes = row[i] ^ (row[i] << 1U | before);
            before = row[i] >> (kWordBits - 1U);
            for (; changes != 0; changes &= changes - 1) {
                const int x = base + std::countr_zero(changes);
                if (inside) {
                    runs.back().to = x;
                } else {
                    runs.push_back({x, bounds_.x + bounds_.w, y});
                }
                inside = !inside;
            }
        }
        auto next = open.begin();
        for (Run& run : runs) {
            for (; next != open.end() && next->from < run.from; ++next) close(*next, y);
            if (next == open.end() || next->from != run.from) continue;
            if (next->to == run.to) {
                run.top = next->top;
            } else {
                close(*next, y);
            }
            ++next;
        }
        for (; next != open.end(); ++next) close(*next, y);
        std::swap(open, runs);
    }
    for (const Run& run : open) close(run, end);
}

}  // namespace Corvanta::Drawing
