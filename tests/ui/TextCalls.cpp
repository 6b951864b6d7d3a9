#include "tests/ui/TextCalls.h"

#include <SDL_ttf.h>
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

#include "tests/fake_platform/CallLog.h"
#include "tests/fake_platform/SdlRecorder.h"

using Corvanta::Testing::Calls;
using Corvanta::Testing::Sdl;

namespace {

// The library's own function of that name. The pointer only tells the type.
template <typename Function>
Function* Next(Function*, const char* name) {
    void* const symbol = dlsym(RTLD_NEXT, name);
    if (symbol == nullptr) {
        std::fprintf(stderr, "No library has %s\n", name);
        std::abort();
    }
    return reinterpret_cast<Function*>(symbol);
}

}  // namespace

extern "C" {

SDL_Surface* TTF_RenderUTF8_Blended(TTF_Font* font, const char* text, SDL_Color color) {
    static const auto real = Next(&TTF_RenderUTF8_Blended, "TTF_RenderUTF8_Blended");
    Calls().Record("TTF_RenderUTF8_Blended", text, color.r, color.g, color.b, color.a);
    return Sdl().TakeFailure("TTF_RenderUTF8_Blended") ? nullptr : real(font, text, color);
}

int TTF_SizeUTF8(TTF_Font* font, const char* text, int* width, int* height) {
    static const auto real = Next(&TTF_SizeUTF8, "TTF_SizeUTF8");
    Calls().Record("TTF_SizeUTF8", text);
    return Sdl().TakeFailure("TTF_SizeUTF8") ? -1 : real(font, text, width, height);
}

void TTF_SetFontStyle(TTF_Font* font, int style) {
    static const auto real = Next(&TTF_SetFontStyle, "TTF_SetFontStyle");
    Calls().Record("TTF_SetFontStyle", font, style);
    real(font, style);
}
}

namespace Corvanta::Testing {

std::vector<std::string> RasterisedTexts() {
    std::vector<std::string> texts;
    for (const Call& call : Calls().Of("TTF_RenderUTF8_Blended")) texts.push_back(call.arguments[0]);
    return texts;
}

size_t Measurements() {
    return Calls().Count("TTF_SizeUTF8");
}

}  // namespace Corvanta::Testing
