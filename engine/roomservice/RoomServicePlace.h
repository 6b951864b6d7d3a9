// Where the room service of this user lies: a folder that nobody else can enter. Any thread.
#pragma once

#include <filesystem>
#include <optional>

namespace Corvanta::Engine {

struct RoomServicePlace {
    // The clients' way in.
    std::filesystem::path socket;
    // Held by the process that serves; the system lets go of it however that process ends.
    std::filesystem::path lock;
    // As short-lived as the folder: what is in it speaks of rooms of this login.
    std::filesystem::path database;
};

// The places in that folder.
[[nodiscard]] RoomServicePlace RoomServiceIn(const std::filesystem::path& folder);

// The user's: "corvanta" in $XDG_RUNTIME_DIR, or a folder with the user's number in the system's for
// temporary files. Looks at the environment each time. Makes no folder.
[[nodiscard]] RoomServicePlace UserRoomService();

// Makes the folder of the place where it is missing. False, and a log line, unless it then is a folder of
// this user's that nobody else can enter.
[[nodiscard]] bool PrepareFolder(const RoomServicePlace& place);

}  // namespace Corvanta::Engine
