// What two members of a mesh tell each other over the hub: the descriptions and candidates of their
// connections, what they publish and want, and what one asks of the other. JSON objects with their kind under
// "kind". Values; any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "engine/transport/Transport.h"

namespace Corvanta::Engine {

namespace MeshMessages {

// Every pair of members has one connection for both cameras, and one for each stream that either publishes
// beside it. Its link is kCameraLink or the stream's id.
inline constexpr const char* kCameraLink = "camera";

// For the link's other end.
struct Description {
    std::string link;
    std::string text;
    bool operator==(const Description&) const = default;
};

struct Candidate {
    std::string link;
    std::uint32_t line = 0;
    std::string text;
    bool operator==(const Candidate&) const = default;
};

// A stream of the sender's, and what of it is sent: of the camera too, which is there all the time. Said
// again when something changes.
struct Publish {
    StreamType type = StreamType::Camera;
    // Of the publisher, as it wants the stream to be called; at most kLongestName bytes.
    std::string name;
    LocalTracks tracks;
    bool operator==(const Publish&) const = default;
};

struct Unpublish {
    StreamType type = StreamType::Camera;
    bool operator==(const Unpublish&) const = default;
};

// What the sender wants of a stream of the receiver's.
struct Want {
    StreamType type = StreamType::Camera;
    LocalTracks tracks;
    bool operator==(const Want&) const = default;
};

// The receiver is to switch off the sound of a stream of its own.
struct Mute {
    StreamType type = StreamType::Camera;
    bool operator==(const Mute&) const = default;
};

// The receiver is to leave the room.
struct Remove {
    bool operator==(const Remove&) const = default;
};

}  // namespace MeshMessages

using MeshMessage =
    std::variant<MeshMessages::Description, MeshMessages::Candidate, MeshMessages::Publish,
                 MeshMessages::Unpublish, MeshMessages::Want, MeshMessages::Mute, MeshMessages::Remove>;

// Nothing for what is malformed or of an unknown kind: no JSON object, a field missing or of another type, a
// stream of an unknown kind. Names are cut. What descriptions and candidates hold is not looked at.
[[nodiscard]] std::optional<MeshMessage> ReadMeshMessage(std::string_view payload);

// Bytes that are no UTF-8 are replaced.
[[nodiscard]] std::string WriteMeshMessage(const MeshMessage& message);

}  // namespace Corvanta::Engine
