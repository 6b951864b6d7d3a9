#include "engine/configuration/ConfigurationFile.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <system_error>

#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

using Json = nlohmann::json;

constexpr const char* kFileName = "configuration.json";
constexpr const char* kFormatName = "corvanta-configuration";
constexpr int kFormatVersion = 1;
constexpr std::uintmax_t kLargestFile = 8U << 20U;
constexpr int kKeptFiles = 100;

std::optional<ConfigurationValue> ToValue(const Json& json) {
    if (json.is_boolean()) return json.get<bool>();
    if (json.is_number_integer()) {
        if (json.is_number_unsigned() && json.get<uint64_t>() > INT64_MAX) return json.get<double>();
        return json.get<int64_t>();
    }
    if (json.is_number()) return json.get<double>();
    if (json.is_string()) return json.get<std::string>();
    return std::nullopt;
}

// Fills `values`, or returns what is wrong with the text.
std::optional<std::string> Parse(const std::string& text, ConfigurationValues& values) {
    const Json root = Json::parse(text, nullptr, false);
    if (root.is_discarded()) return "is damaged";
    if (!root.is_object() || root.value("format", Json()) != kFormatName ||
        root.value("version", Json()) != kFormatVersion) {
        return "is not a configuration of this program";
    }
    const Json stored = root.value("values", Json());
    if (!stored.is_object()) return "is damaged";
    for (const auto& [key, json] : stored.items()) {
        if (auto value = ToValue(json)) values.emplace(key, std::move(*value));
    }
    return std::nullopt;
}

std::optional<std::string> ReadWhole(const std::filesystem::path& path, std::string& text) {
    std::error_code error;
    const auto size = std::filesystem::file_size(path, error);
    if (error) return "cannot be read (" + error.message() + ")";
    if (size > kLargestFile) return "is too large";
    std::ifstream stream(path, std::ios::binary);
    std::ostringstream content;
    content << stream.rdbuf();
    if (!stream) return "cannot be read";
    text = std::move(content).str();
    return std::nullopt;
}

// The new name, or empty when the file could not be moved.
std::filesystem::path KeepAside(const std::filesystem::path& path) {
    for (int number = 1; number <= kKeptFiles; ++number) {
        const auto kept =
            path.parent_path() / ("configuration-unreadable-" + std::to_string(number) + ".json");
        std::error_code error;
        if (std::filesystem::exists(std::filesystem::symlink_status(kept, error))) continue;
        std::filesystem::rename(path, kept, error);
        return error ? std::filesystem::path() : kept;
    }
    return {};
}

std::string LastError() {
    return std::strerror(errno);
}

// A text file written, flushed to the disk and closed, or the reason why not.
std::optional<std::string> WriteWhole(const std::filesystem::path& path, const std::string& text) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (file < 0) return LastError();
    std::optional<std::string> failure;
    std::size_t written = 0;
    while (written < text.size() && !failure) {
        const ssize_t count = ::write(file, text.data() + written, text.size() - written);
        if (count >= 0) {
            written += static_cast<std::size_t>(count);
        } else if (errno != EINTR) {
            failure = LastError();
        }
    }
    if (!failure && ::fsync(file) != 0) failure = LastError();
    if (::close(file) != 0 && !failure) failure = LastError();
    return failure;
}

}  // namespace

std::filesystem::path UserConfigurationFolder() {
    constexpr const char* kProductFolder = "corvanta";
    const char* configured = std::getenv("XDG_CONFIG_HOME");
    // The rule for this variable, which all desktops share: a relative path counts for nothing.
    if (configured != nullptr && configured[0] == '/')
        return std::filesystem::path(configured) / kProductFolder;
    const char* home = std::getenv("HOME");
    if (home == nullptr || home[0] == '\0') {
        const passwd* user = ::getpwuid(::getuid());
        home = user != nullptr ? user->pw_dir : nullptr;
    }
    if (home == nullptr || home[0] == '\0') return {};
    return std::filesystem::path(home) / ".config" / kProductFolder;
}

ConfigurationValues ReadConfiguration(const std::filesystem::path& folder) {
    ConfigurationValues values;
    const auto path = folder / kFileName;
    std::error_code error;
    if (folder.empty() || !std::filesystem::exists(path, error)) {
        if (error)
            LOG(kLogWarning, "The configuration cannot be read (%s): defaults are used",
                error.message().c_str());
        return values;
    }
    std::string text;
    auto failure = ReadWhole(path, text);
    if (!failure) failure = Parse(text, values);
    if (!failure) return values;

    const auto kept = KeepAside(path);
    if (kept.empty()) {
        LOG(kLogWarning, "The configuration %s %s: defaults are used", path.c_str(), failure->c_str());
    } else {
        LOG(kLogWarning, "The configuration %s %s: defaults are used, and it is kept as %s", path.c_str(),
            failure->c_str(), kept.filename().c_str());
    }
    return {};
}

std::optional<std::string> WriteConfiguration(const std::filesystem::path& folder,
                                              const ConfigurationValues& values) {
    if (folder.empty()) return "the user has no configuration folder";
    Json stored = Json::object();
    for (const auto& [key, value] : values) {
        std::visit([&stored, &name = key](const auto& content) { stored[name] = content; }, value);
    }
    const Json root{{"format", kFormatName}, {"version", kFormatVersion}, {"values", std::move(stored)}};

    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) return error.message();
    const auto temporary = folder / (std::string(kFileName) + "." + std::to_string(::getpid()) + ".tmp");
    if (auto failure = WriteWhole(temporary, root.dump(2) + '\n')) {
        std::filesystem::remove(temporary, error);
        return failure;
    }
    std::filesystem::rename(temporary, folder / kFileName, error);
    if (!error) return std::nullopt;
    const std::string reason = error.message();
    std::filesystem::remove(temporary, error);
    return reason;
}

bool IsStorable(const std::string& text) {
    try {
        static_cast<void>(Json(text).dump());
        return true;
    } catch (const Json::type_error&) {
        return false;
    }
}

}  // namespace Corvanta::Engine
