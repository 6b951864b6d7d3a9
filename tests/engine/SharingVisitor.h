// Stands for the library in tests of the local user's own streams: takes their announcements and removals,
// counts their frames and keeps the last one of each. Its destructor leaves the room and ends the engine.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "engine/Engine.h"
#include "engine/transport/Transport.h"
#include "platform/MediaManager.h"
#include "tests/engine/TemporaryFolder.h"

namespace Corvanta::Engine {

class SharingVisitor final {
public:
    SharingVisitor() = default;
    ~SharingVisitor();
    SharingVisitor(const SharingVisitor&) = delete;
    SharingVisitor& operator=(const SharingVisitor&) = delete;

    // Configures the engine (silent, a folder of its own) and enters. A failure fails the test.
    void Enter(const std::string& camera = "", const std::vector<Participant>& participants = {});
    // Configures without entering.
    void Configure(const std::string& camera, const std::vector<Participant>& participants = {});

    // Null sinks are answered for the first so many offers.
    std::atomic<int> refusals = 0;
    // Who brings the participants; empty: the embedded transport. To be set before entering.
    TransportMaker makeTransport;
    // Called on the engine's thread with each announcement, before it is taken. To be set before entering.
    std::function<void(StreamType, const std::string& sourceId)> onAdd;
    // Called on the capturing threads with each frame. To be set before entering.
    std::function<void()> onFrame;

    // "add 4 file-0", "remove file-0", "window closed", "plays local-file", "ended local-file".
    [[nodiscard]] std::vector<std::string> Events() const;
    [[nodiscard]] bool WaitForEvent(const std::string& event) const;
    [[nodiscard]] std::size_t Frames(const std::string& sourceId) const;
    [[nodiscard]] std::shared_ptr<VideoFrameBuffer> LastFrame(const std::string& sourceId) const;
    // That many frames more than now.
    [[nodiscard]] bool GetsMore(const std::string& sourceId, std::size_t count = 3) const;
    // Waits for a frame that fulfils a condition.
    [[nodiscard]] bool WaitForFrame(const std::string& sourceId,
                                    const std::function<bool(const VideoFrameBuffer&)>& condition) const;

    const TemporaryFolder folder;

private:
    struct Stream {
        std::size_t frames = 0;
        std::shared_ptr<VideoFrameBuffer> last;
    };

    void Tell(const std::string& event);

    mutable std::mutex streamsMutex;  // guards: everything below
    std::map<std::string, Stream> streams;
    std::vector<std::string> events;
};

// Colour of a pixel of a packed frame, 0xRRGGBB; 0 for other frames.
[[nodiscard]] uint32_t PixelAt(const VideoFrameBuffer& frame, int x, int y);

}  // namespace Corvanta::Engine
