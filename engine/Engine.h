// The engine's public face for the host program: who takes part in the next room, where the configuration
// lies, how much is logged, and what there is to see. Every function may be called on any thread but a
// callback of the engine itself.
#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/Api.h"

namespace Corvanta::Engine {

struct Participant {
    // Shown to the others; empty gives "Participant N".
    std::string name;
    // "test": the test picture with a quiet tone. "clip": a generated person who speaks in turns with the
    // other clips. Anything else is the path of a file, which plays in a loop, or a URI.
    std::string source;
};

enum class SoundOutput {
    // The machine's default device, silence where it has none.
    Device,
    Silent,
};

enum class EmptyRoom {
    // Four participants that play generated clips.
    DefaultParticipants,
    Nobody,
};

struct EngineOptions {
    std::vector<Participant> participants;
    // Who is there when the list is empty.
    EmptyRoom whenEmpty = EmptyRoom::DefaultParticipants;
    // What stands for the local user's camera, as a participant's source but never heard. Empty: no camera.
    std::string camera;
    // Empty: "corvanta" in the user's configuration folder.
    std::filesystem::path configurationFolder;
    // Also written to this file when it is not empty; always to the standard error stream.
    std::filesystem::path logFile;
    // Lowest level that is logged: 1 debug, 2 information, 3 warning, 4 error.
    int logLevel = 2;
    SoundOutput soundOutput = SoundOutput::Device;
};

// Checks the source of every participant and of the camera (the file exists, its decoders are installed) and
// keeps the options for the next connection. Returns nothing when all is well, else one line for the user,
// and then nothing but the log settings has changed. A file that cannot be played for another reason is no
// error: its participant shows no picture, and the log says why. Takes up to some seconds when files are
// given, since their beginnings are read.
[[nodiscard]] CORVANTA_PLATFORM_API std::optional<std::string> Configure(const EngineOptions& options);

struct RoomStatus {
    bool connected = false;
    // How many are in the room, the local user left out.
    std::size_t participants = 0;
    // Of these: how many have delivered a picture to the library, and how many are known to have none.
    std::size_t showing = 0;
    std::size_t withoutPicture = 0;
    // Pictures delivered in all.
    std::size_t pictures = 0;
};

// What the open room shows at this moment. All zero without a room.
[[nodiscard]] CORVANTA_PLATFORM_API RoomStatus GetRoomStatus();

// Waits until every participant of the open room has delivered a picture or is known to have none; false when
// the time runs out first or there is no room.
[[nodiscard]] CORVANTA_PLATFORM_API bool WaitForPictures(std::chrono::milliseconds timeout);

// Closes the connection if one is open, stops every thread of the engine and writes the configuration. The
// engine may be configured and used again afterwards.
CORVANTA_PLATFORM_API void Shutdown();

}  // namespace Corvanta::Engine
