// What a participant's source means, and whether this machine can play it. Any thread; checking reads files.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "engine/Engine.h"

namespace Corvanta::Engine {

struct ResolvedSource {
    enum class Kind { TestPicture, Person, Uri };
    Kind kind = Kind::Person;
    // Only for Uri.
    std::string uri;
};

// The words "test" and "clip", a URI, or else a path. Nothing is looked at on the disk.
[[nodiscard]] ResolvedSource ResolveSource(const std::string& source);

// Nothing when the source can be played, or when only trying would tell; else one line for the user.
// GStreamer must have been started.
[[nodiscard]] std::optional<std::string> CheckSource(const Participant& participant);

// The same for a path and for a URI alone, as a sentence without its end.
[[nodiscard]] std::optional<std::string> CheckFile(const std::filesystem::path& path);
[[nodiscard]] std::optional<std::string> CheckUri(const std::string& uri);

// The same for what every source needs.
[[nodiscard]] std::optional<std::string> CheckInstallation();

}  // namespace Corvanta::Engine
