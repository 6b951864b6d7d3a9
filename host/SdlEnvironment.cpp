#include "host/SdlEnvironment.h"

#include <filesystem>
#include <string_view>
#include <system_error>

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>

namespace Corvanta::Host {
namespace {

void SetDefault(const char* name, const char* value) {
    if (!qEnvironmentVariableIsSet(name)) {
        qputenv(name, value);
    }
}

bool HasGraphicsDevice() {
    std::error_code error;
    return std::filesystem::exists("/dev/dri", error) || std::filesystem::exists("/dev/nvidia0", error);
}

// Device files alone prove nothing: virtual machines have them too, and OpenGL then computes on the
// processor.
bool OpenGLIsHardware() {
    QOpenGLContext context;
    QOffscreenSurface surface;
    surface.create();
    if (!context.create() || !context.makeCurrent(&surface)) {
        return false;
    }
    const auto* const text = reinterpret_cast<const char*>(context.functions()->glGetString(GL_RENDERER));
    const std::string_view renderer = (text != nullptr) ? text : "";
    context.doneCurrent();
    for (const std::string_view software : {"llvmpipe", "softpipe", "swrast", "Software"}) {
        if (renderer.find(software) != std::string_view::npos) {
            return false;
        }
    }
    return !renderer.empty();
}

}  // namespace

void PrepareSdlEnvironment(DisplayKind display) {
    qputenv("SDL_VIDEODRIVER", "x11");
    SetDefault("SDL_VIDEO_FOREIGN_WINDOW_OPENGL", "1");
    SetDefault("SDL_NO_SIGNAL_HANDLERS", "1");
    SetDefault("SDL_VIDEO_ALLOW_SCREENSAVER", "1");

    // Without a graphics card SDL's own software renderer costs 3 to 10 times less than OpenGL done in
    // software.
    if (display == DisplayKind::Private || !HasGraphicsDevice() || !OpenGLIsHardware()) {
        SetDefault("SDL_RENDER_DRIVER", "software");
        SetDefault("SDL_FRAMEBUFFER_ACCELERATION", "0");
    }
}

}  // namespace Corvanta::Host
