// A tile on a screen without a display, with a picture of one colour for each of its icons and the product's
// fonts as working directory, and readers of what was drawn where. One thread.
#pragma once

#include <SDL.h>
#include <SDL_ttf.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/fake_platform/FakePlatform.h"
#include "tests/fake_platform/PixelReader.h"
#include "tests/fake_platform/SdlRecorder.h"
#include "tests/fake_platform/TestFrames.h"
#include "tests/ui/ControlSurroundings.h"
#include "tests/ui/TextCalls.h"
#include "tests/ui/WorkingFolder.h"
#include "tests/video/FlushSink.h"
#include "ui/Clock.h"
#include "ui/FontManager.h"
#include "ui/TextureCache.h"
#include "video/VideoFrame.h"

namespace Corvanta::Testing {

inline constexpr uint32_t kEqualizerColour = 0xFF00FFFF;
inline constexpr uint32_t kMuteColour = 0xFFFF00FF;
inline constexpr uint32_t kExclamationColour = 0xFFFFFF00;
inline constexpr uint32_t kGripColour = 0xFF804000;
inline constexpr uint32_t kLeftPlateColour = 0xFF400000;
inline constexpr uint32_t kMiddlePlateColour = 0xFF004000;
inline constexpr uint32_t kRightPlateColour = 0xFF000040;
inline constexpr uint32_t kAvatarColour = 0xFF225577;
inline constexpr uint32_t kPanelColour = 0xFF557722;
inline constexpr uint32_t kConnectionColour = 0xFF00C000;
inline constexpr uint32_t kMenuButtonColour = 0xFFC000C0;
inline constexpr uint32_t kHoveredMenuButtonColour = 0xFFC0C000;
inline constexpr uint32_t kPinColour = 0xFF0000C0;
inline constexpr uint32_t kWideColour = 0xFFC00000;

// A tile of the design's height on the wall.
inline constexpr SDL_Rect kTile{20, 30, 213, 160};
inline constexpr uint32_t kScreenColour = 0xFF102030;

// Of a button without words.
[[nodiscard]] inline UI::Button::Options PictureButton(
    const std::string& icon, std::function<void()> onClick = [] {}, const std::string& hoverIcon = {}) {
    UI::Button::Options options;
    options.iconName = icon;
    options.onClick = std::move(onClick);
    options.hoverIconName = hoverIcon;
    return options;
}

class OverlayTest : public FakePlatformTest {
protected:
    OverlayTest() {
        const struct {
            const char* name;
            uint32_t colour;
            int width;
            int height;
        } pictures[] = {
            {"equalizer", kEqualizerColour, 16, 16},
            {"mute", kMuteColour, 16, 16},
            {"exclamation", kExclamationColour, 16, 16},
            {"drag", kGripColour, 46, 14},
            {"nameBackgroundLeft", kLeftPlateColour, 11, 21},
            {"nameBackgroundMiddle", kMiddlePlateColour, 4, 21},
            {"nameBackgroundRight", kRightPlateColour, 11, 21},
            {"noCamBackground", kAvatarColour, 16, 16},
            {"thumbnail-background", kPanelColour, 16, 16},
            {"thumbnail-panel-close", 0xFFFFFFFF, 10, 10},
            {"connection-strength", kConnectionColour, 16, 16},
            {"thumbnailMenu", kMenuButtonColour, 16, 16},
            {"thumbnailMenuHover", kHoveredMenuButtonColour, 16, 16},
            {"pin", kPinColour, 16, 16},
            {"wide", kWideColour, 32, 16},
            {"spotlight", 0xFF606060, 16, 16},
        };
        for (const auto& picture : pictures) {
            const std::string path = std::string("icons/") + picture.name + ".png";
            folder_.AddPicture(path, picture.width, picture.height, picture.colour);
        }
        for (const char* piece : {"First", "Middle", "Last"}) {
            folder_.AddPicture(std::string("icons/scrollbarVertical") + piece + ".png", 4, 4, kFirstColour);
        }
        const std::filesystem::path fonts = CORVANTA_TEST_FONTS;
        folder_.AddFile("fonts/FKGrotesk-Regular.ttf", fonts / "Inter-Regular.ttf");
        folder_.AddFile("fonts/FKGrotesk-Bolder.ttf", fonts / "Inter-Bold.ttf");
        folder_.AddFile("fonts/FKGroteskMono-Regular.ttf", fonts / "JetBrainsMono-Regular.ttf");
        Sdl().Reset();
        TTF_Init();
        SDL_SetRenderDrawBlendMode(Renderer(), SDL_BLENDMODE_BLEND);
    }

    ~OverlayTest() override {
        UI::ReleaseRendererTextures(Renderer());
        UI::FontManager::Clear();
        TTF_Quit();
        Sdl().Reset();
    }

    [[nodiscard]] SDL_Renderer* Renderer() const { return screen.Renderer(); }
    [[nodiscard]] const WorkingFolder& Folder() const { return folder_; }

    // The rectangles into which that picture was copied since the calls were cleared.
    [[nodiscard]] std::vector<SDL_Rect> PlacesOf(const std::string& name) const {
        SDL_Texture* texture = UI::LoadCachedTexture(Renderer(), "icons/" + name + ".png");
        return PlacesOf(texture);
    }
    [[nodiscard]] static std::vector<SDL_Rect> PlacesOf(const SDL_Texture* texture) {
        std::vector<SDL_Rect> places;
        for (const Call& call : Calls().Of("SDL_RenderCopy")) {
            if (call.arguments[1] == ToText(texture)) places.push_back(ToRect(call.arguments[3]));
        }
        return places;
    }
    [[nodiscard]] static SDL_Rect ToRect(const std::string& text) {
        std::istringstream stream(text);
        SDL_Rect rect{0, 0, 0, 0};
        stream >> rect.x >> rect.y >> rect.w >> rect.h;
        return rect;
    }
    [[nodiscard]] static std::vector<SDL_Rect> RectsOf(const char* function) {
        std::vector<SDL_Rect> rects;
        for (const Call& call : Calls().Of(function)) rects.push_back(ToRect(call.arguments[1]));
        return rects;
    }

    const StandingClock clock;
    PixelReader screen{640, 480};

private:
    const WorkingFolder folder_;
};

class TileOverlayTest : public OverlayTest {
protected:
    ~TileOverlayTest() override {
        if (tile != nullptr) tile->ReleaseGraphics();
    }

    void Make(Video::TileOrigin origin = Video::TileOrigin::Remote, StreamType type = StreamType::Camera) {
        Fake().Set([&](FakeResults& results) {
            results.streamTypes["id"] = type;
            results.publisherNames["id"] = "Ada";
        });
        tile = std::make_unique<Video::VideoFrame>("id", "session", "profile", origin);
        tile->inGrid = true;
        Place(kTile);
    }
    void Place(const SDL_Rect& rect) {
        tile->rect = rect;
        tile->displayRect = rect;
    }
    // A picture of one grey.
    [[nodiscard]] bool ShowPicture(uint16_t luma = 235) {
        (*tile->GetFrameSink())(MakeFrame({.width = 16, .height = 12, .y = luma, .u = 128, .v = 128}));
        return FlushSink(*tile->GetFrameSink());
    }
    void Draw() {
        const Video::PictureSize size = tile->GetPictureSize();
        tile->sourceRect = {0, 0, size.width, size.height};
        tile->Render(Renderer(), {0, 0});
    }
    // From nothing, with only this drawing's calls recorded.
    [[nodiscard]] Picture DrawAndRead() {
        screen.Fill(kScreenColour);
        Calls().Clear();
        Draw();
        return screen.Read();
    }
    UI::Button* AddMenuButton() {
        UI::Button* button = tile->AddHoverButton(PictureButton(
            "icons/thumbnailMenu.png", [this] { ++clicks; }, "icons/thumbnailMenuHover.png"));
        tile->SetMenuButton(button);
        return button;
    }
    void AddConnectionButton() {
        tile->SetConnectionButton(
            PictureButton("icons/connection-strength.png", [this] { ++connectionClicks; }));
    }

    std::unique_ptr<Video::VideoFrame> tile;
    int clicks = 0;
    int connectionClicks = 0;
};

}  // namespace Corvanta::Testing
