#include "video/BoxBlur.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace Corvanta::Video {
namespace {

// Red, green, blue, alpha.
using Sums = std::array<int64_t, 4>;

void Add(Sums& sums, const Sums& other, int64_t sign) {
    for (size_t i = 0; i < sums.size(); ++i) sums[i] += sign * other[i];
}

// The surface's pixels, and the sum of those of each column that lie within the square's height of the
// present row. The sums follow every change, so that a pixel costs the same whatever the radius.
class ColumnSums final {
public:
    ColumnSums(SDL_Surface& surface, int radius)
        : surface_(surface), radius_(radius), columns_(static_cast<size_t>(surface.w)) {}

    void EnterRow(int row) {
        if (row == 0) {
            for (int below = 0; below <= std::min(radius_, surface_.h - 1); ++below) AddRow(below, 1);
            return;
        }
        AddRow(row + radius_, 1);
        AddRow(row - radius_ - 1, -1);
    }

    void BlurRow(int row) {
        Sums square{};
        for (int x = 0; x <= std::min(radius_, surface_.w - 1); ++x) Add(square, Column(x), 1);
        for (int x = 0; x < surface_.w; ++x) {
            const Sums change = Blur(x, row, square);
            Add(Column(x), change, 1);
            Add(square, change, 1);
            if (x - radius_ >= 0) Add(square, Column(x - radius_), -1);
            if (x + radius_ + 1 < surface_.w) Add(square, Column(x + radius_ + 1), 1);
        }
    }

private:
    [[nodiscard]] Sums& Column(int x) { return columns_[static_cast<size_t>(x)]; }

    [[nodiscard]] Uint8* Address(int x, int y) const {
        return static_cast<Uint8*>(surface_.pixels) +
               static_cast<ptrdiff_t>(y) * static_cast<ptrdiff_t>(surface_.pitch) +
               static_cast<ptrdiff_t>(x) * static_cast<ptrdiff_t>(sizeof(Uint32));
    }

    [[nodiscard]] Sums Read(int x, int y) const {
        Uint32 pixel = 0;
        std::memcpy(&pixel, Address(x, y), sizeof(pixel));
        std::array<Uint8, 4> part{};
        SDL_GetRGBA(pixel, surface_.format, &part[0], &part[1], &part[2], &part[3]);
        return {part[0], part[1], part[2], part[3]};
    }

    void AddRow(int row, int64_t sign) {
        if (row < 0 || row >= surface_.h) return;
        for (int x = 0; x < surface_.w; ++x) Add(Column(x), Read(x, row), sign);
    }

    // Stores the blurred pixel and tells by how much it differs from the one before.
    [[nodiscard]] Sums Blur(int x, int y, const Sums& square) const {
        const int64_t side = 2 * int64_t{radius_} + 1;
        const auto mean = [&](size_t i) { return static_cast<Uint8>(square[i] / (side * side)); };
        const Sums before = Read(x, y);
        const Uint32 pixel = SDL_MapRGBA(surface_.format, mean(0), mean(1), mean(2), mean(3));
        std::memcpy(Address(x, y), &pixel, sizeof(pixel));
        Sums change = Read(x, y);
        Add(change, before, -1);
        return change;
    }

    SDL_Surface& surface_;
    const int radius_;
    std::vector<Sums> columns_;
};

}  // namespace

void BoxBlur(SDL_Surface& surface, int radius) {
    if (radius < 0 || surface.format->BytesPerPixel != sizeof(Uint32) || surface.w < 1) return;
    if (SDL_LockSurface(&surface) != 0) return;
    ColumnSums sums(surface, radius);
    for (int y = 0; y < surface.h; ++y) {
        sums.EnterRow(y);
        sums.BlurRow(y);
    }
    SDL_UnlockSurface(&surface);
}

}  // namespace Corvanta::Video
