#include "host/InputForwarder.h"

#include <QEnterEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include "host/KeyNames.h"
#include "interface/SDLinterface.h"

namespace Corvanta::Host {
namespace {

constexpr float kOutside = -1.0F;
// A step moves the thumb of a scrollbar by one pixel; a notch of the wheel makes twelve.
constexpr int kWheelStep = QWheelEvent::DefaultDeltasPerStep / 12;

// Whether the key itself makes something of a text: modifiers, arrows and function keys make nothing.
bool MakesText(const QKeyEvent& key) {
    const int number = key.key();
    return (number >= Qt::Key_Space && number <= Qt::Key_AsciiTilde) || number == Qt::Key_Return ||
           number == Qt::Key_Enter || number == Qt::Key_Backspace;
}

bool IsCommand(const QKeyEvent& key) {
    return (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != Qt::NoModifier;
}

// The library knows the key of such a sign by the row of digits, which types another one.
bool IsMistyped(const QKeyEvent& key) {
    return (key.modifiers() & Qt::KeypadModifier) != Qt::NoModifier &&
           (key.key() == Qt::Key_Asterisk || key.key() == Qt::Key_Plus);
}

}  // namespace

InputForwarder::InputForwarder(QWidget& surface, int window) : surface_(surface), window_(window) {
    surface_.setMouseTracking(true);
    surface_.installEventFilter(this);
}

void InputForwarder::Move(QPointF position) const {
    SDLinterface_PushMouseMoveEvent(window_, static_cast<float>(position.x() / surface_.width()),
                                    static_cast<float>(position.y() / surface_.height()));
}

void InputForwarder::Turn(QPoint angleDelta) {
    wheelRest_ += angleDelta;
    const QPoint steps(wheelRest_.x() / kWheelStep, wheelRest_.y() / kWheelStep);
    wheelRest_ -= steps * kWheelStep;
    if (!steps.isNull()) SDLinterface_PushScrollWheelEvent(window_, steps.x(), steps.y());
}

InputForwarder::KeyPlace InputForwarder::PlaceOf(const QKeyEvent& key) {
    const quint32 scanCode = key.nativeScanCode();
    return {scanCode, scanCode == 0 ? key.key() : 0};
}

bool InputForwarder::IsTyped(const QKeyEvent& key) {
    return MakesText(key) && !IsCommand(key) && SDLinterface_IsTextOpen();
}

void InputForwarder::Press(const QKeyEvent& key) {
    const std::string name = KeyNameOf(key.key());
    if (key.isAutoRepeat() || name.empty()) return;
    // The library would write the letter of a Ctrl+C into the text.
    if (MakesText(key) && (IsCommand(key) || IsMistyped(key)) && SDLinterface_IsTextOpen()) return;
    held_[PlaceOf(key)] = name;
    SDLinterface_PushKeyDownEvent(window_, name.c_str());
}

void InputForwarder::Release(const QKeyEvent& key) {
    if (key.isAutoRepeat()) return;
    const auto held = held_.find(PlaceOf(key));
    if (held == held_.end()) return;
    SDLinterface_PushKeyUpEvent(window_, held->second.c_str());
    held_.erase(held);
}

void InputForwarder::ReleaseAll() {
    for (const auto& [place, name] : held_) SDLinterface_PushKeyUpEvent(window_, name.c_str());
    held_.clear();
}

bool InputForwarder::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::Enter: Move(static_cast<QEnterEvent*>(event)->position()); break;
        case QEvent::MouseMove: Move(static_cast<QMouseEvent*>(event)->position()); return true;
        case QEvent::Leave: SDLinterface_PushMouseMoveEvent(window_, kOutside, kOutside); break;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick: {
            const auto* press = static_cast<QMouseEvent*>(event);
            if (press->button() != Qt::LeftButton) break;
            surface_.setFocus(Qt::MouseFocusReason);
            // A press carries no place of its own, and no motion need have come before it.
            Move(press->position());
            SDLinterface_PushMouseButtonDownEvent(window_);
            return true;
        }
        case QEvent::MouseButtonRelease:
            if (static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton) break;
            SDLinterface_PushMouseButtonUpEvent(window_);
            return true;
        case QEvent::Wheel: Turn(static_cast<QWheelEvent*>(event)->angleDelta()); return true;
        case QEvent::ShortcutOverride:
            // Else a key that is somebody's shortcut would go there.
            if (IsTyped(*static_cast<QKeyEvent*>(event))) {
                event->accept();
                return true;
            }
            break;
        case QEvent::KeyPress: Press(*static_cast<QKeyEvent*>(event)); break;
        case QEvent::KeyRelease: Release(*static_cast<QKeyEvent*>(event)); break;
        case QEvent::FocusIn: SDLinterface_TextInputEnabled(true); break;
        case QEvent::FocusOut:
            // In this order: switching off discards the keys that wait.
            SDLinterface_TextInputEnabled(false);
            ReleaseAll();
            break;
        default: break;
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace Corvanta::Host
