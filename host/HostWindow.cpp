#include "host/HostWindow.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QPalette>

#include "host/DarkLook.h"
#include "host/WindowLayout.h"
#include "interface/SDLinterface.h"

namespace Corvanta::Host {
namespace {

// The library's index of the room's window.
constexpr int kMainWindow = 0;
constexpr int kMinWidth = 160;
constexpr int kMinHeight = 90;

void SetPlace(QWidget& widget, const Place& place) {
    widget.setGeometry(place.x, place.y, place.width, place.height);
}

}  // namespace

HostWindow::HostWindow(const QString& title, int width, int height)
    : frame_(this),
      room_(&frame_),
      input_(room_, kMainWindow),
      leaveFullscreen_(QKeySequence(Qt::Key_Escape), this) {
    setWindowTitle(title);
    setMinimumSize(kMinWidth, kMinHeight);
    resize(width, height);
    QPalette dark = palette();
    dark.setColor(QPalette::Window, kWindowColour);
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
    Arrange();
}

void HostWindow::SetBar(QWidget* bar) {
    bar_ = bar;
    bar_->hide();
}

void HostWindow::SetPanel(QWidget* panel) {
    panel_ = panel;
    panel_->hide();
}

void HostWindow::ShowBar(bool on) {
    Show(bar_, on);
}

void HostWindow::ShowPanel(bool on) {
    Show(panel_, on);
}

void HostWindow::Show(QWidget* part, bool on) {
    if (part == nullptr || part->isHidden() == !on) return;
    // Else the focus would go to whatever stands next.
    if (!on && part->isAncestorOf(focusWidget())) room_.setFocus();
    part->setVisible(on);
    Arrange();
}

void HostWindow::Arrange() {
    const bool hasBar = bar_ != nullptr && !bar_->isHidden();
    const bool hasPanel = panel_ != nullptr && !panel_->isHidden();
    const WindowLayout layout =
        LayOut(width(), height(), {.panel = hasPanel, .barHeight = hasBar ? bar_->sizeHint().height() : 0});
    SetPlace(frame_, layout.room);
    room_.setGeometry(frame_.rect());
    if (hasBar) SetPlace(*bar_, layout.bar);
    if (hasPanel) SetPlace(*panel_, layout.panel);
}

}  // namespace Corvanta::Host
