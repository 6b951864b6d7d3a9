#include "host/KeyButton.h"

#include <QEvent>
#include <QKeyEvent>

#include <utility>

#include "host/KeyNames.h"
#include "host/RoomState.h"

namespace Corvanta::Host {

KeyButton::KeyButton(QWidget* parent, std::function<void(const std::string&)> onKey)
    : QPushButton(parent), onKey_(std::move(onKey)) {
    setAutoDefault(false);
    QObject::connect(this, &QPushButton::clicked, this, [this] { SetWaiting(true); });
    SetKey({});
}

void KeyButton::SetKey(const std::string& key) {
    key_ = key;
    SetWaiting(false);
}

void KeyButton::SetWaiting(bool waiting) {
    waiting_ = waiting;
    if (waiting_) {
        setText(QStringLiteral("Press a key..."));
    } else {
        setText(key_.empty() ? QStringLiteral("No key") : QString::fromStdString(KeyLabelOf(key_)));
    }
}

bool KeyButton::event(QEvent* event) {
    if (!waiting_) return QPushButton::event(event);
    switch (event->type()) {
        case QEvent::ShortcutOverride:
            // Else a key that is somebody's shortcut would go there.
            event->accept();
            return true;
        case QEvent::KeyPress: Take(static_cast<QKeyEvent*>(event)->key()); return true;
        case QEvent::KeyRelease: return true;
        default: return QPushButton::event(event);
    }
}

void KeyButton::Take(int qtKey) {
    // These two move the focus and close dialogs, in the room as everywhere.
    if (qtKey == Qt::Key_Escape || qtKey == Qt::Key_Tab || qtKey == Qt::Key_Backtab) {
        SetWaiting(false);
        return;
    }
    const std::string key = KeyNameOf(qtKey);
    if (key.empty()) return;
    SetKey(key);
    onKey_(key);
}

void KeyButton::focusOutEvent(QFocusEvent* event) {
    QPushButton::focusOutEvent(event);
    if (waiting_) SetWaiting(false);
}

}  // namespace Corvanta::Host
