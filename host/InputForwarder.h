// Hands a surface's mouse and keys to the library, as an event filter. Main thread only.
#pragma once

#include <QObject>
#include <QPointF>
#include <QWidget>

namespace Corvanta::Host {

class InputForwarder final : public QObject {
public:
    // surface must outlive this object. window: the library's index of the surface's window.
    InputForwarder(QWidget& surface, int window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Move(QPointF position) const;

    QWidget& surface_;
    const int window_;
    // What is left of wheel turns smaller than a step.
    QPoint wheelRest_;
};

}  // namespace Corvanta::Host
