// The surface that the library draws on: a native window that the toolkit itself never paints. Main thread
// only.
#pragma once

#include <QWidget>

#include "host/SurfaceMetrics.h"

namespace Corvanta::Host {

class RoomWidget final : public QWidget {
public:
    explicit RoomWidget(QWidget* parent);

    // Size and scale as they are now.
    [[nodiscard]] SurfaceMetrics Metrics() const;

    // The native window as the library takes it. Valid while this object lives.
    [[nodiscard]] void* NativeHandle() const;

    [[nodiscard]] QPaintEngine* paintEngine() const override { return nullptr; }

protected:
    void paintEvent(QPaintEvent*) override {}
};

}  // namespace Corvanta::Host
