#include "host/WallControls.h"

#include <QKeySequence>
#include <QMetaObject>
#include <QPoint>
#include <QRect>
#include <QScreen>
#include <QShortcut>
#include <QString>

#include <functional>
#include <utility>

#include "interface/SDLinterface.h"

namespace Corvanta::Host {
namespace {

// The library's indices of windows.
constexpr int kWallWindow = 1;
constexpr int kPreviewWindow = 2;

template <typename Action>
void OnKey(QWidget& window, const QKeySequence& key, Action action) {
    auto* const shortcut = new QShortcut(key, &window);  // owned by the window
    QObject::connect(shortcut, &QShortcut::activated, &window, std::move(action));
}

// Beside the room's window, if the screen has room there.
void MoveIfOnScreen(QWidget& window, QPoint position) {
    const QRect wanted(position, window.size());
    if (window.screen()->availableGeometry().contains(wanted)) window.move(position);
}

}  // namespace

WallControls::WallControls(QWidget& roomWindow, std::string roomName)
    : roomWindow_(roomWindow), roomName_(std::move(roomName)) {
    AddKeys(roomWindow_);
}

void WallControls::AddKeys(QWidget& window) {
    const auto onKey = [this, &window](Qt::Key key, void (WallControls::*action)()) {
        OnKey(window, key, [this, action] { Later(std::mem_fn(action)); });
    };
    onKey(Qt::Key_F7, &WallControls::SlideStrip);
    onKey(Qt::Key_F8, &WallControls::ToggleDetached);
    onKey(Qt::Key_F9, &WallControls::CycleLayout);
    onKey(Qt::Key_F10, &WallControls::TogglePreview);
}

void WallControls::Later(std::function<void(WallControls&)> action) {
    QMetaObject::invokeMethod(
        this, [this, action = std::move(action)] { action(*this); }, Qt::QueuedConnection);
}

bool WallControls::MakeWallView() {
    const SurfaceMetrics metrics = wallWindow_->Surface().Metrics();
    if (SDLinterface_CreateDetachedView(wallWindow_->Surface().NativeHandle(), metrics.physicalWidth,
                                        metrics.physicalHeight) != 1) {
        return false;
    }
    SDLinterface_UpdateWindowScale(kWallWindow, metrics.windowScale);
    wallMetrics_.SetTold(metrics);
    return true;
}

bool WallControls::Detach(WallLayout layout) {
    if (wallWindow_ == nullptr) {
        wallWindow_ = std::make_unique<DetachedWindow>(
            layout, DetachedWindow::Wishes{.attach = [this] { Later(&WallControls::Attach); },
                                           .setLayout =
                                               [this](WallLayout wanted) {
                                                   Later([wanted](WallControls& controls) {
                                                       controls.SetLayout(wanted);
                                                   });
                                               }});
        AddKeys(*wallWindow_);
        for (int number = 0; number < kWallLayoutCount; ++number) {
            OnKey(*wallWindow_, QKeySequence(Qt::Key_1 + number), [this, number] {
                Later([number](WallControls& controls) {
                    controls.SetLayout(static_cast<WallLayout>(number));
                });
            });
        }
        MoveIfOnScreen(*wallWindow_, roomWindow_.geometry().topRight() + QPoint(1, 0));
        wallWindow_->ShowForDrawing();
        if (!MakeWallView()) {
            wallWindow_.reset();
            return false;
        }
        stripShown_ = true;
    }
    SetLayout(layout);
    return true;
}

void WallControls::Attach() {
    SDLinterface_LeaveDetachedLayout();
    wallWindow_.reset();
}

void WallControls::ToggleDetached() {
    if (wallWindow_ != nullptr) {
        Attach();
    } else {
        Detach(layout_);
    }
}

void WallControls::SetLayout(WallLayout layout) {
    if (wallWindow_ == nullptr) return;
    layout_ = layout;
    SDLinterface_SetDetachedLayout(static_cast<int>(layout));
    wallWindow_->SetLayoutShown(layout);
    wallWindow_->setWindowTitle(QString::fromStdString(WallTitle(roomName_, layout)));
}

void WallControls::CycleLayout() {
    SetLayout(After(layout_));
}

void WallControls::SlideStrip() {
    if (wallWindow_ != nullptr) return;
    stripShown_ = !stripShown_;
    SDLinterface_SlideThumbnails(stripShown_, true);
}

bool WallControls::MakePreview() {
    const SurfaceMetrics metrics = previewWindow_->Surface().Metrics();
    if (SDLinterface_OpenLocalPreview(previewWindow_->Surface().NativeHandle(), metrics.physicalWidth,
                                      metrics.physicalHeight, true) != 1) {
        return false;
    }
    SDLinterface_UpdateWindowScale(kPreviewWindow, metrics.windowScale);
    previewMetrics_.SetTold(metrics);
    return true;
}

bool WallControls::OpenPreview() {
    if (previewWindow_ != nullptr) return true;
    previewWindow_ = std::make_unique<SideWindow>(kPreviewWidth, kPreviewHeight,
                                                  [this] { Later(&WallControls::ClosePreview); });
    AddKeys(*previewWindow_);
    previewWindow_->setWindowTitle(QString::fromStdString(PreviewTitle(roomName_)));
    MoveIfOnScreen(*previewWindow_, roomWindow_.geometry().bottomLeft() + QPoint(0, 1));
    previewWindow_->ShowForDrawing();
    if (MakePreview()) return true;
    previewWindow_.reset();
    return false;
}

void WallControls::ClosePreview() {
    SDLinterface_CloseLocalPreview();
    previewWindow_.reset();
}

void WallControls::TogglePreview() {
    if (previewWindow_ != nullptr) {
        ClosePreview();
    } else {
        OpenPreview();
    }
}

void WallControls::Tick() {
    const auto now = SettledMetrics::Clock::now();
    // Both views take a new size by being made anew on their window.
    if (wallWindow_ != nullptr) {
        if (wallMetrics_.TakeDue(wallWindow_->Surface().Metrics(), now) && !MakeWallView()) Attach();
        SDLinterface_TickDetachedView();
    }
    if (previewWindow_ != nullptr) {
        if (previewMetrics_.TakeDue(previewWindow_->Surface().Metrics(), now) && !MakePreview()) {
            ClosePreview();
        }
        SDLinterface_TickLocalPreview();
    }
}

}  // namespace Corvanta::Host
