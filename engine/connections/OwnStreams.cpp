#include "engine/connections/OwnStreams.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "engine/connections/TrackSettings.h"
#include "engine/mediamanager/MediaCallbacks.h"
#include "engine/transport/StreamNames.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

// How often a source is offered again while the library has no room for it.
constexpr std::chrono::milliseconds kOfferInterval{50};

}  // namespace

OwnStreams::OwnStreams(EngineLoop& engineLoop, std::shared_ptr<SoundMixer> roomMixer,
                       Transport& roomTransport, const std::atomic<bool>& roomIsClosing)
    : loop(engineLoop), mixer(std::move(roomMixer)), transport(roomTransport), isClosing(roomIsClosing) {}

template <class Condition>
std::shared_ptr<OwnStream> OwnStreams::Take(const Condition& condition) {
    const std::lock_guard lock(streamsMutex);
    const auto found = std::find_if(streams.begin(), streams.end(), condition);
    if (found == streams.end()) return nullptr;
    auto taken = std::move(*found);
    streams.erase(found);
    leaving.push_back(taken);
    return taken;
}

template <class Condition>
std::shared_ptr<OwnStream> OwnStreams::FindIf(const Condition& condition) const {
    const std::lock_guard lock(streamsMutex);
    const auto found = std::find_if(streams.begin(), streams.end(), condition);
    return found == streams.end() ? nullptr : *found;
}

bool OwnStreams::Share(OwnStreamDescription description) {
    const StreamType type = description.type;
    const auto index = static_cast<std::size_t>(type);
    std::shared_ptr<OwnStream> replaced;
    std::shared_ptr<OwnStream> stream;
    {
        const std::lock_guard lock(streamsMutex);
        if (isClosed || index >= counts.size()) return false;
        // Each has an id of its own, so that nothing that is late is taken for its successor's.
        stream = std::make_shared<OwnStream>(loop, std::move(description),
                                             StreamWord(type) + "-" + std::to_string(counts[index]++), mixer,
                                             transport);
        const auto found = std::find_if(streams.begin(), streams.end(),
                                        [&](const auto& other) { return other->description.type == type; });
        if (found != streams.end()) {
            replaced = std::move(*found);
            streams.erase(found);
            leaving.push_back(replaced);
        }
        streams.push_back(stream);
    }
    if (replaced) End(replaced);
    loop.Post([this, stream] { Start(stream); });
    return true;
}

bool OwnStreams::Stop(StreamType type) {
    const auto stream = Take([&](const auto& candidate) { return candidate->description.type == type; });
    if (stream) End(stream);
    return stream != nullptr;
}

bool OwnStreams::StopSource(const std::string& sourceId) {
    const auto stream = Take([&](const auto& candidate) { return candidate->SourceId() == sourceId; });
    if (stream) End(stream);
    return stream != nullptr;
}

void OwnStreams::StopAll() {
    while (const auto stream = Take([](const auto&) { return true; })) End(stream);
}

std::shared_ptr<OwnStream> OwnStreams::Find(StreamType type) const {
    return FindIf([&](const auto& candidate) { return candidate->description.type == type; });
}

std::shared_ptr<OwnStream> OwnStreams::FindSource(const std::string& sourceId) const {
    return FindIf([&](const auto& candidate) { return candidate->SourceId() == sourceId; });
}

std::vector<StreamType> OwnStreams::Types() const {
    const std::lock_guard lock(streamsMutex);
    std::vector<StreamType> types;
    for (const auto& stream : streams) types.push_back(stream->description.type);
    return types;
}

void OwnStreams::ApplyVolume() {
    loop.Post([this] {
        std::vector<std::shared_ptr<OwnStream>> all;
        {
            const std::lock_guard lock(streamsMutex);
            all = streams;
        }
        for (const auto& stream : all) stream->SetVolume(TrackSettings::Get().localStreamsVolume);
    });
}

void OwnStreams::Start(const std::shared_ptr<OwnStream>& stream) {
    if (isClosing) return;
    stream->Open([this, weak = std::weak_ptr(stream)] {
        // Posted, since the playback that says so is closed then.
        loop.Post([this, weak] {
            if (const auto ended = weak.lock()) OnEnded(ended);
        });
    });
    Offer(stream);
}

void OwnStreams::Offer(const std::shared_ptr<OwnStream>& stream) {
    if (isClosing || stream->Offer()) return;
    loop.PostAfter(kOfferInterval, [this, stream] { Offer(stream); });
}

void OwnStreams::OnEnded(const std::shared_ptr<OwnStream>& stream) {
    if (isClosing || !Take([&](const auto& candidate) { return candidate == stream; })) return;
    LOG(kLogInformation, "\"%s\" has ended by itself", stream->description.displayName.c_str());
    stream->End();
    if (stream->description.isWindow) MediaCallbacks::Get().capturedWindowClosed.Call();
    Remove(stream);
}

void OwnStreams::End(const std::shared_ptr<OwnStream>& stream) {
    stream->End();
    loop.Post([this, stream] { Remove(stream); });
}

void OwnStreams::Remove(const std::shared_ptr<OwnStream>& stream) {
    {
        const std::lock_guard lock(streamsMutex);
        std::erase(leaving, stream);
    }
    stream->Close(!isClosing);
}

void OwnStreams::Close() {
    std::vector<std::shared_ptr<OwnStream>> all;
    {
        const std::lock_guard lock(streamsMutex);
        isClosed = true;
        all.swap(streams);
        all.insert(all.end(), leaving.begin(), leaving.end());
        leaving.clear();
    }
    for (const auto& stream : all) {
        stream->End();
        stream->Close(false);
    }
}

}  // namespace Corvanta::Engine
