#include "engine/signalling/RoomFolder.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <system_error>

#include "engine/roomservice/RoomServicePlace.h"

namespace Corvanta::Engine {

namespace {

constexpr mode_t kFolderMode = 0700;
constexpr mode_t kFileMode = 0600;
constexpr std::size_t kNameLength = 32;

std::string Complaint(const std::filesystem::path& path, const char* reason) {
    std::string line = "No room can be opened: ";
    line += path.string();
    line += ' ';
    line += reason;
    return line;
}

std::string Complaint(const std::filesystem::path& path, const char* reason, int error) {
    std::string line = Complaint(path, reason);
    line += " (";
    line += std::strerror(error);
    line += ')';
    return line;
}

std::optional<std::string> MakePrivate(const std::filesystem::path& path) {
    if (::mkdir(path.c_str(), kFolderMode) == 0) {
        // The mask may have taken the user's own rights away.
        if (::chmod(path.c_str(), kFolderMode) != 0) return Complaint(path, "cannot be made", errno);
    } else if (errno != EEXIST) {
        return Complaint(path, "cannot be made", errno);
    }
    // Somebody else may have put something in its place before us.
    struct stat found {};
    const bool isOurs = ::lstat(path.c_str(), &found) == 0 && S_ISDIR(found.st_mode) &&
                        found.st_uid == ::getuid() && (found.st_mode & (S_IRWXG | S_IRWXO)) == 0;
    if (!isOurs) return Complaint(path, "is not private");
    if (::access(path.c_str(), W_OK | X_OK) != 0) return Complaint(path, "cannot be written to", errno);
    return std::nullopt;
}

}  // namespace

RoomFolder RoomFolderIn(const std::filesystem::path& product, std::string_view room) {
    gchar* const digest = g_compute_checksum_for_data(
        G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(room.data()), room.size());
    const std::filesystem::path path = product / "rooms" / std::string(digest, kNameLength);
    g_free(digest);
    return {path, path / "hub.socket", path / "hub.lock"};
}

RoomFolder UserRoomFolder(std::string_view room) {
    return RoomFolderIn(UserRoomService().lock.parent_path(), room);
}

std::optional<std::string> PrepareRoomFolder(const RoomFolder& folder) {
    if (folder.socket.native().size() >= sizeof(sockaddr_un::sun_path))
        return Complaint(folder.socket, "is too long a name");
    const std::filesystem::path rooms = folder.path.parent_path();
    for (const std::filesystem::path& path : {rooms.parent_path(), rooms, folder.path})
        if (auto complaint = MakePrivate(path)) return complaint;
    return std::nullopt;
}

void RemoveRoomFolder(const RoomFolder& folder) {
    std::error_code error;
    std::filesystem::remove_all(folder.path, error);
}

HubLock::HubLock(const std::filesystem::path& path)
    : file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, kFileMode)) {
    if (file < 0) {
        error = errno;
        return;
    }
    isHeld = ::flock(file, LOCK_EX | LOCK_NB) == 0;
}

HubLock::~HubLock() {
    if (file >= 0) ::close(file);
}

}  // namespace Corvanta::Engine
