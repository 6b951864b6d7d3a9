#include "tests/drawing/WrappedTexts.h"

#include <SDL_ttf.h>
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

#include "tests/fake_platform/CallLog.h"

extern "C" SDL_Surface* TTF_RenderUTF8_Blended_Wrapped(TTF_Font* font, const char* text, SDL_Color color,
                                                       Uint32 wrapLength) {
    constexpr char kName[] = "TTF_RenderUTF8_Blended_Wrapped";
    static const auto real =
        reinterpret_cast<decltype(&TTF_RenderUTF8_Blended_Wrapped)>(dlsym(RTLD_NEXT, kName));
    if (real == nullptr) {
        std::fprintf(stderr, "No library has %s\n", kName);
        std::abort();
    }
    Corvanta::Testing::Calls().Record(kName, text, wrapLength);
    return real(font, text, color, wrapLength);
}

namespace Corvanta::Testing {

std::vector<WrappedText> WrappedTexts() {
    std::vector<WrappedText> texts;
    for (const Call& call : Calls().Of("TTF_RenderUTF8_Blended_Wrapped"))
        texts.push_back({call.arguments[0], std::stoi(call.arguments[1])});
    return texts;
}

}  // namespace Corvanta::Testing
