// The wall of tiles: which tiles there are and in which order, where they stand, hover, drag, pins and
// scrolling, and which are worth a subscription. It draws into whatever renderer it is given. It holds plain
// pointers to tiles that the room owns and never frees one. Tiles come and go on any thread; drawing and input
// belong to the render thread. Its lock comes after the room's and before a tile's.
#pragma once

#include <SDL.h>

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "ui/VideoScrollbar.h"
#include "video/OverlayGradient.h"
#include "video/ThumbnailLayout.h"
#include "video/WallOwner.h"

namespace Corvanta::Video {

class VideoThumbnails final {
public:
    // view: outlives the wall's last use.
    explicit VideoThumbnails(WallOwner& view);

    void AddTile(VideoFrame* tile, bool remote);
    // Any tile; one that is in no list is ignored.
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

    // The host draws borders around the wall's own window.
    void SetDetachedBorders(bool visible);
    [[nodiscard]] bool HasDetachedBorders() const;

private:
    mutable std::recursive_mutex gridMutex_;
    WallOwner& view_;
};

}  // namespace Corvanta::Video
