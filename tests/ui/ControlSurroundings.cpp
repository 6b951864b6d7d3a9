#include "tests/ui/ControlSurroundings.h"

#include <SDL_ttf.h>

#include <filesystem>
#include <sstream>
#include <string>

#include "tests/fake_platform/CallLog.h"
#include "tests/fake_platform/SdlRecorder.h"
#include "ui/Clock.h"
#include "ui/FontManager.h"
#include "ui/TextureCache.h"

namespace Corvanta::Testing {
namespace {

constexpr int kWidth = 1400;
constexpr int kHeight = 720;

SDL_Rect ToRect(const std::string& text) {
    std::istringstream stream(text);
    SDL_Rect rect{0, 0, 0, 0};
    stream >> rect.x >> rect.y >> rect.w >> rect.h;
    return rect;
}

}  // namespace

StandingClock::StandingClock() {
    nowNs_ = 5'000'000'000;
    UI::SetClock([] { return nowNs_; });
}

StandingClock::~StandingClock() {
    UI::SetClock(nullptr);
}

ControlTest::ControlTest() {
    folder_.AddPicture(kSomeIcon, 16, 16, kSomeColour);
    for (const char* direction : {"Horizontal", "Vertical"}) {
        const std::string bar = std::string("icons/scrollbar") + direction;
        folder_.AddPicture(bar + "First.png", 4, 4, kFirstColour);
        folder_.AddPicture(bar + "Middle.png", 4, 4, kMiddleColour);
        folder_.AddPicture(bar + "Last.png", 4, 4, kLastColour);
    }
    const std::filesystem::path fonts = CORVANTA_TEST_FONTS;
    folder_.AddFile("fonts/FKGrotesk-Regular.ttf", fonts / "Inter-Regular.ttf");
    folder_.AddFile("fonts/FKGrotesk-Bolder.ttf", fonts / "Inter-Bold.ttf");
    Sdl().Reset();
    Calls().Reset();
    TTF_Init();
    MakeRenderer();
}

ControlTest::~ControlTest() {
    UI::ReleaseRendererTextures(Renderer());
    UI::FontManager::Clear();
    TTF_Quit();
    Sdl().Reset();
    Calls().Reset();
}

void ControlTest::Wipe() {
    reader_->Fill(kBlack);
    Calls().Clear();
}

void ControlTest::ReplaceRenderer() {
    UI::ReleaseRendererTextures(Renderer());
    MakeRenderer();
}

void ControlTest::MakeRenderer() {
    reader_ = std::make_unique<PixelReader>(kWidth, kHeight);
    SDL_SetRenderDrawBlendMode(Renderer(), SDL_BLENDMODE_BLEND);
    Wipe();
}

std::vector<SDL_Rect> ControlTest::Fills() {
    std::vector<SDL_Rect> fills;
    for (const Call& call : Calls().Of("SDL_RenderFillRect")) fills.push_back(ToRect(call.arguments[1]));
    return fills;
}

std::vector<Copy> ControlTest::Copies() {
    std::vector<Copy> copies;
    for (const Call& call : Calls().Of("SDL_RenderCopy")) {
        const bool cut = call.arguments[2] != "null";
        copies.push_back({call.arguments[1], cut, cut ? ToRect(call.arguments[2]) : SDL_Rect{0, 0, 0, 0},
                          ToRect(call.arguments[3])});
    }
    return copies;
}

SDL_Color ControlTest::DrawColour() const {
    SDL_Color colour{1, 1, 1, 1};
    SDL_GetRenderDrawColor(Renderer(), &colour.r, &colour.g, &colour.b, &colour.a);
    return colour;
}

}  // namespace Corvanta::Testing
