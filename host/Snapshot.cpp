#include "host/Snapshot.h"

#include <QImage>
#include <QPixmap>
#include <QSaveFile>
#include <QScreen>
#include <QWidget>

namespace Corvanta::Host {
namespace {

// One colour from edge to edge: nobody has drawn.
bool IsUniform(const QImage& image) {
    const QRgb first = image.pixel(0, 0);
    for (int y = 0; y < image.height(); ++y) {
        const auto* const row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (row[x] != first) {
                return false;
            }
        }
    }
    return true;
}

}  // namespace

std::optional<Failure> WriteSnapshot(const QWidget& window, const std::filesystem::path& path) {
    const QImage image =
        window.screen()->grabWindow(window.winId()).toImage().convertToFormat(QImage::Format_RGB32);
    if (image.isNull()) {
        return Failure{"the window's picture cannot be read from the display"};
    }
    if (IsUniform(image)) {
        return Failure{"nothing was drawn in the window, so there is no snapshot"};
    }
    QSaveFile file(QString::fromStdString(path.string()));
    if (!file.open(QIODevice::WriteOnly) || !image.save(&file, "PNG") || !file.commit()) {
        return Failure{"the snapshot cannot be written: " + path.string() + ": " +
                       file.errorString().toStdString()};
    }
    return std::nullopt;
}

}  // namespace Corvanta::Host
