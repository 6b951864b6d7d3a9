#include "tests/video/RendererDriver.h"

#include <SDL.h>
#include <dlfcn.h>

#include <atomic>

namespace {

std::atomic<const char*> pretendedName{nullptr};

}  // namespace

namespace Corvanta::Testing {

PretendedDriver::PretendedDriver(const char* name) {
    pretendedName.store(name);
}

PretendedDriver::~PretendedDriver() {
    pretendedName.store(nullptr);
}

}  // namespace Corvanta::Testing

// Stands before SDL's own.
extern "C" int SDL_GetRendererInfo(SDL_Renderer* renderer, SDL_RendererInfo* info) {
    static const auto real =
        reinterpret_cast<decltype(&SDL_GetRendererInfo)>(dlsym(RTLD_NEXT, "SDL_GetRendererInfo"));
    const int result = real(renderer, info);
    const char* const name = pretendedName.load();
    if (result == 0 && name != nullptr) info->name = name;
    return result;
}
