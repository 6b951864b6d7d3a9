// The wall of tiles. It holds plain pointers to tiles that the room owns and never frees one. Any thread; its
// own lock comes after the room's and before a tile's.
#pragma once

#include <mutex>
#include <vector>

#include "video/Forward.h"

namespace Corvanta::Video {

class VideoThumbnails final {
public:
    void AddTile(VideoFrame* tile);
    void RemoveTile(const VideoFrame* tile);
    [[nodiscard]] std::vector<VideoFrame*> GetTiles() const;

    // The host draws borders around the wall's own window.
    void SetDetachedBorders(bool visible);
    [[nodiscard]] bool HasDetachedBorders() const;

private:
    mutable std::recursive_mutex gridMutex_;
    // guards: everything below
    std::vector<VideoFrame*> tiles_;
    bool detachedBorders_ = false;
};

}  // namespace Corvanta::Video
