#include "host/HostWindow.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QPalette>

#include "interface/SDLinterface.h"

namespace Corvanta::Host {
namespace {

// The library's index of the room's window.
constexpr int kMainWindow = 0;
constexpr int kMinWidth = 160;
constexpr int kMinHeight = 90;
constexpr QColor kBackground(0x12, 0x13, 0x16);

}  // namespace

HostWindow::HostWindow(const QString& title, int width, int height)
    : room_(this), input_(room_, kMainWindow), leaveFullscreen_(QKeySequence(Qt::Key_Escape), this) {
    setWindowTitle(title);
    setMinimumSize(kMinWidth, kMinHeight);
    resize(width, height);
    QPalette dark = palette();
    dark.setColor(QPalette::Window, kBackground);
    setPalette(dark);

    const auto onKey = [this](const QKeySequence& key, auto action) {
        auto* const shortcut = new QShortcut(key, this);  // owned by this window
        QObject::connect(shortcut, &QShortcut::activated, this, action);
    };
    onKey(Qt::Key_F11, [this] { SetFullscreen(!isFullScreen()); });
    onKey(Qt::CTRL | Qt::Key_Q, [this] { close(); });
    leaveFullscreen_.setEnabled(false);
    QObject::connect(&leaveFullscreen_, &QShortcut::activated, this, [this] { SetFullscreen(false); });
}

void HostWindow::SetFullscreen(bool on) {
    if (on == isFullScreen()) {
        return;
    }
    setWindowState(windowState().setFlag(Qt::WindowFullScreen, on));
}

void HostWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    // Also reached when the window manager's own key did it.
    if (event->type() == QEvent::WindowStateChange) {
        leaveFullscreen_.setEnabled(isFullScreen());
        SDLinterface_VideoRoomSetFullscreenEnabled(isFullScreen());
    }
}

void HostWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    QCoreApplication::exit(0);
}

void HostWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    room_.setGeometry(rect());
}

}  // namespace Corvanta::Host
