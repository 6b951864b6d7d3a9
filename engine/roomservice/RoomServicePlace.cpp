#include "engine/roomservice/RoomServicePlace.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <system_error>
#include <utility>

#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

constexpr const char* kProductFolder = "corvanta";
constexpr const char* kDatabase = "room-service.sqlite";
constexpr mode_t kOwnerOnly = 0700;

}  // namespace

RoomServicePlace RoomServiceIn(const std::filesystem::path& folder) {
    return {folder / "room-service.socket", folder / "room-service.lock", folder / kDatabase};
}

RoomServicePlace UserRoomService() {
    const char* const configured = std::getenv("XDG_RUNTIME_DIR");
    if (configured != nullptr && configured[0] == '/' && ::access(configured, W_OK | X_OK) == 0)
        return RoomServiceIn(std::filesystem::path(configured) / kProductFolder);
    std::error_code error;
    std::filesystem::path temporary = std::filesystem::temp_directory_path(error);
    if (error) temporary = "/tmp";
    std::string name = kProductFolder;
    name += '-';
    name += std::to_string(::getuid());
    return RoomServiceIn(temporary / name);
}

RoomServicePlace LastingRoomService(const std::filesystem::path& folder) {
    RoomServicePlace place = UserRoomService();
    if (folder.empty()) return place;
    place.formerDatabase = std::exchange(place.database, folder / kDatabase);
    return place;
}

bool PrepareFolder(const RoomServicePlace& place) {
    const std::filesystem::path folder = place.socket.parent_path();
    if (::mkdir(folder.c_str(), kOwnerOnly) != 0 && errno != EEXIST) {
        LOG(kLogWarning, "No room service: %s cannot be made (%s)", folder.c_str(), std::strerror(errno));
        return false;
    }
    // Somebody else may have put something in its place before us.
    struct stat found {};
    const bool isOurs = ::lstat(folder.c_str(), &found) == 0 && S_ISDIR(found.st_mode) &&
                        found.st_uid == ::getuid() && (found.st_mode & (S_IRWXG | S_IRWXO)) == 0;
    if (!isOurs) LOG(kLogWarning, "No room service: %s is not private", folder.c_str());
    return isOurs;
}

}  // namespace Corvanta::Engine
