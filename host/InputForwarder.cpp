#include "host/InputForwarder.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include "host/KeyNames.h"
#include "interface/SDLinterface.h"

namespace Corvanta::Host {
namespace {

constexpr float kOutside = -1.0F;
constexpr int kWheelStep = QWheelEvent::DefaultDeltasPerStep;

}  // namespace

InputForwarder::InputForwarder(QWidget& surface, int window) : surface_(surface), window_(window) {
    surface_.setMouseTracking(true);
    surface_.installEventFilter(this);
}

void InputForwarder::Move(QPointF position) const {
    SDLinterface_PushMouseMoveEvent(window_, static_cast<float>(position.x() / surface_.width()),
                                    static_cast<float>(position.y() / surface_.height()));
}

bool InputForwarder::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseMove: Move(static_cast<QMouseEvent*>(event)->position()); return true;
        case QEvent::Leave: SDLinterface_PushMouseMoveEvent(window_, kOutside, kOutside); break;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            if (static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton) break;
            surface_.setFocus(Qt::MouseFocusReason);
            SDLinterface_PushMouseButtonDownEvent(window_);
            return true;
        case QEvent::MouseButtonRelease:
            if (static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton) break;
            SDLinterface_PushMouseButtonUpEvent(window_);
            return true;
        case QEvent::Wheel: {
            wheelRest_ += static_cast<QWheelEvent*>(event)->angleDelta();
            const QPoint steps(wheelRest_.x() / kWheelStep, wheelRest_.y() / kWheelStep);
            wheelRest_ -= steps * kWheelStep;
            if (!steps.isNull()) SDLinterface_PushScrollWheelEvent(window_, steps.x(), steps.y());
            return true;
        }
        case QEvent::KeyPress:
        case QEvent::KeyRelease: {
            const auto* key = static_cast<QKeyEvent*>(event);
            const std::string name = KeyNameOf(key->key());
            if (key->isAutoRepeat() || name.empty()) break;
            if (event->type() == QEvent::KeyPress) {
                SDLinterface_PushKeyDownEvent(window_, name.c_str());
            } else {
                SDLinterface_PushKeyUpEvent(window_, name.c_str());
            }
            break;
        }
        case QEvent::FocusIn: SDLinterface_TextInputEnabled(true); break;
        case QEvent::FocusOut: SDLinterface_TextInputEnabled(false); break;
        default: break;
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace Corvanta::Host
