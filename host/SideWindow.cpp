#include "host/SideWindow.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QPalette>

#include <utility>

namespace Corvanta::Host {
namespace {

constexpr int kMinWidth = 160;
constexpr int kMinHeight = 90;

}  // namespace

SideWindow::SideWindow(int width, int height, std::function<void()> onClose)
    : surface_(this), onClose_(std::move(onClose)) {
    setMinimumSize(kMinWidth, kMinHeight);
    resize(width, height);
    QPalette dark = palette();
    dark.setColor(QPalette::Window, Qt::black);
    setPalette(dark);
}

void SideWindow::ShowForDrawing() {
    show();
    QGuiApplication::sync();
}

void SideWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    onClose_();
}

void SideWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    surface_.setGeometry(rect());
}

}  // namespace Corvanta::Host
