// Somebody in a room without a window who measures: how old pictures and texts are when they come, and how
// long it takes until they do. Used on one thread; it has one of its own for the transport.
#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "bench/StampedClip.h"
#include "engine/common/EngineLoop.h"
#include "engine/transport/Transport.h"

namespace Corvanta::Bench {

struct BenchPersonOptions {
    std::string room;
    std::string name;
    // Of the person that it shows.
    std::size_t look = 0;
    bool showsPictures = true;
    // A tone; what is muted is not sent at all, as a microphone that is off.
    bool sounds = true;
    // What it wants of the others.
    bool takesPictures = true, takesSound = true;
};

class BenchPerson final {
public:
    explicit BenchPerson(const BenchPersonOptions& personOptions);
    // Leaves.
    ~BenchPerson();
    BenchPerson(const BenchPerson&) = delete;
    BenchPerson& operator=(const BenchPerson&) = delete;

    // Waits until it is in the room. False, and a line on the standard error stream, where it cannot be.
    [[nodiscard]] bool Enter();
    void WantPictures(bool wanted);
    void WantSound(bool wanted);
    // A text that says when it was sent.
    void Say();
    // A mark on somebody else's picture, as a person's client tells the others of one.
    void Draw();
    // Forgets what was measured so far.
    void Reset();
    // Of the time since the last Reset. "cpuMs": computed by this process; "wallMs"; "textsMs": ages of
    // texts; "streams", by the publisher's name: "pictures", "agesMs" of those with a stamp, "firstMs" from
    // entering to the first picture, kept over a Reset.
    [[nodiscard]] nlohmann::json Report() const;
    // Milliseconds from Enter's call until the first picture of each of that many; nothing when they do not
    // all come in time.
    [[nodiscard]] std::optional<std::vector<double>> FirstPictures(std::size_t count) const;

private:
    using Clock = std::chrono::steady_clock;

    struct Stream {
        std::string name;
        std::shared_ptr<Engine::ParticipantMedia> media;
        std::size_t pictures = 0;
        std::vector<double> agesMs;
        std::optional<double> firstMs;
    };

    [[nodiscard]] Engine::TransportEvents Events();
    void OnEntered();
    void OnJoined(const Engine::ParticipantDescription& description);
    void OnPicture(const std::string& id, const Engine::MappedPicture& picture);
    void OnText(const std::string& text);
    void ApplyWishes();
    void Sound();
    void Do(const std::function<void()>& task);

    const BenchPersonOptions options;
    Engine::EngineLoop loop;
    std::unique_ptr<Engine::Transport> transport;
    std::unique_ptr<StampedClip> clip;
    std::jthread tone;
    std::shared_ptr<Engine::LocalFeed> feed;
    bool isInside = false;
    bool wantsPictures, wantsSound;
    std::size_t marks = 0;
    std::mt19937 random;
    Clock::time_point enteredAt;

    mutable std::mutex mutex;  // guards: everything below
    std::optional<bool> entered;
    std::map<std::string, Stream> streams;
    std::vector<double> textsMs;
    Clock::time_point resetAt;
    double cpuAtReset = 0;
};

}  // namespace Corvanta::Bench
