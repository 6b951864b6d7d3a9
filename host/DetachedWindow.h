// The window of the detached wall: its surface, its input, and a menu of the layouts on the right button.
// Main thread only.
#pragma once

#include <functional>

#include "host/InputForwarder.h"
#include "host/SideWindow.h"
#include "host/WallLayout.h"

namespace Corvanta::Host {

class DetachedWindow final : public SideWindow {
public:
    // What the person may ask for here. Called in the midst of an event of the window, which they must not
    // destroy.
    struct Wishes {
        std::function<void()> attach;
        std::function<void(WallLayout)> setLayout;
    };

    DetachedWindow(WallLayout layout, Wishes wishes);

    // The one that the menu marks.
    void SetLayoutShown(WallLayout layout) { layout_ = layout; }

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    InputForwarder input_;
    WallLayout layout_;
    const Wishes wishes_;
};

}  // namespace Corvanta::Host
