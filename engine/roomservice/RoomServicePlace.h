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
    // What is kept.
    std::filesystem::path database;
    // Another place where it may lie, to be taken over while there is no database; empty for nowhere.
    std::filesystem::path formerDatabase = {};
};

// The places in that folder.
[[nodiscard]] RoomServicePlace RoomServiceIn(const std::filesystem::path& folder);

// The user's, with all in one folder: "corvanta" in $XDG_RUNTIME_DIR, or a folder with the user's number in
// the system's for temporary files. Looks at the environment each time. Makes no folder.
[[nodiscard]] RoomServicePlace UserRoomService();

// The user's, with its database in that folder, which is made where it is missing and outlives the login.
// Empty: with the database where UserRoomService has it, which goes with the login.
[[nodiscard]] RoomServicePlace LastingRoomService(const std::filesystem::path& folder);

// Makes the folder of the place where it is missing. False, and a log line, unless it then is a folder of
// this user's that nobody else can enter.
[[nodiscard]] bool PrepareFolder(const RoomServicePlace& place);

}  // namespace Corvanta::Engine
