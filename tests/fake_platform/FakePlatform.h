// All sibling libraries of the platform as recorders: every function writes its call into Calls() and answers
// from FakeResults, every registered callback is kept so that a test can fire it from any thread. Link
// corvanta-fake-platform instead of the engine. Each test calls Fake().Reset() first (FakePlatformTest does).
// Every operation may be called on any thread; no lock of the fake's own is held while it calls back.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "platform/Common.h"
#include "platform/Configuration.h"
#include "platform/Connections.h"
#include "platform/GraphQLClient.h"
#include "platform/MediaManager.h"
#include "platform/WebRTC.h"
#include "tests/fake_platform/CallLog.h"
#include "tests/fake_platform/FakeResults.h"
#include "tests/fake_platform/GuardedCallback.h"

namespace Corvanta::Testing {

struct LogLine {
    int level = 0;
    std::string text;

    bool operator==(const LogLine&) const = default;
};
std::ostream& operator<<(std::ostream& stream, const LogLine& line);

// One call of WebRTC_ConvertFrame.
struct Conversion {
    VideoFrameTransformer* transformer = nullptr;
    std::thread::id thread;
    ColorSpace source;
    int32_t width = 0;
    int32_t height = 0;
    VideoFrameBufferType type = VideoFrameBufferType::RGB;
    ColorSpace target;
};

// One call of WebRTC_ExportStillImageFromVideoFrameBuffer.
struct StillExport {
    std::string path;
    std::thread::id thread;
    // Only to be compared: the frame may be gone.
    const VideoFrameBuffer* frame = nullptr;
};

// What the code under test has registered. Call a member to fire it: `Fake().callbacks.participantJoined()`.
// Empty ones answer with a default-made result.
struct FakeCallbacks {
    GuardedCallback<FrameCallback*(const std::string&)> addRemoteVideoSource;
    GuardedCallback<void(std::string)> videoFrameTracksAdded;
    GuardedCallback<FrameCallback*(StreamType, std::string)> addLocalVideoSource;
    GuardedCallback<std::vector<DataChannelCallback>()> remoteDataChannelCallbackList;
    GuardedCallback<void(std::string)> removeRemoteVideoSource;
    GuardedCallback<void(std::string, bool)> connectionStatusUpdate;
    GuardedCallback<void(const std::string&, bool)> videoFilePlaybackStatusUpdate;
    GuardedCallback<void(std::string)> removeLocalVideoSource;
    GuardedCallback<void()> windowCapturedClosed;
    GuardedCallback<VideoFrameAdaptation()> localVideoFrameAdaptation;

    GuardedCallback<void()> participantJoined;
    GuardedCallback<void(bool, bool)> connectionDropped;
    GuardedCallback<void(int32_t, int64_t)> recordingUpdate;

    GuardedCallback<void(int, double, int, double, double, double, double)> connectionStats;
    GuardedCallback<void(const VideoSourceData&)> videoSourceMetadata;
    GuardedCallback<void(const std::vector<double>&, double, double)> audioMeter;
};

class FakePlatform final {
public:
    // Settings

    // Back to the state of a new process: results, calls, hooks, callbacks, listeners; owned sinks and
    // strings are deleted. No other thread may be inside the platform.
    void Reset();

    // Changes the results: `Fake().Set([](FakeResults& results) { results.connectionIndex = -1; });`
    template <typename Change>
    void Set(Change&& change) {
        const std::lock_guard lock(mutex_);
        std::forward<Change>(change)(results_);
    }

    // Reads from them: `Fake().Get([](const FakeResults& results) { return results.configuration; })`.
    template <typename Read>
    auto Get(Read&& read) const {
        const std::lock_guard lock(mutex_);
        return std::forward<Read>(read)(results_);
    }

    // Recorded calls: shorthands for Calls(), which has more.

    [[nodiscard]] std::vector<std::string> CallNames() const { return Calls().Names(); }
    [[nodiscard]] std::vector<Call> CallsOf(std::string_view name) const { return Calls().Of(name); }
    void ClearCalls() { Calls().Clear(); }
    void OnCall(const std::string& name, CallLog::Hook hook) { Calls().OnCall(name, std::move(hook)); }
    void ThrowFrom(const std::string& name, int number) { Calls().ThrowFrom(name, number); }

    [[nodiscard]] std::vector<LogLine> Logs() const;
    // Texts of the lines of one level.
    [[nodiscard]] std::vector<std::string> LogsOf(int level) const;
    void ClearLogs();
    [[nodiscard]] std::vector<Conversion> Conversions() const;
    [[nodiscard]] std::vector<StillExport> StillExports() const;

    // Callbacks

    FakeCallbacks callbacks;
    [[nodiscard]] RecordingPlaybackCallbacks RecordingCallbacks() const;

    // Sources. Offering calls the registered function and keeps what it returns: null means that it was
    // refused. The sinks live until Reset, beyond the removal of their source, so that a test may deliver too
    // late.
    FrameCallback* OfferRemoteSource(const std::string& streamId);
    FrameCallback* OfferLocalSource(StreamType type, const std::string& sourceId);
    // Takes over a sink that a test got from an export itself, and feeds it with the source's frames.
    void Adopt(const std::string& sourceId, FrameCallback* callback);
    void RemoveRemoteSource(const std::string& streamId);
    void RemoveLocalSource(const std::string& sourceId);
    // Hands the frame to every sink of the source, offered or registered, on the calling thread. How many
    // there were.
    size_t Deliver(const std::string& sourceId, const std::shared_ptr<VideoFrameBuffer>& frame);
    // Sinks registered through MediaManager_RegisterCallback and not unregistered.
    [[nodiscard]] std::vector<std::pair<std::string, FrameCallback*>> RegisteredSinks() const;

    // Data channel: asks for the handlers and calls each. Returns what the handlers threw.
    std::vector<std::exception_ptr> DeliverMessage(const std::string& senderId, const std::string& text);

    // Listeners
    void FireConfigurationChanged(const std::string& key, const std::string& value);
    void FireRoomStatus(int32_t status);
    void FireMutedRemotely();
    void FireProcesses(const std::map<int32_t, int32_t>& processes);
    [[nodiscard]] size_t ConfigurationListeners() const;
    [[nodiscard]] size_t RoomStatusListeners() const;
    [[nodiscard]] size_t ProcessListeners() const;

    // Objects handed out
    [[nodiscard]] size_t UnreleasedStrings() const;
    // Strings given back that the client did not hand out, or twice.
    [[nodiscard]] size_t WrongReleases() const;
    [[nodiscard]] size_t TransformersCreated() const;
    [[nodiscard]] size_t TransformersDeleted() const;
    // The last adaptive manager that was made, null when it is gone.
    [[nodiscard]] std::shared_ptr<AdaptiveVideoSourceManagerInterface> AdaptiveManager() const;

    // Used by the platform's functions.
    void AddLog(int level, std::string text);
    void AddConversion(const Conversion& conversion);
    void AddStillExport(const StillExport& stillExport);
    void SetRecordingCallbacks(const RecordingPlaybackCallbacks& recordingCallbacks);
    GraphQLClientString* MakeString(const std::string& text);
    void ReleaseString(GraphQLClientString* string);
    VideoFrameTransformer* MakeTransformer();
    void DeleteTransformer(VideoFrameTransformer* transformer);
    void RegisterSink(const std::string& sourceId, FrameCallback* callback);
    void UnregisterSink(const std::string& sourceId, FrameCallback* callback);
    void CloseMedia();
    void AddListener(ConfigurationListener* listener);
    void RemoveListener(ConfigurationListener* listener);
    void AddListener(Connections::RoomStatusListener* listener);
    void RemoveListener(Connections::RoomStatusListener* listener);
    bool AddListener(std::shared_ptr<Integrations::ProcessMonitorListenerInterface> listener);
    bool RemoveProcessListener(uint64_t key);
    void RemoveProcessListeners();
    void SetAdaptiveManager(const std::shared_ptr<AdaptiveVideoSourceManagerInterface>& manager);
    Model::API::ConnectivityLogResponse* MakeConnectivityResponse();

private:
    friend FakePlatform& Fake();

    class ClientString;
    // A sink of a source, with the lock that is held while it is called.
    struct Sink {
        std::string sourceId;
        FrameCallback* callback = nullptr;
        bool offered = false;
        bool removed = false;
        std::recursive_mutex busy;
    };

    FakePlatform();
    ~FakePlatform();

    void RemoveSinks(const std::function<bool(const Sink&)>& isMeant);
    void RemoveSource(const std::string& sourceId);

    mutable std::mutex mutex_;
    // Guards: all below, but for the lists of listeners.
    FakeResults results_;
    std::vector<LogLine> logs_;
    std::vector<Conversion> conversions_;
    std::vector<StillExport> stillExports_;
    RecordingPlaybackCallbacks recordingCallbacks_{};
    std::vector<std::shared_ptr<Sink>> sinks_;
    std::vector<std::unique_ptr<FrameCallback>> ownedCallbacks_;
    std::vector<std::unique_ptr<ClientString>> strings_;
    size_t wrongReleases_ = 0;
    std::vector<std::unique_ptr<VideoFrameTransformer>> transformers_;
    size_t transformersCreated_ = 0;
    std::weak_ptr<AdaptiveVideoSourceManagerInterface> adaptiveManager_;
    std::vector<std::unique_ptr<Model::API::ConnectivityLogResponse>> responses_;

    // Recursive, and held while listeners are called, so that a removal waits for a call in progress. Guard
    // one list each.
    mutable std::recursive_mutex configurationListenersMutex_;
    std::vector<ConfigurationListener*> configurationListeners_;
    mutable std::recursive_mutex roomListenersMutex_;
    std::vector<Connections::RoomStatusListener*> roomListeners_;
    mutable std::recursive_mutex processListenersMutex_;
    std::vector<std::shared_ptr<Integrations::ProcessMonitorListenerInterface>> processListeners_;
};

// The process's one fake platform.
FakePlatform& Fake();

// A test that starts with a fresh platform and leaves nothing behind.
class FakePlatformTest : public ::testing::Test {
protected:
    FakePlatformTest() { Fake().Reset(); }
    ~FakePlatformTest() override { Fake().Reset(); }
};

}  // namespace Corvanta::Testing
