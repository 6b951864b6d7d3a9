#include "room/StillFile.h"

#include <filesystem>
#include <system_error>

namespace Corvanta::Room {

std::string WrittenStill(const std::string& path) {
    namespace fs = std::filesystem;
    const fs::path wanted(path);
    std::error_code error;
    std::string found = path;
    fs::file_time_type newest = fs::file_time_type::min();
    for (fs::directory_iterator entry(wanted.parent_path(), error), end; !error && entry != end;
         entry.increment(error)) {
        if (entry->path().stem() != wanted.filename() && entry->path() != wanted) continue;
        std::error_code unreadable;
        const fs::file_time_type written = entry->last_write_time(unreadable);
        if (unreadable || written < newest) continue;
        newest = written;
        found = entry->path().string();
    }
    return found;
}

}  // namespace Corvanta::Room
