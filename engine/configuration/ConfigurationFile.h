// The one JSON file of the configuration. Plain functions of values; may block on the disk. Any thread, but
// one at a time for one folder.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <variant>

namespace Corvanta::Engine {

using ConfigurationValue = std::variant<bool, int64_t, double, std::string>;
using ConfigurationValues = std::map<std::string, ConfigurationValue>;

// The user's own folder for this product; empty when the environment names none.
[[nodiscard]] std::filesystem::path UserConfigurationFolder();

// Reads the folder's file. No file gives no values. A file that cannot be read, is damaged or is not ours
// gives no values either; it is kept aside under another name, so that the next writing cannot destroy it.
// Logs one line then.
[[nodiscard]] ConfigurationValues ReadConfiguration(const std::filesystem::path& folder);

// Replaces the folder's file in one step, so that a reader sees the old or the new one, whole. Makes the
// folder when it is missing. Returns nothing when it worked, else the reason; the old file is then untouched.
[[nodiscard]] std::optional<std::string> WriteConfiguration(const std::filesystem::path& folder,
                                                            const ConfigurationValues& values);

// Whether JSON can carry the text, which it can when it is UTF-8.
[[nodiscard]] bool IsStorable(const std::string& text);

}  // namespace Corvanta::Engine
