// What the person does with the wall and with the preview of the own camera: the windows of both, their keys,
// and their ticks. It may outlive the room: without one it does nothing. Main thread only.
#pragma once

#include <QObject>

#include <functional>
#include <memory>
#include <string>

#include "host/DetachedWindow.h"
#include "host/SettledMetrics.h"
#include "host/SideWindow.h"
#include "host/WallLayout.h"

namespace Corvanta::Host {

class WallControls final : public QObject {
public:
    // Of the preview's window when it opens, in the desktop's units.
    static constexpr int kPreviewWidth = 480;
    static constexpr int kPreviewHeight = 270;

    // Gives roomWindow the keys; it must outlive this object.
    WallControls(QWidget& roomWindow, std::string roomName);

    // What follows opens and closes windows, and so is not for a function that the room calls, nor for an
    // event of one of the windows: these take Later.

    // The wall into a window of its own, or only into that layout when it is there already. False when the
    // window cannot be drawn on; then there is none.
    bool Detach(WallLayout layout);
    // And back; nothing while it stands in the room.
    void Attach();
    void ToggleDetached();
    // Nothing while the wall stands in the room.
    void SetLayout(WallLayout layout);
    void CycleLayout();
    // The strip out of the room's window and into it again. Nothing while detached.
    void SlideStrip();
    // False when the window cannot be drawn on; then there is none.
    bool OpenPreview();
    void ClosePreview();
    void TogglePreview();

    // Does it on the next pass of the event loop, or never if this object goes before. Any thread.
    void Later(std::function<void(WallControls&)> action);

    // One tick of each window that is open.
    void Tick();

    // The last layout that was shown, at first the grid.
    [[nodiscard]] WallLayout Layout() const { return layout_; }
    // Null while the wall stands in the room.
    [[nodiscard]] const QWidget* WallWindow() const { return wallWindow_.get(); }

private:
    void AddKeys(QWidget& window);
    [[nodiscard]] bool MakeWallView();
    [[nodiscard]] bool MakePreview();

    QWidget& roomWindow_;
    const std::string roomName_;
    WallLayout layout_ = WallLayout::Grid;
    bool stripShown_ = true;
    std::unique_ptr<DetachedWindow> wallWindow_;
    SettledMetrics wallMetrics_;
    std::unique_ptr<SideWindow> previewWindow_;
    SettledMetrics previewMetrics_;
};

}  // namespace Corvanta::Host
