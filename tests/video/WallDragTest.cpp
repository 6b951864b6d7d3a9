// Dragging a tile to another place, by numbers and through the wall.
#include "video/WallDrag.h"

#include <gtest/gtest.h>

namespace Corvanta::Video {
namespace {

TEST(TilePress, BecomesADragByOnePixelInEitherDirection) {
    const TilePress press{.pending = true, .at = {10, 20}};
    EXPECT_FALSE(press.HasMoved({10, 20}));
    EXPECT_TRUE(press.HasMoved({11, 20}));
    EXPECT_TRUE(press.HasMoved({9, 20}));
    EXPECT_TRUE(press.HasMoved({10, 21}));
    EXPECT_TRUE(press.HasMoved({10, 19}));
}

TEST(WallDrag, ChangesThePinOnlyWhenTheBorderIsCrossed) {
    struct Row {
        int from;
        int to;
        bool isPinned;
        int pinnedCount;
        PinChange change;
    };
    for (const Row& row : {Row{3, 0, false, 0, PinChange::None}, Row{3, 0, false, 1, PinChange::Pin},
                           Row{3, 1, false, 2, PinChange::Pin}, Row{3, 2, false, 2, PinChange::None},
                           Row{3, 2, false, 3, PinChange::Pin}, Row{1, 0, true, 2, PinChange::None},
                           Row{0, 1, true, 2, PinChange::None}, Row{0, 2, true, 2, PinChange::Unpin},
                           Row{1, 2, true, 2, PinChange::Unpin}, Row{0, 3, true, 2, PinChange::Unpin},
                           Row{2, 4, false, 2, PinChange::None}, Row{0, 1, true, 1, PinChange::Unpin}}) {
        EXPECT_EQ(PinChangeOfMove(row.from, row.to, row.isPinned, row.pinnedCount), row.change)
            << "from " << row.from << " to " << row.to << " of " << row.pinnedCount << " pinned";
    }
}

}  // namespace
}  // namespace Corvanta::Video
