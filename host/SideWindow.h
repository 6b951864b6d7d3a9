// A window beside the room's: a surface that the library draws on, and nothing else. It is only hidden by its
// owner, who hears when the person closes it, since the library must let go of the surface first. Main thread
// only.
#pragma once

#include <QWidget>

#include <functional>

#include "host/RoomWidget.h"

namespace Corvanta::Host {

class SideWindow : public QWidget {
public:
    // width and height in logical pixels. onClose is called in the midst of an event of the window, which it
    // must not destroy.
    SideWindow(int width, int height, std::function<void()> onClose);

    [[nodiscard]] RoomWidget& Surface() { return surface_; }

    // Shows it and waits until the display server knows it, as the library reaches it over a connection of
    // its own.
    void ShowForDrawing();

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    RoomWidget surface_;
    const std::function<void()> onClose_;
};

}  // namespace Corvanta::Host
