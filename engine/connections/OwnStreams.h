// The streams that the local user shares in the open room, one of each kind. Asked and changed on any thread,
// from memory; the library is told on the engine's thread, with no lock held.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "engine/Engine.h"
#include "engine/common/EngineLoop.h"
#include "engine/connections/OwnStream.h"

namespace Corvanta::Engine {

class OwnStreams final {
public:
    // Nothing of the library is called from the moment on at which `roomIsClosing` is set.
    OwnStreams(EngineLoop& engineLoop, std::shared_ptr<SoundMixer> roomMixer, Transport& roomTransport,
               const std::atomic<bool>& roomIsClosing);

    // Any thread.

    // Replaces the one of its kind. False when the room has ended.
    bool Share(OwnStreamDescription description);
    // On return no picture of it is on its way. False when there is none such.
    bool Stop(StreamType type);
    bool StopSource(const std::string& sourceId);
    void StopAll();

    [[nodiscard]] std::shared_ptr<OwnStream> Find(StreamType type) const;
    [[nodiscard]] std::shared_ptr<OwnStream> FindSource(const std::string& sourceId) const;
    // In the order of their start.
    [[nodiscard]] std::vector<StreamType> Types() const;
    // Takes over the changed volume of the streams' own sound.
    void ApplyVolume();

    // The engine's thread, when its loop has ended. The library is not told.
    void Close();

private:
    void Start(const std::shared_ptr<OwnStream>& stream);
    void Offer(const std::shared_ptr<OwnStream>& stream);
    // The source itself is at its end.
    void OnEnded(const std::shared_ptr<OwnStream>& stream);
    // Ends one that is no longer among the streams.
    void End(const std::shared_ptr<OwnStream>& stream);
    // On the engine's thread: lets go of it and tells the library.
    void Remove(const std::shared_ptr<OwnStream>& stream);
    // The first of `streams` that `condition` holds for, taken out of them; null when there is none.
    template <class Condition>
    [[nodiscard]] std::shared_ptr<OwnStream> Take(const Condition& condition);
    template <class Condition>
    [[nodiscard]] std::shared_ptr<OwnStream> FindIf(const Condition& condition) const;

    EngineLoop& loop;
    const std::shared_ptr<SoundMixer> mixer;
    Transport& transport;
    const std::atomic<bool>& isClosing;

    mutable std::mutex streamsMutex;  // guards: everything below
    std::vector<std::shared_ptr<OwnStream>> streams;
    // Ended, and not yet let go of on the engine's thread.
    std::vector<std::shared_ptr<OwnStream>> leaving;
    // How many of each kind there have been.
    std::array<std::size_t, 16> counts{};
    bool isClosed = false;
};

}  // namespace Corvanta::Engine
