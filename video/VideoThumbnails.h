// The wall of tiles: which tiles there are and in which order, where they stand, hover, drag, pins and
// scrolling, and which are worth a subscription. It draws into whatever renderer it is given. It holds plain
// pointers to tiles that the room owns and never frees one. Tiles come and go on any thread; drawing and
// input belong to the render thread. Its lock comes after the room's and before a tile's.
#pragma once

#include <SDL.h>

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "ui/LockOrder.h"
#include "ui/VideoScrollbar.h"
#include "video/OverlayGradient.h"
#include "video/StripSlide.h"
#include "video/ThumbnailLayout.h"
#include "video/TileList.h"
#include "video/WallDrag.h"
#include "video/WallOwner.h"
#include "video/WallScroll.h"

namespace Corvanta::Video {

class VideoThumbnails final {
public:
    // view: outlives the wall's last use.
    explicit VideoThumbnails(WallOwner& view);
    VideoThumbnails(const VideoThumbnails&) = delete;
    VideoThumbnails& operator=(const VideoThumbnails&) = delete;

    // To the end of its list; a tile that is there already stays where it is.
    void AddTile(VideoFrame* tile, bool remote);
    // Any tile; one that is in no list is ignored. It may be removed from within any function that the wall
    // calls, and is never touched again afterwards.
    void RemoveTile(VideoFrame* tile);
    [[nodiscard]] int GetTileCount() const;
    // Local tiles, then remote ones, in their order on the wall.
    [[nodiscard]] std::vector<VideoFrame*> GetAllTiles() const;

    // Draws the wall and subscribes to what can be seen. mainStreamId: of the main video, empty without one.
    void Render(SDL_Renderer* renderer, const std::string& mainStreamId);
    // Hover, drag and scrolling, once a tick after all events.
    void Update(SDL_Point pointer, SDL_Point wheel);
    // Takes one event of its window. Writes pointer and lastPointer on a motion, wheel on a wheel event.
    void HandleEvent(const SDL_Event& event, SDL_Point& pointer, SDL_Point& lastPointer, SDL_Point& wheel);

    // Puts a remote tile to the end of the pinned ones, or to the front of the others.
    void PinTile(VideoFrame* tile);
    void UnpinTile(VideoFrame* tile);
    // Remote tiles in this order; those that are not named leave the list.
    void ReorderRemoteTiles(const std::vector<std::string>& streamIds);

    void SetMode(ThumbnailLayoutMode mode, int columns);
    [[nodiscard]] ThumbnailLayoutMode GetMode() const;
    // Height of a tile in logical pixels; below 1 is ignored.
    void SetTileHeight(int height);
    void SetAreaWidth(int width);
    void SetAreaHeight(int height);
    // The strip slides in or out within 300 ms, or is there or gone at once.
    void SlideTo(bool show, bool animated);
    void SetShown(bool shown);
    [[nodiscard]] bool IsShown() const;
    [[nodiscard]] bool IsSlidingOut() const;
    // How much of the strip stands above the main video now.
    [[nodiscard]] int GetStripHeight() const;
    [[nodiscard]] int GetMinimumHeight() const;
    [[nodiscard]] int GetMinimumWidth() const;
    [[nodiscard]] int GetTotalWidth() const;

    // Gives the tiles, the gradient and the scrollbar to another renderer. The old one must still be alive.
    void MoveAllToRenderer(SDL_Renderer* renderer);
    // No tile is marked as the main video any more.
    void ClearMainTiles();
    // The wall's own textures; before their renderer goes.
    void ReleaseTextures();
    // The renderer is about to go: if the wall drew there last, its textures and those of its tiles go first.
    void LeaveRenderer(const SDL_Renderer* renderer);

    // The host draws borders around the wall's own window.
    void SetDetachedBorders(bool visible);
    [[nodiscard]] bool HasDetachedBorders() const;

private:
    // What all tiles of one drawing share.
    struct Drawing {
        SDL_Renderer* renderer;
        const std::string& mainStreamId;
        int64_t nowNs;
        int scrollOffset;
    };
    enum class Clicks { GoOn, End };

    // Drawing.
    void ApplySlide(int64_t nowNs);
    [[nodiscard]] int LayScrollbar();
    [[nodiscard]] bool ShowsScrollbar() const;
    void RenderTile(const Drawing& drawing, size_t index);
    void ApplyMenuMetricsToAll(int tileHeight);
    void UpdateMenuWidth();

    // Input.
    void OnPress(SDL_Point pointer);
    void OnRelease(SDL_Point pointer);
    [[nodiscard]] Clicks ClickTile(size_t index);
    void EndTileScrolling();
    void EndTileDrag();
    void StartTileDrag();
    // Passes pointer and wheel to every tile; whether a menu takes the wheel.
    [[nodiscard]] bool UpdateTiles(SDL_Point pointer, SDL_Point wheel);
    void UpdateEdgeScroll(SDL_Point pointer);
    void UpdateOrder();
    void ChangePin(VideoFrame& tile, PinChange change);
    void UpdateScrollbar(SDL_Point pointer, SDL_Point wheel, bool wasHovered, bool menuTakesWheel);

    // A pass over all tiles goes by index over a copy of the list, in which a tile that is removed meanwhile
    // becomes null, and which a pass within a pass makes anew.
    void BeginPass();
    [[nodiscard]] VideoFrame* InPass(size_t index) const;
    void Forget(VideoFrame* tile);

    mutable UI::OrderedMutex<std::recursive_mutex, UI::LockRank::Grid> gridMutex_;
    // guards: everything below
    WallOwner& view_;
    TileList tiles_;
    std::vector<VideoFrame*> pass_;
    size_t passLocalCount_ = 0;

    ThumbnailLayout layout_;
    StripSlide slide_;
    bool shown_ = true;
    bool detachedBorders_ = false;
    // Where the wall drew last.
    SDL_Renderer* renderer_ = nullptr;
    OverlayGradient overlayGradient_;

    UI::VideoScrollbar scrollbar_;
    ScrollbarLinger linger_;
    // The last update had a wheel step that the wall took.
    bool wheelMoved_ = false;

    VideoFrame* draggedTile_ = nullptr;
    TilePress press_;
    EdgeScroll edgeScroll_;
    // The present drag has moved something.
    bool orderTouched_ = false;
    // The user has set the order, which ends the automatic sorting.
    bool orderChanged_ = false;
    bool widerMenusWanted_ = false;
};

}  // namespace Corvanta::Video
