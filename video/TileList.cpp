#include "video/TileList.h"

#include <algorithm>
#include <iterator>

namespace Corvanta::Video {
namespace {

using Tiles = std::vector<VideoFrame*>;

[[nodiscard]] bool IsIn(const Tiles& tiles, const VideoFrame* tile) {
    return std::find(tiles.begin(), tiles.end(), tile) != tiles.end();
}

}  // namespace

bool TileList::Add(VideoFrame* tile, TileOrigin origin) {
    if (tile == nullptr || Contains(tile)) return false;
    (origin == TileOrigin::Remote ? remote_ : local_).push_back(tile);
    return true;
}

bool TileList::Remove(VideoFrame* tile) {
    if (const auto found = std::find(local_.begin(), local_.end(), tile); found != local_.end()) {
        local_.erase(found);
        return true;
    }
    const auto found = std::find(remote_.begin(), remote_.end(), tile);
    if (found == remote_.end()) return false;
    SetPinned(*tile, false);
    remote_.erase(found);
    return true;
}

bool TileList::Contains(const VideoFrame* tile) const {
    return IsIn(local_, tile) || IsIn(remote_, tile);
}

void TileList::CopyTo(Tiles& target) const {
    target.assign(local_.begin(), local_.end());
    target.insert(target.end(), remote_.begin(), remote_.end());
}

int TileList::IndexOfRemote(const VideoFrame* tile) const {
    const auto found = std::find(remote_.begin(), remote_.end(), tile);
    return found == remote_.end() ? -1 : static_cast<int>(std::distance(remote_.begin(), found));
}

void TileList::MoveRemote(int from, int to) {
    const auto start = remote_.begin();
    if (from < to) {
        std::rotate(start + from, start + from + 1, start + to + 1);
    } else {
        std::rotate(start + to, start + from, start + from + 1);
    }
}

bool TileList::Pin(VideoFrame* tile) {
    const int index = IndexOfRemote(tile);
    if (index < 0 || tile->pinned) return false;
    MoveRemote(index, PinnedCount());
    SetPinned(*tile, true);
    return true;
}

bool TileList::Unpin(VideoFrame* tile) {
    const int index = IndexOfRemote(tile);
    if (index < 0 || !tile->pinned) return false;
    MoveRemote(index, PinnedCount() - 1);
    SetPinned(*tile, false);
    return true;
}

void TileList::SetPinned(VideoFrame& tile, bool pinned) {
    if (tile.pinned == pinned) return;
    tile.pinned = pinned;
    pinnedCount_ += pinned ? 1 : -1;
}

Tiles TileList::Reorder(const std::vector<std::string>& streamIds) {
    Tiles ordered;
    ordered.reserve(remote_.size());
    for (const std::string& id : streamIds) {
        const auto found = std::find_if(remote_.begin(), remote_.end(), [&](const VideoFrame* tile) {
            return tile->GetStreamId() == id && !IsIn(ordered, tile);
        });
        const bool isNew = std::none_of(ordered.begin(), ordered.end(),
                                        [&](const VideoFrame* tile) { return tile->GetStreamId() == id; });
        if (found != remote_.end() && isNew) ordered.push_back(*found);
    }
    std::stable_partition(ordered.begin(), ordered.end(),
                          [](const VideoFrame* tile) { return tile->pinned; });
    Tiles left;
    std::copy_if(remote_.begin(), remote_.end(), std::back_inserter(left),
                 [&](const VideoFrame* tile) { return !IsIn(ordered, tile); });
    for (VideoFrame* tile : left) SetPinned(*tile, false);
    remote_ = std::move(ordered);
    return left;
}

void TileList::SortByPicture() {
    std::stable_partition(remote_.begin(), remote_.end(),
                          [](const VideoFrame* tile) { return !tile->HasNoVideo(true); });
}

}  // namespace Corvanta::Video
