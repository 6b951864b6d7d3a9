#include "drawing/TextRaster.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace Corvanta::Drawing {
namespace {

// What a layer can show of a text, several times over.
constexpr size_t kMostBytes = size_t{16} * 1024;
// A picture of 256 MiB.
constexpr int64_t kMostPixels = int64_t{64} << 20U;
// Bytes times lines: the font library looks at the whole rest of a text for each of its lines. A fraction of
// a second.
constexpr int64_t kMostWork = int64_t{2} << 20U;

// Cuts between characters.
void CutTo(std::string& text, size_t bytes) {
    if (bytes >= text.size()) return;
    while (bytes > 0 && (static_cast<unsigned char>(text[bytes]) & 0xC0U) == 0x80U) --bytes;
    text.resize(bytes);
}

// What a picture takes at most.
struct Bound {
    int64_t pixels = 0;
    int64_t rows = 0;
    int64_t work = 0;

    [[nodiscard]] bool IsWithin(int64_t mostRows) const {
        return pixels <= kMostPixels && rows <= mostRows && work <= kMostWork;
    }
};

[[nodiscard]] Bound BoundOf(TTF_Font* font, const std::string& text, int wrapWidth) {
    int64_t lines = 0;
    int64_t widest = 0;
    for (size_t from = 0; from <= text.size();) {
        const size_t end = std::min(text.find('\n', from), text.size());
        int width = 0;
        if (TTF_SizeUTF8(font, text.substr(from, end - from).c_str(), &width, nullptr) != 0)
            width = std::numeric_limits<int>::max();
        // Two neighbouring lines of a broken paragraph are together wider than one may be, or they would be
        // one; and each holds a character at least.
        const auto most = static_cast<int64_t>(end - from) + 1;
        lines += wrapWidth > 0 ? std::min(most, 2 * (int64_t{width} / wrapWidth) + 1) : 1;
        widest = std::max(widest, int64_t{width});
        from = end + 1;
    }
    const int64_t rowHeight = std::max(TTF_FontHeight(font), TTF_FontLineSkip(font));
    const int64_t rows = lines * rowHeight;
    // Several lines are as wide as they may be, even if all are empty.
    if (wrapWidth > 0) widest = wrapWidth + rowHeight;
    return {rows * std::max(widest, rowHeight), rows, lines * static_cast<int64_t>(text.size())};
}

[[nodiscard]] int64_t MostRowsOf(SDL_Renderer* renderer) {
    SDL_RendererInfo info{};
    if (SDL_GetRendererInfo(renderer, &info) != 0 || info.max_texture_height <= 0)
        return std::numeric_limits<int>::max();
    return info.max_texture_height;
}

}  // namespace

SDL_Surface* RasteriseText(SDL_Renderer* renderer, TTF_Font* font, const std::string& text,
                           const SDL_Color& color, int wrapWidth) {
    std::string shown = text.substr(0, text.find('\0'));
    CutTo(shown, kMostBytes);
    const int64_t mostRows = MostRowsOf(renderer);
    while (!shown.empty() && !BoundOf(font, shown, wrapWidth).IsWithin(mostRows))
        CutTo(shown, shown.size() / 2);
    if (shown.empty()) return nullptr;
    if (shown.back() == '\n') shown += ' ';
    return TTF_RenderUTF8_Blended_Wrapped(font, shown.c_str(), color, static_cast<Uint32>(wrapWidth));
}

}  // namespace Corvanta::Drawing
