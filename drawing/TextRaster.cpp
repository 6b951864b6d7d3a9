#include "drawing/TextRaster.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "drawing/TextLines.h"

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

// A line feed at the end makes an empty line of its own.
[[nodiscard]] std::string Complete(std::string text) {
    if (text.ends_with('\n')) text += ' ';
    return text;
}

[[nodiscard]] SDL_Point SizeOf(TTF_Font* font, const std::string& text) {
    SDL_Point size{0, 0};
    if (TTF_SizeUTF8(font, text.c_str(), &size.x, &size.y) != 0) size.x = std::numeric_limits<int>::max();
    return size;
}

// How large the picture of a text may be.
class Limits final {
public:
    Limits(TTF_Font* font, int wrapWidth, int64_t mostRows)
        : font_(font),
          wrapWidth_(wrapWidth),
          mostRows_(mostRows),
          lineSkip_(std::max(1, TTF_FontLineSkip(font))) {}

    // How many bytes of the text are in the lines for which there is room.
    [[nodiscard]] size_t HeldOf(const std::string& text) const {
        const int64_t firstRows = std::max(SizeOf(font_, text).y, lineSkip_);
        if (firstRows > mostRows_) return 0;
        // A line holds a character at least.
        const auto mostLines = static_cast<int64_t>(text.size());
        if (wrapWidth_ > 0 && Hold(mostLines, firstRows, wrapWidth_, text.size())) return text.size();
        int64_t lines = 0;
        int64_t width = wrapWidth_;
        for (size_t from = 0; from < text.size();) {
            const size_t next = NextLine(font_, text, from, wrapWidth_);
            if (wrapWidth_ == 0) {
                const std::string line = text.substr(from, next - from);
                width = std::max<int64_t>(width, SizeOf(font_, line).x);
            }
            if (!Hold(++lines, firstRows, width, next))
                return from > 0 ? from : NextLine(font_, text, 0, static_cast<int>(kMostPixels / firstRows));
            from = next;
        }
        return text.size();
    }

private:
    [[nodiscard]] bool Hold(int64_t lines, int64_t firstRows, int64_t width, size_t bytes) const {
        const int64_t rows = firstRows + (lines - 1) * lineSkip_;
        return rows <= mostRows_ && rows * width <= kMostPixels &&
               lines * static_cast<int64_t>(bytes) <= kMostWork;
    }

    TTF_Font* font_;
    int wrapWidth_;
    int64_t mostRows_;
    int lineSkip_;
};

// As many lines as there is room for.
[[nodiscard]] std::string CutToLimits(std::string text, const Limits& limits) {
    CutTo(text, kMostBytes);
    // A text that has been cut may be broken otherwise, though hardly ever is.
    for (;;) {
        std::string complete = Complete(text);
        const size_t held = limits.HeldOf(complete);
        if (held >= complete.size()) return complete;
        text.resize(std::min(held, text.size()));
        if (text.ends_with('\n')) text.pop_back();
    }
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
    const std::string shown =
        CutToLimits(text.substr(0, text.find('\0')), Limits(font, wrapWidth, MostRowsOf(renderer)));
    if (shown.empty()) return nullptr;
    return TTF_RenderUTF8_Blended_Wrapped(font, shown.c_str(), color, static_cast<Uint32>(wrapWidth));
}

}  // namespace Corvanta::Drawing
