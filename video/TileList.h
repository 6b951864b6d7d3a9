// Which tiles a wall holds and in which order: the user's own first, then the others', of which the pinned
// ones stand in front. Holds plain pointers that its users keep alive. Guarded by the wall that owns it.
#pragma once

#include <atomic>
#include <cstddef>
#include <string>
#include <vector>

#include "video/VideoFrame.h"

namespace Corvanta::Video {

class TileList final {
public:
    // Null, and a tile that is here already, is left out: false.
    bool Add(VideoFrame* tile, TileOrigin origin);
    // A pinned tile is unpinned. False for a tile that is not here.
    bool Remove(VideoFrame* tile);

    [[nodiscard]] bool Contains(const VideoFrame* tile) const;
    [[nodiscard]] size_t Count() const { return local_.size() + remote_.size(); }
    [[nodiscard]] const std::vector<VideoFrame*>& Local() const { return local_; }
    [[nodiscard]] const std::vector<VideoFrame*>& Remote() const { return remote_; }
    // Local tiles, then remote ones, in place of what is in target.
    void CopyTo(std::vector<VideoFrame*>& target) const;

    // -1 for a tile that is not among the remote ones.
    [[nodiscard]] int IndexOfRemote(const VideoFrame* tile) const;
    // The tiles in between keep their order. Both are places of the list.
    void MoveRemote(int from, int to);
    // To the end of the pinned ones, to the front of the others. False when it is not remote or is so
    // already.
    bool Pin(VideoFrame* tile);
    bool Unpin(VideoFrame* tile);
    // Flag and count alone; the tile is moved across the border by the caller. Remote tiles only.
    void SetPinned(VideoFrame& tile, bool pinned);
    [[nodiscard]] int PinnedCount() const { return pinnedCount_.load(); }

    // Remote tiles in the order of their ids, pinned ones still in front; an id counts where it comes first.
    // Returns the tiles that were not named, which have left the list.
    std::vector<VideoFrame*> Reorder(const std::vector<std::string>& streamIds);
    // Tiles without a picture go behind the others, both in their old order.
    void SortByPicture();

private:
    std::vector<VideoFrame*> local_;
    // Its first pinnedCount_ entries are pinned.
    std::vector<VideoFrame*> remote_;
    std::atomic<int> pinnedCount_{0};
};

}  // namespace Corvanta::Video
