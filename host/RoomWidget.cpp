#include "host/RoomWidget.h"

#include <cstdint>

namespace Corvanta::Host {

RoomWidget::RoomWidget(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_NativeWindow);
    setAttribute(Qt::WA_PaintOnScreen);
    setAttribute(Qt::WA_NoSystemBackground);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
}

SurfaceMetrics RoomWidget::Metrics() const {
    return MetricsOf(width(), height(), devicePixelRatio());
}

void* RoomWidget::NativeHandle() const {
    // The library's face carries an X11 window id, a number, in a pointer.
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(winId()));
}

}  // namespace Corvanta::Host
