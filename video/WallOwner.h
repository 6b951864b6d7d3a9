// What the wall asks of the view that owns its tiles. The wall calls with its own lock held, inside a tick.
#pragma once

namespace Corvanta::Video {

class VideoFrame;

class WallOwner {
public:
    // Whether the tile's stream is the main video now; the local camera's never counts.
    [[nodiscard]] virtual bool IsMainVideo(const VideoFrame& tile) const = 0;
    // A click that belongs to the tile itself.
    virtual void OnTileClicked(VideoFrame* tile, bool fromMenu) = 0;
    // Layer 1 is the wall's; cursor 0 is none, 1 the hand.
    virtual void SetCursor(int cursor, int layer) = 0;
    // Width of the room's own view in logical pixels, also while the wall stands in another window.
    [[nodiscard]] virtual int GetViewWidth() const = 0;
    // The wall stands in a window of its own.
    [[nodiscard]] virtual bool IsDetached() const = 0;

protected:
    ~WallOwner() = default;
};

}  // namespace Corvanta::Video
