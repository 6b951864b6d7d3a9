#include "host/StillPath.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <optional>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace Corvanta::Host {
namespace {

namespace fs = std::filesystem;

constexpr int kMostOfADay = 10000;
constexpr std::size_t kLongestName = 100;
constexpr std::string_view kExtension = ".png";
constexpr std::string_view kNamelessRoom = "Room";

bool IsForbidden(char letter) {
    return static_cast<unsigned char>(letter) < ' ' ||
           std::string_view("/\\:*?\"<>|").find(letter) != std::string_view::npos;
}

// Not within one letter of UTF-8, whose later bytes begin with the bits 10.
void Cut(std::string& name) {
    if (name.size() <= kLongestName) return;
    std::size_t end = kLongestName;
    while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0U) == 0x80U) --end;
    name.resize(end);
}

std::string FileNameOf(std::string_view roomName) {
    std::string name;
    for (const char letter : roomName) {
        if (!IsForbidden(letter)) name += letter;
    }
    // A leading dot would hide the file.
    name.erase(0, name.find_first_not_of(" ."));
    Cut(name);
    while (!name.empty() && name.back() == ' ') name.pop_back();
    return name.empty() ? std::string(kNamelessRoom) : name;
}

// What can fail with the reason in errno, as 0 or that reason.
int ErrorOf(bool failed) {
    return failed ? errno : 0;
}

// From another file system a file is copied; the new one must be ours from its first byte on.
int CopyTo(const fs::path& written, const fs::path& kept) {
    const int file = ::open(kept.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (file < 0) return errno;
    ::close(file);
    std::error_code error;
    fs::copy_file(written, kept, fs::copy_options::overwrite_existing, error);
    if (error) {
        std::error_code ignored;  // the first failure is the one to tell
        fs::remove(kept, ignored);
    }
    return error.value();
}

// 0, or the reason; EEXIST when there is such a file.
int MoveTo(const fs::path& written, const fs::path& kept) {
    // A link, unlike a renaming, does not replace what is there.
    int reason = ErrorOf(::link(written.c_str(), kept.c_str()) != 0);
    if (reason == EXDEV || reason == EPERM || reason == EOPNOTSUPP || reason == EMLINK) {
        reason = CopyTo(written, kept);
    }
    if (reason == 0) {
        std::error_code ignored;  // a second copy does no harm
        fs::remove(written, ignored);
    }
    return reason;
}

Failure NotKept(const fs::path& folder, int reason) {
    std::string line = "the still cannot be kept in ";
    line += folder.string();
    line += ": ";
    line += std::generic_category().message(reason);
    return {line};
}

}  // namespace

std::string StillName(std::string_view roomName, std::chrono::year_month_day date, int number,
                      std::string_view extension) {
    std::array<char, 48> day{};
    std::snprintf(day.data(), day.size(), " %04d-%02u-%02u %d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), number);
    std::string name = FileNameOf(roomName);
    name += day.data();
    name += extension;
    return name;
}

std::variant<fs::path, Failure> KeepStill(const fs::path& written, const fs::path& folder,
                                          std::string_view roomName, std::chrono::year_month_day date) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) return NotKept(folder, error.value());
    const std::string extension =
        written.has_extension() ? written.extension().string() : std::string(kExtension);
    for (int number = 1; number <= kMostOfADay; ++number) {
        fs::path kept = folder / StillName(roomName, date, number, extension);
        const int reason = MoveTo(written, kept);
        if (reason == 0) return kept;
        if (reason != EEXIST) return NotKept(folder, reason);
    }
    return NotKept(folder, EEXIST);
}

std::chrono::year_month_day Today() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    return std::chrono::year(local.tm_year + 1900) /
           std::chrono::month(static_cast<unsigned>(local.tm_mon) + 1) /
           std::chrono::day(static_cast<unsigned>(local.tm_mday));
}

}  // namespace Corvanta::Host
