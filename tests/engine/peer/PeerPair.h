// Two ends of a connection in one process, which hand each other their texts by function calls, and feeds
// with a picture of one colour and a tone.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "engine/common/EngineLoop.h"
#include "engine/peer/OutboundFeed.h"
#include "engine/peer/PeerConnection.h"
#include "engine/webrtc/MappedPicture.h"

namespace Corvanta::Engine {

struct Yuv {
    int y = 0, u = 0, v = 0;
};

// A picture of one colour, in BT.601's limited range.
[[nodiscard]] std::shared_ptr<const MappedPicture> MakePicture(int width, int height, Yuv color);
// Pictures that are hard to encode: their lines are noise, and no two are alike.
[[nodiscard]] std::shared_ptr<const MappedPicture> MakeNoise(int width, int height);
// The mean of each plane.
[[nodiscard]] Yuv MeanColor(const MappedPicture& picture);

// Runs an engine's loop while it lives.
class RunningLoop final {
public:
    RunningLoop();
    ~RunningLoop();
    // Runs a task on the loop's thread and waits for it.
    void Do(const std::function<void()>& task);

    EngineLoop loop;
};

// Gives a feed 30 pictures a second and a tone, while it lives.
class FeedPump final {
public:
    // amplitude: of the tone, 0 to 1.
    FeedPump(std::shared_ptr<OutboundFeed> fedFeed, int width, int height, Yuv color, double amplitude);
    ~FeedPump();
    FeedPump(const FeedPump&) = delete;
    FeedPump& operator=(const FeedPump&) = delete;

private:
    std::atomic<bool> isRunning = true;
    std::thread thread;
};

// What one end has seen.
struct PeerEnd {
    std::shared_ptr<PeerConnection> connection;
    std::atomic<int> connects = 0, disconnects = 0, channels = 0, descriptions = 0;
    std::atomic<int> pictures = 0, drains = 0;
    std::atomic<double> loudness = 0;
    [[nodiscard]] std::vector<std::string> Texts();
    // Of its own that it has handed out.
    [[nodiscard]] std::vector<std::string> Candidates();
    [[nodiscard]] std::string LastDescription();
    [[nodiscard]] std::shared_ptr<const MappedPicture> LastPicture();

    std::mutex mutex;  // guards: everything below
    std::vector<std::string> texts, candidates;
    std::string lastDescription;
    std::shared_ptr<const MappedPicture> lastPicture;
};

class PeerPair final {
public:
    explicit PeerPair(RunningLoop& runningLoop);
    ~PeerPair();
    PeerPair(const PeerPair&) = delete;
    PeerPair& operator=(const PeerPair&) = delete;

    // Makes both ends and starts them. Feeds may be null.
    void Start(const std::shared_ptr<OutboundFeed>& offererFeed,
               const std::shared_ptr<OutboundFeed>& answererFeed, PeerOptions offererOptions = {},
               PeerOptions answererOptions = {});
    // Destroys one end.
    void Destroy(PeerEnd& end);
    [[nodiscard]] bool AreConnected() const;
    // Waits for the newest figures of an end.
    [[nodiscard]] PeerStatistics Statistics(PeerEnd& end);

    PeerEnd offerer, answerer;
    // What becomes of each description on its way; as it is without it. To be set before Start.
    std::function<std::string(std::string)> onTheWay;

private:
    void Make(PeerEnd& end, PeerEnd& other, PeerOptions options);

    RunningLoop& running;
};

// Of this process: open descriptors, threads whose names begin so, and bytes of memory in use.
[[nodiscard]] std::size_t CountDescriptors();
[[nodiscard]] std::size_t CountThreads(std::string_view name);
[[nodiscard]] std::size_t ResidentBytes();

}  // namespace Corvanta::Engine
