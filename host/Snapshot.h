// A picture of a window as the display server shows it, written to a file. Main thread only.
#pragma once

#include <filesystem>
#include <optional>

#include "host/Failure.h"

class QWidget;

namespace Corvanta::Host {

// Writes the window's pixels as a PNG file. `window` is a shown top-level one. A window in which nothing was
// drawn, and a file that cannot be written, are failures; then no file is left behind.
[[nodiscard]] std::optional<Failure> WriteSnapshot(const QWidget& window, const std::filesystem::path& path);

}  // namespace Corvanta::Host
