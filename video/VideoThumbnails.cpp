#include "video/VideoThumbnails.h"

#include <algorithm>

namespace Corvanta::Video {

void VideoThumbnails::AddTile(VideoFrame* tile) {
    const std::scoped_lock lock(gridMutex_);
    if (std::find(tiles_.begin(), tiles_.end(), tile) == tiles_.end()) tiles_.push_back(tile);
}

void VideoThumbnails::RemoveTile(const VideoFrame* tile) {
    const std::scoped_lock lock(gridMutex_);
    tiles_.erase(std::remove(tiles_.begin(), tiles_.end(), tile), tiles_.end());
}

std::vector<VideoFrame*> VideoThumbnails::GetTiles() const {
    const std::scoped_lock lock(gridMutex_);
    return tiles_;
}

void VideoThumbnails::SetDetachedBorders(bool visible) {
    const std::scoped_lock lock(gridMutex_);
    detachedBorders_ = visible;
}

bool VideoThumbnails::HasDetachedBorders() const {
    const std::scoped_lock lock(gridMutex_);
    return detachedBorders_;
}

}  // namespace Corvanta::Video
