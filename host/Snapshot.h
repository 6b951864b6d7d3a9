// A picture of a window as the display server shows it, written to a file. Main thread only.
#pragma once

#include <filesystem>
#include <optional>

#include <QImage>

#include "host/Failure.h"

class QWidget;

namespace Corvanta::Host {

// What a shown top-level window shows now; a null image when the display does not give it.
[[nodiscard]] QImage TakeSnapshot(const QWidget& window);

// Whether there is more in the picture than one colour from edge to edge.
[[nodiscard]] bool ShowsSomething(const QImage& snapshot);

// Writes a PNG file. A snapshot that shows nothing, and a file that cannot be written, are failures; then no
// file is left behind.
[[nodiscard]] std::optional<Failure> WriteSnapshot(const QImage& snapshot, const std::filesystem::path& path);

}  // namespace Corvanta::Host
