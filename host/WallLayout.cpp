#include "host/WallLayout.h"

#include <array>
#include <cstddef>

namespace Corvanta::Host {
namespace {

struct Entry {
    std::string_view name;
    // The tiles are 213 x 160 at scale 1.
    WallWindowSize size;
};

constexpr std::array<Entry, kWallLayoutCount> kEntries{{
    {"strip", {1080, 176}},
    {"column", {656, 720}},
    {"grid", {960, 720}},
}};

const Entry& EntryOf(WallLayout layout) {
    return kEntries.at(static_cast<std::size_t>(layout));
}

}  // namespace

std::string_view NameOf(WallLayout layout) {
    return EntryOf(layout).name;
}

std::optional<WallLayout> WallLayoutOf(std::string_view name) {
    for (int number = 0; number < kWallLayoutCount; ++number) {
        const auto layout = static_cast<WallLayout>(number);
        if (NameOf(layout) == name) return layout;
    }
    return std::nullopt;
}

WallLayout After(WallLayout layout) {
    return static_cast<WallLayout>((static_cast<int>(layout) + 1) % kWallLayoutCount);
}

WallWindowSize WallSizeOf(WallLayout layout) {
    return EntryOf(layout).size;
}

std::string WallTitle(std::string_view roomName, WallLayout layout) {
    std::string title(roomName);
    title += ": participants, ";
    title += NameOf(layout);
    title += " - Corvanta";
    return title;
}

std::string PreviewTitle(std::string_view roomName) {
    std::string title(roomName);
    title += ": own camera - Corvanta";
    return title;
}

std::filesystem::path WallSnapshotPath(const std::filesystem::path& roomSnapshotPath) {
    std::filesystem::path path = roomSnapshotPath;
    std::string name = path.stem().string();
    name += "-wall";
    name += path.extension().string();
    return path.replace_filename(name);
}

}  // namespace Corvanta::Host
