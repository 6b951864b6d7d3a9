#include "host/Snapshot.h"

#include <algorithm>
#include <span>

#include <QPixmap>
#include <QSaveFile>
#include <QScreen>
#include <QWidget>

namespace Corvanta::Host {

QImage TakeSnapshot(const QWidget& window) {
    return window.screen()->grabWindow(window.winId()).toImage().convertToFormat(QImage::Format_RGB32);
}

bool ShowsSomething(const QImage& snapshot) {
    if (snapshot.isNull()) {
        return false;
    }
    const QRgb first = snapshot.pixel(0, 0);
    for (int y = 0; y < snapshot.height(); ++y) {
        const std::span row(reinterpret_cast<const QRgb*>(snapshot.constScanLine(y)),
                            static_cast<std::size_t>(snapshot.width()));
        if (std::ranges::any_of(row, [first](QRgb pixel) { return pixel != first; })) {
            return true;
        }
    }
    return false;
}

std::optional<Failure> WriteSnapshot(const QImage& snapshot, const std::filesystem::path& path) {
    if (snapshot.isNull()) {
        return Failure{"the window's picture cannot be read from the display"};
    }
    if (!ShowsSomething(snapshot)) {
        return Failure{"nothing was drawn in the window, so there is no snapshot"};
    }
    QSaveFile file(QString::fromStdString(path.string()));
    if (!file.open(QIODevice::WriteOnly) || !snapshot.save(&file, "PNG") || !file.commit()) {
        return Failure{"the snapshot cannot be written: " + path.string() + ": " +
                       file.errorString().toStdString()};
    }
    return std::nullopt;
}

}  // namespace Corvanta::Host
