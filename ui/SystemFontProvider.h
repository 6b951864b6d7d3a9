// The fonts of the operating system that drawn texts may use: a fixed list of families, opened once. Made on
// first use, after the font library was started; lives until the process ends. Render thread only.
#pragma once

#include <SDL_ttf.h>

#include <map>
#include <string>
#include <vector>

namespace Corvanta::UI {

class SystemFontProvider final {
public:
    [[nodiscard]] static SystemFontProvider& Instance();
    // All families that are looked for, in the order in which users see them.
    [[nodiscard]] static const std::vector<std::string>& Families();

    // The family's font at the size that drawn texts are made from; null when it is not installed. Borrowed.
    [[nodiscard]] TTF_Font* GetFont(const std::string& family) const;

    ~SystemFontProvider();
    SystemFontProvider(const SystemFontProvider&) = delete;
    SystemFontProvider& operator=(const SystemFontProvider&) = delete;

private:
    SystemFontProvider();

    std::map<std::string, TTF_Font*> fonts_;
};

}  // namespace Corvanta::UI
