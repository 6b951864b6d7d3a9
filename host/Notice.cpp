#include "host/Notice.h"

#include <QEvent>

#include <algorithm>

#include "host/HostWindow.h"

namespace Corvanta::Host {
namespace {

constexpr int kMargin = 12;

}  // namespace

Notice::Notice(HostWindow& window, Height height)
    : QLabel(&window), room_(window.RoomFrame()), height_(height) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignCenter);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Button);
    setForegroundRole(QPalette::ButtonText);
    setMargin(kMargin);
    hide();
    end_.setSingleShot(true);
    end_.callOnTimeout([this] { Hide(); });
    room_.installEventFilter(this);
}

void Notice::ShowText(const QString& text) {
    end_.stop();
    setText(text);
    Arrange();
    show();
    raise();
}

void Notice::ShowFor(const QString& text, std::chrono::milliseconds time) {
    ShowText(text);
    end_.start(time);
}

void Notice::Hide() {
    end_.stop();
    hide();
}

bool Notice::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize || event->type() == QEvent::Move) Arrange();
    return QLabel::eventFilter(watched, event);
}

void Notice::Arrange() {
    const QRect room = room_.geometry();
    const int widest = std::max(1, room.width() - 2 * kMargin);
    setWordWrap(false);
    QSize size = sizeHint();
    if (size.width() > widest) {
        setWordWrap(true);
        size = {widest, heightForWidth(widest)};
    }
    QRect place({0, 0}, size);
    place.moveCenter(room.center());
    if (height_ == Height::Low) place.moveCenter({room.center().x(), room.top() + room.height() * 2 / 3});
    setGeometry(place);
}

}  // namespace Corvanta::Host
