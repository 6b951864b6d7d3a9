// Somebody in a room without a window: enters over a transport of a thread of its own, shows a picture of one
// colour with a tone, and remembers of the others what comes.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "engine/transport/Transport.h"
#include "engine/webrtc/SoundMixer.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/peer/PeerPair.h"

namespace Corvanta::Engine {

class RoomPerson final {
public:
    // What is known of one stream of somebody else's.
    struct Seen {
        std::string name;
        StreamType type = StreamType::Camera;
        int pictures = 0;
        std::optional<Yuv> color;
        int width = 0;
        double loudest = 0;
        // How often a channel was opened, and the connection lost and found.
        int channels = 0;
        int losses = 0, returns = 0;
        bool isWithoutPicture = false;
        bool hasLeft = false;
        std::string reason;
        std::vector<std::string> texts;
        // From joining to the first picture.
        std::chrono::milliseconds firstPicture{0};
    };

    // `color` and `amplitude`: of what it shows; without a color it shows nothing.
    RoomPerson(const TransportMaker& makeTransport, std::optional<Yuv> color = std::nullopt,
               double amplitude = 0.0);
    // Leaves.
    ~RoomPerson();
    RoomPerson(const RoomPerson&) = delete;
    RoomPerson& operator=(const RoomPerson&) = delete;

    // Waits until it is in, or is refused.
    [[nodiscard]] bool Enters();
    void Leave();
    void Say(const std::string& text);
    // Runs it on the person's thread with the transport.
    void Do(const std::function<void(Transport&)>& task);
    // Has pictures of that colour shown beside the camera.
    void Share(StreamType type, const std::string& name, Yuv color);
    void StopSharing(StreamType type);
    // Of a stream that it sees.
    void WithMedia(const std::string& streamId, const std::function<void(ParticipantMedia&)>& task);

    [[nodiscard]] std::string Id() const;
    [[nodiscard]] std::string Problem() const;
    // Everything that came of that stream, also of one that has left; by the publisher's name and kind.
    [[nodiscard]] std::optional<Seen> Sees(const std::string& name,
                                           StreamType type = StreamType::Camera) const;
    [[nodiscard]] std::string StreamId(const std::string& name, StreamType type = StreamType::Camera) const;
    // Of all that are there.
    [[nodiscard]] std::vector<Seen> Streams() const;
    [[nodiscard]] std::size_t Present() const;
    // Waits for pictures of that colour from that publisher.
    [[nodiscard]] bool SeesColor(const std::string& name, Yuv color,
                                 StreamType type = StreamType::Camera) const;
    // Waits for the texts to be all that came of that publisher.
    [[nodiscard]] bool Hears(const std::string& name, const std::vector<std::string>& texts,
                             std::chrono::milliseconds patience = kPatience) const;
    [[nodiscard]] int Mutes() const;
    // "0" for each time that the way to the others broke for good, "1" where it was tried again.
    [[nodiscard]] std::string Drops() const;
    // Calls the function with each event's line, on any thread: "joined NAME KIND", "left NAME KIND REASON",
    // "picture NAME KIND" (the first one), "text NAME TEXT", "channel NAME", "lost NAME", "found NAME". To be
    // set before entering.
    std::function<void(const std::string& line)> onLine;

private:
    struct Stream {
        Seen seen;
        std::shared_ptr<ParticipantMedia> media;
        std::chrono::steady_clock::time_point joined;
    };

    [[nodiscard]] TransportEvents Events();
    void OnJoined(const ParticipantDescription& description);
    void Change(const std::string& id, const std::function<void(Stream&)>& change);
    void Tell(const std::string& line) const;

    RunningLoop running;
    const std::shared_ptr<SoundMixer> mixer;
    std::unique_ptr<Transport> transport;
    const std::optional<Yuv> shownColor;
    const double shownAmplitude;
    std::unique_ptr<FeedPump> camera;
    std::map<StreamType, std::unique_ptr<FeedPump>> shared;
    bool isInside = false;

    mutable std::mutex mutex;  // guards: everything below
    std::optional<bool> entered;
    std::string problem;
    // By id, the latest last; those who left stay under another key.
    std::map<std::string, Stream> streams;
    std::vector<Stream> former;
    int mutes = 0;
    std::string drops;
};

}  // namespace Corvanta::Engine
