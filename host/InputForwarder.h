// Hands a surface's mouse and keys to the library, as an event filter. Main thread only.
#pragma once

#include <QKeyEvent>
#include <QObject>
#include <QPointF>
#include <QWidget>

#include <map>
#include <string>
#include <utility>

namespace Corvanta::Host {

class InputForwarder final : public QObject {
public:
    // surface must outlive this object. window: the library's index of the surface's window.
    InputForwarder(QWidget& surface, int window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Where a key is on the keyboard; the toolkit's own number for an event that no keyboard made.
    using KeyPlace = std::pair<quint32, int>;

    [[nodiscard]] static KeyPlace PlaceOf(const QKeyEvent& key);
    void Move(QPointF position) const;
    void Turn(QPoint angleDelta);
    // Whether it is a key of a text that is being typed over the video.
    [[nodiscard]] static bool IsTyped(const QKeyEvent& key);
    void Press(const QKeyEvent& key);
    void Release(const QKeyEvent& key);
    void ReleaseAll();

    QWidget& surface_;
    const int window_;
    // What is left of wheel turns smaller than a step.
    QPoint wheelRest_;
    // Keys that are down, by the names of their presses: a modifier that changes meanwhile gives the same key
    // another name.
    std::map<KeyPlace, std::string> held_;
};

}  // namespace Corvanta::Host
