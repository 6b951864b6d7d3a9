// The tiles of the wall on the sheet: every state that a person can see.
#include <memory>
#include <utility>
#include <vector>

#include "tools/gallery/GallerySheet.h"
#include "tools/gallery/TestPicture.h"
#include "video/MenuMetrics.h"
#include "video/OverlayGradient.h"
#include "video/VideoFrame.h"

namespace Corvanta::Gallery {
namespace {

using Video::VideoFrame;

// A tile of the design's height, and the larger picture of a main video.
constexpr int kTileWidth = 213;
constexpr int kTileHeight = 160;
constexpr int kMainWidth = 284;
constexpr int kInset = 8;
constexpr int kCellWidth = kTileWidth + 2 * kInset;
constexpr int kWideCellWidth = 352;
constexpr int kCellHeight = kTileHeight + 2 * kInset;

constexpr SDL_Point kAway{-1, -1};
constexpr SDL_Point kInTheMiddle{kTileWidth / 2, kTileHeight / 2};
constexpr SDL_Point kOnTheName{40, 18};
constexpr SDL_Point kOnTheMenu{130, 62};

struct TileKind {
    const char* caption;
    int cellWidth = kCellWidth;
    const char* name = "Ada Lovelace";
    // From the tile's corner.
    SDL_Point pointer = kAway;
    bool inGrid = true;
    bool hasPicture = true;
    bool dragging = false;
    bool lostConnection = false;
    bool onMainVideo = false;
    bool muted = false;
    bool menuOpen = false;
    bool panelOpen = false;
    std::vector<const char*> badges{};
};

void Nothing() {}

[[nodiscard]] UI::Button::Options ImageButton(const char* icon, std::function<void()> onClick) {
    UI::Button::Options options;
    options.iconName = icon;
    options.onClick = std::move(onClick);
    return options;
}

void AddControls(VideoFrame& tile) {
    UI::Menu& menu = tile.GetMenu();
    auto menuButton = ImageButton("icons/thumbnailMenu.png", [&menu] { menu.SetVisible(!menu.visible); });
    menuButton.style = UI::ButtonStyle::OtherIcon;
    menuButton.hoverIconName = "icons/thumbnailMenuHover.png";
    tile.SetMenuButton(tile.AddHoverButton(std::move(menuButton)));
    menu.AddButton("icons/spotlight.png", "Spotlight", Nothing);
    menu.AddToggleButton(
        {"icons/noaudio.png", "icons/audio-white.png", "Sound off", "Sound on", Nothing, Nothing});
    menu.AddToggleButton(
        {"icons/nocam.png", "icons/cam-white.png", "Video off", "Video On", Nothing, Nothing});
    menu.AddButton("icons/audiomixer-white.png", "Mix sound", Nothing);
    menu.AddToggleButton({"icons/pin.png", "icons/unpin.png", "Pin to left", "Unpin", Nothing, Nothing});
    Video::ApplyMenuMetrics(tile, Video::MenuMetricsFor(kTileHeight));
    tile.SetConnectionButton(
        ImageButton("icons/connection-strength.png", [&tile] { tile.GetPanel().SetVisible(true); }));
}

// The name's place counts by the drawing before.
void PutPointer(VideoFrame& tile, SDL_Point fromCorner) {
    const bool away = fromCorner.x == kAway.x && fromCorner.y == kAway.y;
    tile.OnPointer(away ? kAway : SDL_Point{tile.rect.x + fromCorner.x, tile.rect.y + fromCorner.y}, false);
}

void Pose(VideoFrame& tile, const TileKind& kind) {
    UI::Menu& menu = tile.GetMenu();
    if (menu.visible != kind.menuOpen) menu.SetVisible(kind.menuOpen);
    tile.GetPanel().SetVisible(kind.panelOpen);
    PutPointer(tile, kind.pointer);
}

// The time of drawing is never told, so that the one picture does not grow old.
void Draw(SDL_Renderer* renderer, const SDL_Rect& area, VideoFrame& tile) {
    tile.rect = {area.x + kInset, area.y + kInset, tile.inGrid ? kTileWidth : kMainWidth, kTileHeight};
    tile.displayRect = tile.rect;
    tile.sourceRect = tile.inGrid ? tile.GetCenterCrop() : SDL_Rect{0, 0, kPictureWidth, kPictureHeight};
    tile.Render(renderer, {0, 0});
}

// As the wall does it: a scrollbar under the pointer comes first.
void Press(VideoFrame& tile) {
    if (!tile.hovered || tile.GetPanel().ScrollbarClick()) return;
    tile.OnClick();
}

[[nodiscard]] std::vector<TileKind> TileKinds() {
    return {
        {.caption = "Tile"},
        {.caption = "Tile hovered", .pointer = kInTheMiddle},
        {.caption = "Tile dragged", .pointer = kInTheMiddle, .dragging = true},
        {.caption = "Tile lost connection", .lostConnection = true},
        {.caption = "Tile avatar", .hasPicture = false},
        {.caption = "Tile on main video", .onMainVideo = true},
        {.caption = "Tile muted", .muted = true},
        {.caption = "Tile pinned", .badges = {"icons/pin.png"}},
        {.caption = "Tile badges", .badges = {"icons/pin.png", "icons/noaudio.png", "icons/nocam.png"}},
        {.caption = "Tile panel", .panelOpen = true},
        {.caption = "Tile menu", .pointer = kOnTheMenu, .menuOpen = true},
        {.caption = "Tile long name",
         .cellWidth = kWideCellWidth,
         .name = "Bartholomew Featherstone of the Camera Team",
         .pointer = kOnTheName},
        {.caption = "Main video", .cellWidth = kMainWidth + 2 * kInset, .inGrid = false},
    };
}

}  // namespace

void GallerySheet::AddTiles() {
    // One serves all tiles of a size, as on the wall.
    const auto gradient = std::make_shared<Video::OverlayGradient>();
    for (const TileKind& kind : TileKinds()) {
        auto* tile = Make<VideoFrame>(kind.caption, "session", "profile", Video::TileOrigin::Remote);
        tile->SetDisplayName(kind.name);
        tile->inGrid = kind.inGrid;
        tile->dragging = kind.dragging;
        tile->lostConnection = kind.lostConnection;
        tile->onMainVideo = kind.onMainVideo;
        tile->muted = kind.muted;
        tile->draggable = true;
        tile->SetOverlayGradient(gradient.get());
        for (const char* badge : kind.badges) tile->AddBadge(badge);
        AddControls(*tile);
        if (kind.hasPicture) (*tile->GetFrameSink())(MakeTestPicture());

        Cell& cell = Add(kind.caption, kind.cellWidth, kCellHeight);
        cell.draw = [tile, gradient](SDL_Renderer* renderer, const SDL_Rect& area) {
            gradient->Resize(renderer, kTileWidth, kTileHeight, true);
            Draw(renderer, area, *tile);
        };
        cell.pose = [tile, kind] { Pose(*tile, kind); };
        cell.hover = [tile](SDL_Point pointer) {
            PutPointer(*tile, {pointer.x - kInset, pointer.y - kInset});
        };
        cell.press = [tile] { Press(*tile); };
        cell.release = [tile] {
            tile->GetPanel().GetScrollbar().EndDrag();
            tile->GetMenu().GetScrollbar().EndDrag();
        };
        if (kind.panelOpen) {
            cell.wheel = [tile](int steps) { tile->GetPanel().GetScrollbar().Move({0, steps}, true); };
        }
        cell.isBusy = [tile, hasPicture = kind.hasPicture] {
            const bool picturePending = hasPicture && !tile->HasTexture() && !tile->HasNewPicture();
            return picturePending || tile->GetPanel().IsBusy();
        };
        releasers_.emplace_back([tile, gradient, renderer = renderer_] {
            tile->MoveToRenderer(renderer);
            gradient->ReleaseTexture();
        });
    }
}

}  // namespace Corvanta::Gallery
