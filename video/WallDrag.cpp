#include "video/WallDrag.h"

namespace Corvanta::Video {

PinChange PinChangeOfMove(int from, int to, bool isPinned, int pinnedCount) {
    const bool towardsFront = from >= to;
    if (towardsFront && !isPinned && to < pinnedCount) return PinChange::Pin;
    if (!towardsFront && isPinned && to >= pinnedCount) return PinChange::Unpin;
    return PinChange::None;
}

}  // namespace Corvanta::Video
