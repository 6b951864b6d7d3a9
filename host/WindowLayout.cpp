#include "host/WindowLayout.h"

#include <algorithm>

namespace Corvanta::Host {
namespace {

constexpr int kPanelWidth = 300;

}  // namespace

WindowLayout LayOut(int width, int height, WindowParts parts) {
    width = std::max(width, 2);
    height = std::max(height, 2);
    const int panelWidth = parts.panel ? std::clamp(width * 2 / 5, 1, kPanelWidth) : 0;
    const int barHeight = std::clamp(parts.barHeight, 0, height - 1);
    const int roomWidth = width - panelWidth;
    WindowLayout layout;
    layout.room = {0, barHeight, roomWidth, height - barHeight};
    if (barHeight > 0) layout.bar = {0, 0, roomWidth, barHeight};
    if (parts.panel) layout.panel = {roomWidth, 0, panelWidth, height};
    return layout;
}

}  // namespace Corvanta::Host
