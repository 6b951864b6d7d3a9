// The product's fonts, opened on demand from the fonts folder and kept by name and size. Process-wide; render
// thread only. It owns the fonts.
#pragma once

#include <SDL_ttf.h>

#include <map>
#include <memory>
#include <string>
#include <utility>

namespace Corvanta::UI {

// Base names of the files in the fonts folder; elements use these instead of literals.
inline const std::string FontRegular = "FKGrotesk-Regular";
inline const std::string FontBolder = "FKGrotesk-Bolder";
inline const std::string FontMono = "FKGroteskMono-Regular";

class FontManager final {
public:
    // Made on first use, and again after Clear.
    [[nodiscard]] static FontManager& Instance();
    // Closes all fonts and drops the instance.
    static void Clear();

    ~FontManager();
    FontManager(const FontManager&) = delete;
    FontManager& operator=(const FontManager&) = delete;

    void Init();

    // The font "fonts/" + name + ".ttf" at that size in points, owned by the manager until Clear. Null when
    // it cannot be opened; the next call tries again. Nothing is evicted: each size stays open.
    [[nodiscard]] TTF_Font* GetFont(const std::string& name, int size);

private:
    FontManager() = default;

    std::map<std::pair<std::string, int>, TTF_Font*> fonts_;
};

}  // namespace Corvanta::UI
