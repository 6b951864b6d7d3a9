// What a person chooses from to share a stream of some kind, as texts and plain values: pure functions,
// usable from any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "engine/Engine.h"
#include "host/Failure.h"

namespace Corvanta::Host {

struct StreamChoice {
    enum class Kind { List, File, Address };

    StreamType type;
    Kind kind;
    std::string_view title;  // of the dialog
    std::string_view label;  // before the list or the field
};

// Nothing for a camera, and for a number that is no kind of stream.
[[nodiscard]] std::optional<StreamChoice> StreamChoiceOf(StreamType type);
// A file that is played from its address.
[[nodiscard]] StreamChoice MediaSiloChoice();

// What is shared, for the person who shares it: "File: clip.mp4"; without a title "File".
[[nodiscard]] std::string SharedLabel(StreamType type, std::string_view title);

// The window of that program, one with a title rather than one without; null when there is none, and for -1.
[[nodiscard]] const Engine::ScreenTarget* WindowOfProcess(std::span<const Engine::ScreenTarget> targets,
                                                          std::int32_t processId);

// As given on the command line: "screen", "file", "url" or "device", and the source.
struct SharedSource {
    StreamType type = StreamType::Screenshare;
    std::string source;
};

// Reads TYPE=SOURCE. "screen" may stand alone, and is the whole screen then.
[[nodiscard]] std::variant<SharedSource, Failure> ParseSharedSource(std::string_view text);

}  // namespace Corvanta::Host
