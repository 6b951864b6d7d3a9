// The top-level window around the room's surface: title, full screen and the keys of the window itself, and
// where the host's own bar and panel stand beside the room. It is only hidden by its owner: closing it ends
// the event loop, so that the room goes before its window. Main thread only.
#pragma once

#include <QPointer>
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
    // What the room fills, a child of this window.
    [[nodiscard]] QWidget& RoomFrame() { return frame_; }

    void SetFullscreen(bool on);

    // A widget that stands above the room, with its height, and one at its right; both are this window's
    // children, and the room has their place while they are hidden.
    void SetBar(QWidget* bar);
    void SetPanel(QWidget* panel);
    void ShowBar(bool on);
    void ShowPanel(bool on);

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void Arrange();
    void Show(QWidget* part, bool on);

    // Whoever resizes the room's native window by its handle may put it at its parent's corner as well, so it
    // has a parent of its own.
    QWidget frame_;
    RoomWidget room_;
    InputForwarder input_;
    // Enabled in full screen alone: elsewhere Escape is the room's.
    QShortcut leaveFullscreen_;
    QPointer<QWidget> bar_;
    QPointer<QWidget> panel_;
};

}  // namespace Corvanta::Host
