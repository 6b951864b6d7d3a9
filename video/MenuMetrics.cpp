#include "video/MenuMetrics.h"

#include <atomic>
#include <cmath>

#include "ui/Arithmetic.h"
#include "video/VideoFrame.h"

namespace Corvanta::Video {
namespace {

constexpr double kDesignHeight = 160.0;
constexpr double kScrollbarShare = 0.05;

std::atomic<int> gCurrentMenuWidth{kMenuWidth};

[[nodiscard]] int Round(double value) {
    return UI::Truncate(std::round(value));
}

}  // namespace

int CurrentMenuWidth() {
    return gCurrentMenuWidth.load();
}

void SetCurrentMenuWidth(int width) {
    gCurrentMenuWidth.store(width);
}

MenuMetrics MenuMetricsFor(int tileHeight) {
    return {.menuWidth = Round(CurrentMenuWidth() / kDesignHeight * tileHeight),
            .itemHeight = Round(kMenuItemHeight / kDesignHeight * tileHeight),
            .scrollbarWidth = Round(tileHeight * kScrollbarShare)};
}

void ApplyMenuMetrics(VideoFrame& tile, const MenuMetrics& metrics) {
    UI::Menu& menu = tile.GetMenu();
    // The items get the whole width; the menu takes the scrollbar's share off them again when it shows one.
    menu.GetScrollbar().SetVisible(false);
    menu.SetWidth(metrics.menuWidth);
    menu.SetItemHeight(metrics.itemHeight);
    menu.GetScrollbar().SetWidth(metrics.scrollbarWidth);
}

}  // namespace Corvanta::Video
