// How the detached wall is laid out, as the person chooses it, and what follows from that for its window.
// Plain values.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace Corvanta::Host {

// The numbers are the library's.
enum class WallLayout : int { Strip = 0, Column = 1, Grid = 2 };
constexpr int kWallLayoutCount = 3;

// "strip", "column", "grid".
[[nodiscard]] std::string_view NameOf(WallLayout layout);
// The reverse; nothing for any other word.
[[nodiscard]] std::optional<WallLayout> WallLayoutOf(std::string_view name);

// The next one around.
[[nodiscard]] WallLayout After(WallLayout layout);

struct WallWindowSize {
    int width = 0;
    int height = 0;
};

// Size in the desktop's units with which a window of that layout opens.
[[nodiscard]] WallWindowSize WallSizeOf(WallLayout layout);

[[nodiscard]] std::string WallTitle(std::string_view roomName, WallLayout layout);
[[nodiscard]] std::string PreviewTitle(std::string_view roomName);

// Where the wall's snapshot goes: "out-wall.png" beside "out.png".
[[nodiscard]] std::filesystem::path WallSnapshotPath(const std::filesystem::path& roomSnapshotPath);

}  // namespace Corvanta::Host
