// The gallery of controls: in a window, live to mouse and keyboard, or as a picture.
//   corvanta-gallery [--scale F] [--snapshot FILE.png] [--crops FOLDER]
#include <SDL_image.h>
#include <SDL_ttf.h>

#include <QApplication>
#include <QTimer>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "host/InputForwarder.h"
#include "host/RoomWidget.h"
#include "host/SdlEnvironment.h"
#include "interface/ProcessState.h"
#include "interface/SDLinterface.h"
#include "tools/gallery/GalleryView.h"
#include "tools/gallery/SheetPicture.h"

namespace Corvanta::Gallery {
namespace {

namespace fs = std::filesystem;

constexpr int kWindowWidth = 1280;
constexpr int kWindowHeight = 800;
constexpr int kTickMs = 16;
constexpr float kSmallestScale = 0.5F;
constexpr float kLargestScale = 4.0F;

struct Options {
    float scale = 1.0F;
    fs::path snapshot;
    fs::path crops;
    std::string error;
};

[[nodiscard]] Options Parse(const std::vector<std::string_view>& arguments) {
    Options options;
    for (size_t index = 0; index < arguments.size(); ++index) {
        const std::string_view name = arguments[index];
        if (index + 1 == arguments.size()) {
            options.error = "unknown argument, or one without its value: " + std::string(name);
            break;
        }
        const std::string_view value = arguments[++index];
        if (name == "--scale") {
            const auto result = std::from_chars(value.data(), value.data() + value.size(), options.scale);
            if (result.ptr != value.data() + value.size() || options.scale < kSmallestScale ||
                options.scale > kLargestScale) {
                options.error = "the scale is a number from 0.5 to 4: " + std::string(value);
            }
        } else if (name == "--snapshot") {
            options.snapshot = fs::absolute(value);
        } else if (name == "--crops") {
            options.crops = fs::absolute(value);
        } else {
            options.error = "unknown argument: " + std::string(name);
        }
    }
    return options;
}

int Fail(const std::string& line) {
    std::fprintf(stderr, "corvanta-gallery: %s\n", line.c_str());
    return 1;
}

int WritePictures(const Options& options) {
    TTF_Init();
    const SheetPicture picture = DrawSheet(options.scale);
    if (picture.surface == nullptr) return Fail(SDL_GetError());
    if (!options.snapshot.empty() && IMG_SavePNG(picture.surface.get(), options.snapshot.c_str()) != 0) {
        return Fail("the picture cannot be written: " + options.snapshot.string());
    }
    if (options.crops.empty()) return 0;
    const std::string problem = WriteCrops(picture, options.scale, options.crops);
    return problem.empty() ? 0 : Fail(problem);
}

int ShowWindow(int argc, char** argv, const Options& options) {
    qputenv("QT_QPA_PLATFORM", "xcb");
    QApplication application(argc, argv);
    Host::PrepareSdlEnvironment(Host::DisplayKind::OfTheDesktop);
    Host::RoomWidget surface(nullptr);
    surface.setWindowTitle("Controls - Corvanta");
    surface.resize(kWindowWidth, kWindowHeight);
    surface.show();
    QGuiApplication::sync();

    SDLinterface_GlobalInit();
    const auto view = std::make_shared<GalleryView>();
    Interface::ReplaceCurrentView(view);
    const Host::SurfaceMetrics metrics = surface.Metrics();
    if (view->Init(surface.NativeHandle(), metrics.physicalWidth, metrics.physicalHeight) != 1) {
        return Fail("the window cannot be drawn on, the log says why");
    }
    view->MakeSheet();
    view->SetSheetScale(options.scale);
    Host::InputForwarder input(surface, 0);
    QTimer tick;
    tick.callOnTimeout([&] {
        if (!surface.isVisible()) QCoreApplication::quit();
        const Host::SurfaceMetrics now = surface.Metrics();
        if (now.physicalWidth != view->GetWidth() || now.physicalHeight != view->GetHeight()) {
            view->Resize(now.physicalWidth, now.physicalHeight);
        }
        SDL_VideoRoomCheckInputAndRender();
    });
    tick.start(kTickMs);
    const int result = QApplication::exec();
    SDLinterface_GlobalQuit();
    return result;
}

int Run(int argc, char** argv) {
    const Options options = Parse({argv + 1, argv + argc});
    if (!options.error.empty()) {
        Fail(options.error);
        return 2;
    }
    // Icons and fonts lie beside the program.
    std::error_code error;
    fs::current_path(fs::read_symlink("/proc/self/exe", error).parent_path(), error);
    if (error) return Fail("the program's own folder cannot be entered: " + error.message());
    if (!options.snapshot.empty() || !options.crops.empty()) return WritePictures(options);
    if (qEnvironmentVariableIsEmpty("DISPLAY")) return Fail("there is no display");
    return ShowWindow(argc, argv, options);
}

}  // namespace
}  // namespace Corvanta::Gallery

int main(int argc, char** argv) {
    return Corvanta::Gallery::Run(argc, argv);
}
