#include "ui/MenuLayout.h"

#include <algorithm>

#include "ui/Arithmetic.h"

namespace Corvanta::UI {
namespace {

constexpr float kPaddingShare = 0.16666667F;
constexpr int kRowsOfScrolledMenu = 5;

}  // namespace

int MenuContentHeight(int items, int dividers, int itemHeight) {
    return items * itemHeight - (itemHeight - 1) * dividers;
}

int MenuPadding(int itemHeight) {
    return Truncate(static_cast<float>(itemHeight) * kPaddingShare);
}

int MenuPlateHeight(int items, int dividers, int itemHeight, bool scrollable) {
    const int list = scrollable ? std::min(kRowsOfScrolledMenu, items) * itemHeight
                                : MenuContentHeight(items, dividers, itemHeight);
    return 2 * MenuPadding(itemHeight) + list;
}

double MenuSlideDistance(int64_t elapsedMs, int openMs, int height) {
    return (1 - static_cast<double>(elapsedMs) / openMs) * height;
}

}  // namespace Corvanta::UI
