// Stands for the library in tests of the engine's room: registers the media callbacks, takes the sinks'
// frames and remembers what came. Its destructor leaves the room.
#pragma once

#include <atomic>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "engine/Engine.h"
#include "engine/transport/Transport.h"
#include "platform/MediaManager.h"
#include "tests/engine/TemporaryFolder.h"

namespace Corvanta::Engine {

class RoomVisitor final {
public:
    RoomVisitor();
    ~RoomVisitor();
    RoomVisitor(const RoomVisitor&) = delete;
    RoomVisitor& operator=(const RoomVisitor&) = delete;

    // Configures the engine with these participants (silent, a folder of its own) and enters. Returns the
    // index of the connection; a failed configuration fails the test and gives -1.
    int Enter(const std::vector<Participant>& participants);
    static void Leave();

    // Null sinks are answered for the first so many offers.
    std::atomic<int> refusals = 0;
    std::atomic<int> offers = 0;
    // Who brings the participants; empty: the embedded transport. To be set before entering.
    TransportMaker makeTransport;
    // Whether the room takes the local user's sound and pictures. To be set before entering.
    bool isHeardAndSeen = true;
    // Of the room, and what stands for the default camera, for the engine's options. To be set before
    // entering.
    std::string roomName, camera;
    // Called on the decode threads with each frame, before it is remembered. To be set before entering.
    std::function<void(const std::shared_ptr<VideoFrameBuffer>&)> onFrame;

    [[nodiscard]] std::size_t Frames(std::size_t participant) const;
    [[nodiscard]] std::shared_ptr<VideoFrameBuffer> LastFrame(std::size_t participant) const;
    [[nodiscard]] std::string StreamId(std::size_t participant) const;
    [[nodiscard]] std::vector<std::string> Events() const;
    // The engine's log so far.
    [[nodiscard]] std::string Log() const;

    // Waits for that many frames of a participant; false after kPatience.
    [[nodiscard]] bool WaitForFrames(std::size_t participant, std::size_t count) const;
    [[nodiscard]] bool WaitForLog(const std::string& text) const;

private:
    struct Stream {
        std::string id;
        std::size_t frames = 0;
        std::shared_ptr<VideoFrameBuffer> last;
    };

    void Take(std::size_t stream, const std::shared_ptr<VideoFrameBuffer>& frame);

    TemporaryFolder folder;
    mutable std::mutex streamsMutex;  // guards: everything below
    std::vector<Stream> streams;
    std::vector<std::string> events;
};

}  // namespace Corvanta::Engine
