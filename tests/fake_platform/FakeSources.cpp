// The part of FakePlatform that feeds the code under test: sources, sinks, data channels and listeners.

#include <algorithm>

#include "tests/fake_platform/FakePlatform.h"

namespace Corvanta::Testing {

FrameCallback* FakePlatform::OfferRemoteSource(const std::string& streamId) {
    FrameCallback* const callback = callbacks.addRemoteVideoSource(streamId);
    Adopt(streamId, callback);
    return callback;
}

FrameCallback* FakePlatform::OfferLocalSource(StreamType type, const std::string& sourceId) {
    FrameCallback* const callback = callbacks.addLocalVideoSource(type, sourceId);
    Adopt(sourceId, callback);
    return callback;
}

void FakePlatform::Adopt(const std::string& sourceId, FrameCallback* callback) {
    if (callback == nullptr) {
        return;
    }
    auto sink = std::make_shared<Sink>();
    sink->sourceId = sourceId;
    sink->callback = callback;
    sink->offered = true;
    const std::lock_guard lock(mutex_);
    ownedCallbacks_.emplace_back(callback);
    sinks_.push_back(std::move(sink));
}

void FakePlatform::RegisterSink(const std::string& sourceId, FrameCallback* callback) {
    const std::lock_guard lock(mutex_);
    const bool known = std::any_of(sinks_.begin(), sinks_.end(), [&](const auto& sink) {
        return !sink->offered && sink->sourceId == sourceId && sink->callback == callback;
    });
    if (callback == nullptr || known) {
        return;
    }
    auto sink = std::make_shared<Sink>();
    sink->sourceId = sourceId;
    sink->callback = callback;
    sinks_.push_back(std::move(sink));
}

void FakePlatform::UnregisterSink(const std::string& sourceId, FrameCallback* callback) {
    RemoveSinks([&](const Sink& sink) {
        return !sink.offered && sink.sourceId == sourceId && sink.callback == callback;
    });
}

void FakePlatform::RemoveSinks(const std::function<bool(const Sink&)>& isMeant) {
    std::vector<std::shared_ptr<Sink>> gone;
    {
        const std::lock_guard lock(mutex_);
        std::erase_if(sinks_, [&](const auto& sink) {
            if (!isMeant(*sink)) {
                return false;
            }
            gone.push_back(sink);
            return true;
        });
    }
    for (const auto& sink : gone) {
        const std::lock_guard busy(sink->busy);
        sink->removed = true;
    }
}

void FakePlatform::RemoveSource(const std::string& sourceId) {
    RemoveSinks([&](const Sink& sink) { return sink.offered && sink.sourceId == sourceId; });
}

void FakePlatform::RemoveRemoteSource(const std::string& streamId) {
    RemoveSource(streamId);
    callbacks.removeRemoteVideoSource(streamId);
}

void FakePlatform::RemoveLocalSource(const std::string& sourceId) {
    RemoveSource(sourceId);
    callbacks.removeLocalVideoSource(sourceId);
}

size_t FakePlatform::Deliver(const std::string& sourceId, const std::shared_ptr<VideoFrameBuffer>& frame) {
    std::vector<std::shared_ptr<Sink>> sinks;
    {
        const UncountedScope uncounted;
        const std::lock_guard lock(mutex_);
        std::copy_if(sinks_.begin(), sinks_.end(), std::back_inserter(sinks),
                     [&](const auto& sink) { return sink->sourceId == sourceId; });
    }
    size_t delivered = 0;
    for (const auto& sink : sinks) {
        const std::lock_guard busy(sink->busy);
        if (!sink->removed) {
            (*sink->callback)(frame);
            ++delivered;
        }
    }
    return delivered;
}

std::vector<std::pair<std::string, FrameCallback*>> FakePlatform::RegisteredSinks() const {
    const std::lock_guard lock(mutex_);
    std::vector<std::pair<std::string, FrameCallback*>> registered;
    for (const auto& sink : sinks_) {
        if (!sink->offered) {
            registered.emplace_back(sink->sourceId, sink->callback);
        }
    }
    return registered;
}

void FakePlatform::CloseMedia() {
    callbacks.addRemoteVideoSource.Set({});
    callbacks.videoFrameTracksAdded.Set({});
    callbacks.addLocalVideoSource.Set({});
    callbacks.remoteDataChannelCallbackList.Set({});
    callbacks.removeRemoteVideoSource.Set({});
    callbacks.connectionStatusUpdate.Set({});
    callbacks.videoFilePlaybackStatusUpdate.Set({});
    callbacks.removeLocalVideoSource.Set({});
    callbacks.windowCapturedClosed.Set({});
    callbacks.localVideoFrameAdaptation.Set({});
    RemoveSinks([](const Sink& sink) { return !sink.offered; });
}

std::vector<std::exception_ptr> FakePlatform::DeliverMessage(const std::string& senderId,
                                                             const std::string& text) {
    std::vector<std::exception_ptr> thrown;
    for (const DataChannelCallback& handler : callbacks.remoteDataChannelCallbackList()) {
        try {
            handler({senderId, text});
        } catch (...) {
            thrown.push_back(std::current_exception());
        }
    }
    return thrown;
}

void FakePlatform::AddListener(ConfigurationListener* listener) {
    const std::lock_guard busy(configurationListenersMutex_);
    configurationListeners_.push_back(listener);
}

void FakePlatform::RemoveListener(ConfigurationListener* listener) {
    const std::lock_guard busy(configurationListenersMutex_);
    std::erase(configurationListeners_, listener);
}

void FakePlatform::AddListener(Connections::RoomStatusListener* listener) {
    const std::lock_guard busy(roomListenersMutex_);
    roomListeners_.push_back(listener);
}

void FakePlatform::RemoveListener(Connections::RoomStatusListener* listener) {
    const std::lock_guard busy(roomListenersMutex_);
    std::erase(roomListeners_, listener);
}

bool FakePlatform::AddListener(std::shared_ptr<Integrations::ProcessMonitorListenerInterface> listener) {
    const std::lock_guard busy(processListenersMutex_);
    if (listener == nullptr ||
        std::find(processListeners_.begin(), processListeners_.end(), listener) != processListeners_.end()) {
        return false;
    }
    processListeners_.push_back(std::move(listener));
    return true;
}

bool FakePlatform::RemoveProcessListener(uint64_t key) {
    const std::lock_guard busy(processListenersMutex_);
    return std::erase_if(processListeners_, [&](const auto& listener) {
               return reinterpret_cast<uintptr_t>(listener.get()) == key;
           }) > 0;
}

void FakePlatform::RemoveProcessListeners() {
    const std::lock_guard busy(processListenersMutex_);
    processListeners_.clear();
}

void FakePlatform::FireConfigurationChanged(const std::string& key, const std::string& value) {
    const std::lock_guard busy(configurationListenersMutex_);
    for (ConfigurationListener* const listener : std::vector(configurationListeners_)) {
        listener->OnConfigurationChanged(key, value);
    }
}

void FakePlatform::FireRoomStatus(int32_t status) {
    const std::lock_guard busy(roomListenersMutex_);
    for (Connections::RoomStatusListener* const listener : std::vector(roomListeners_)) {
        listener->OnRoomStatusChanged(status);
    }
}

void FakePlatform::FireMutedRemotely() {
    const std::lock_guard busy(roomListenersMutex_);
    for (Connections::RoomStatusListener* const listener : std::vector(roomListeners_)) {
        listener->OnMutedRemotely();
    }
}

void FakePlatform::FireProcesses(const std::map<int32_t, int32_t>& processes) {
    const std::lock_guard busy(processListenersMutex_);
    for (const auto& listener : std::vector(processListeners_)) {
        listener->OnProcessesChanged(processes);
    }
}

size_t FakePlatform::ConfigurationListeners() const {
    const std::lock_guard busy(configurationListenersMutex_);
    return configurationListeners_.size();
}

size_t FakePlatform::RoomStatusListeners() const {
    const std::lock_guard busy(roomListenersMutex_);
    return roomListeners_.size();
}

size_t FakePlatform::ProcessListeners() const {
    const std::lock_guard busy(processListenersMutex_);
    return processListeners_.size();
}

}  // namespace Corvanta::Testing
