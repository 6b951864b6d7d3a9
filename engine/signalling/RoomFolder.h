// Where the hub of a room lives: a folder of the room's own that nobody but this user can enter. Any thread.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace Corvanta::Engine {

struct RoomFolder {
    std::filesystem::path path;
    // The clients' way in.
    std::filesystem::path socket;
    // Held by the process whose hub it is. Never removed: whoever waits for it waits for this very file.
    std::filesystem::path lock;
};

// The folder of the room in the user's folder for what lives as long as a login. Named after the room's name,
// which may be any bytes. Looks at the environment each time; makes nothing.
[[nodiscard]] RoomFolder UserRoomFolder(std::string_view room);
// The same in another folder.
[[nodiscard]] RoomFolder RoomFolderIn(const std::filesystem::path& product, std::string_view room);

// Makes the folder and the two above it where they are missing, whatever the process's mask for new files.
// Returns nothing when it is there, private to this user and short enough for a socket, else one line for the
// user.
[[nodiscard]] std::optional<std::string> PrepareRoomFolder(const RoomFolder& folder);

// Removes the folder of a room that nobody will enter any more.
void RemoveRoomFolder(const RoomFolder& folder);

// Being the one whose hub it is. The system lets go of it however the process ends.
class HubLock final {
public:
    // Does not wait.
    explicit HubLock(const std::filesystem::path& file);
    ~HubLock();
    HubLock(const HubLock&) = delete;
    HubLock& operator=(const HubLock&) = delete;

    [[nodiscard]] bool IsHeld() const { return isHeld; }
    // Whether the file could not even be opened; what errno said.
    [[nodiscard]] int Error() const { return error; }

private:
    int file;
    int error = 0;
    bool isHeld = false;
};

}  // namespace Corvanta::Engine
