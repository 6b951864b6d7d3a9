// The top-level window around the room's surface: title, full screen and the keys of the window itself. It is
// only hidden by its owner: closing it ends the event loop, so that the room goes before its window. Main
// thread only.
#pragma once

#include <QShortcut>
#include <QWidget>

#include "host/InputForwarder.h"
#include "host/RoomWidget.h"

namespace Corvanta::Host {

class HostWindow final : public QWidget {
public:
    // `width` and `height` in logical pixels.
    HostWindow(const QString& title, int width, int height);

    [[nodiscard]] RoomWidget& Room() { return room_; }

    void SetFullscreen(bool on);

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    RoomWidget room_;
    InputForwarder input_;
    // Enabled in full screen alone: elsewhere Escape is the room's.
    QShortcut leaveFullscreen_;
};

}  // namespace Corvanta::Host
