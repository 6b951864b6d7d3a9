// A participant of a room on the server, in this process: its transport on a loop of its own, its camera with
// a picture of one colour and a tone, and what it sees and hears of the others. Has everything that is lost
// restarted at once. Driven from the test's
// thread.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "engine/common/EngineLoop.h"
#include "engine/janus/JanusTransport.h"
#include "tests/engine/peer/PeerPair.h"

namespace Corvanta::Engine {

// What a participant has seen and heard of one other stream.
struct SeenStream {
    std::string id, name, memberId;
    StreamType type = StreamType::Camera;
    std::shared_ptr<ParticipantMedia> media;
    std::atomic<int> pictures = 0, channels = 0, losses = 0, returns = 0;
    std::atomic<bool> isLost = false, hasChannel = false, hasLeft = false, isWithoutPicture = false;
    std::atomic<double> loudness = 0;

    [[nodiscard]] std::vector<std::string> Texts() const;
    [[nodiscard]] Yuv Color() const;

    mutable std::mutex mutex;  // guards: everything below
    std::vector<std::string> texts;
    std::shared_ptr<const MappedPicture> picture;
};

class RoomMemberRig final {
public:
    explicit RoomMemberRig(JanusOptions options);
    // Leaves.
    ~RoomMemberRig();
    RoomMemberRig(const RoomMemberRig&) = delete;
    RoomMemberRig& operator=(const RoomMemberRig&) = delete;

    void Start();
    // Starts, waits for the entry and publishes a camera of that colour.
    [[nodiscard]] bool Enters(Yuv color);
    // Starts and waits until it is refused. The line for the user; empty when it gets in.
    [[nodiscard]] std::string IsRefused();
    // Runs a task on the loop's thread and waits for it.
    void Do(const std::function<void(JanusTransport& transport)>& task);
    void Say(const std::string& text);
    // As the room does: the loop ends, then the transport.
    void Leave();
    void PublishCamera(Yuv color);
    void PublishScreen(Yuv color);
    void UnpublishScreen();

    [[nodiscard]] std::string Id();
    // Of that stream of the member, once it has joined; null when it does not.
    [[nodiscard]] std::shared_ptr<SeenStream> Sees(RoomMemberRig& other,
                                                   StreamType type = StreamType::Camera);
    [[nodiscard]] std::vector<std::shared_ptr<SeenStream>> All() const;
    // Lets go of all that is kept of them.
    void ForgetThoseWhoLeft();

    std::atomic<bool> hasEntered = false, isMuted = false;
    std::atomic<int> drops = 0, ends = 0;
    // Of the own camera's connection.
    std::atomic<int> ownLosses = 0, ownReturns = 0;

private:
    // Gives a feed pictures and sound while it lives.
    class Pump;

    void Join(ParticipantDescription description);

    EngineLoop loop;
    std::unique_ptr<JanusTransport> transport;
    std::unique_ptr<Pump> camera, screen;
    bool isRunning = false;
    mutable std::mutex mutex;  // guards: everything below
    std::string problem;
    std::vector<std::shared_ptr<SeenStream>> seen;
};

}  // namespace Corvanta::Engine
