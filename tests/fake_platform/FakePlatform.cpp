#include "tests/fake_platform/FakePlatform.h"

#include <algorithm>
#include <ostream>

namespace Corvanta {

class VideoFrameTransformer {};

namespace Testing {

class FakePlatform::ClientString final : public GraphQLClientString {
public:
    explicit ClientString(std::string text) : text_(std::move(text)) {}
    [[nodiscard]] const char* c_str() const override { return text_.c_str(); }

private:
    std::string text_;
};

std::ostream& operator<<(std::ostream& stream, const LogLine& line) {
    return stream << line.level << ": " << line.text;
}

FakePlatform::FakePlatform() = default;
FakePlatform::~FakePlatform() = default;

FakePlatform& Fake() {
    // Never destroyed, like the list of calls.
    static FakePlatform* const fake = [] {
        const UncountedScope uncounted;
        return new FakePlatform;
    }();
    return *fake;
}

void FakePlatform::Reset() {
    CloseMedia();
    callbacks.participantJoined.Set({});
    callbacks.connectionDropped.Set({});
    callbacks.recordingUpdate.Set({});
    callbacks.connectionStats.Set({});
    callbacks.videoSourceMetadata.Set({});
    callbacks.audioMeter.Set({});
    RemoveProcessListeners();
    {
        const std::lock_guard busy(configurationListenersMutex_);
        configurationListeners_.clear();
    }
    {
        const std::lock_guard busy(roomListenersMutex_);
        roomListeners_.clear();
    }
    FakeResults results;
    std::vector<std::unique_ptr<FrameCallback>> ownedCallbacks;
    {
        const std::lock_guard lock(mutex_);
        std::swap(results_, results);
        logs_.clear();
        conversions_.clear();
        stillExports_.clear();
        recordingCallbacks_ = {};
        sinks_.clear();
        std::swap(ownedCallbacks_, ownedCallbacks);
        strings_.clear();
        wrongReleases_ = 0;
        transformers_.clear();
        transformersCreated_ = 0;
        responses_.clear();
    }
    Calls().Reset();
}

void FakePlatform::AddLog(int level, std::string text) {
    const UncountedScope uncounted;
    const std::lock_guard lock(mutex_);
    logs_.push_back({level, std::move(text)});
}

std::vector<LogLine> FakePlatform::Logs() const {
    const std::lock_guard lock(mutex_);
    return logs_;
}

std::vector<std::string> FakePlatform::LogsOf(int level) const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> texts;
    for (const LogLine& line : logs_) {
        if (line.level == level) {
            texts.push_back(line.text);
        }
    }
    return texts;
}

void FakePlatform::ClearLogs() {
    const std::lock_guard lock(mutex_);
    logs_.clear();
}

void FakePlatform::AddConversion(const Conversion& conversion) {
    const std::lock_guard lock(mutex_);
    conversions_.push_back(conversion);
}

std::vector<Conversion> FakePlatform::Conversions() const {
    const std::lock_guard lock(mutex_);
    return conversions_;
}

void FakePlatform::AddStillExport(const StillExport& stillExport) {
    const std::lock_guard lock(mutex_);
    stillExports_.push_back(stillExport);
}

std::vector<StillExport> FakePlatform::StillExports() const {
    const std::lock_guard lock(mutex_);
    return stillExports_;
}

void FakePlatform::SetRecordingCallbacks(const RecordingPlaybackCallbacks& recordingCallbacks) {
    const std::lock_guard lock(mutex_);
    recordingCallbacks_ = recordingCallbacks;
}

RecordingPlaybackCallbacks FakePlatform::RecordingCallbacks() const {
    const std::lock_guard lock(mutex_);
    return recordingCallbacks_;
}

GraphQLClientString* FakePlatform::MakeString(const std::string& text) {
    auto string = std::make_unique<ClientString>(text);
    GraphQLClientString* const handedOut = string.get();
    const std::lock_guard lock(mutex_);
    strings_.push_back(std::move(string));
    return handedOut;
}

void FakePlatform::ReleaseString(GraphQLClientString* string) {
    if (string == nullptr) {
        return;
    }
    const std::lock_guard lock(mutex_);
    if (std::erase_if(strings_, [&](const auto& owned) { return owned.get() == string; }) == 0) {
        ++wrongReleases_;
    }
}

size_t FakePlatform::UnreleasedStrings() const {
    const std::lock_guard lock(mutex_);
    return strings_.size();
}

size_t FakePlatform::WrongReleases() const {
    const std::lock_guard lock(mutex_);
    return wrongReleases_;
}

VideoFrameTransformer* FakePlatform::MakeTransformer() {
    const std::lock_guard lock(mutex_);
    ++transformersCreated_;
    transformers_.push_back(std::make_unique<VideoFrameTransformer>());
    return transformers_.back().get();
}

void FakePlatform::DeleteTransformer(VideoFrameTransformer* transformer) {
    if (transformer == nullptr) {
        return;
    }
    const std::lock_guard lock(mutex_);
    if (std::erase_if(transformers_, [&](const auto& owned) { return owned.get() == transformer; }) == 0) {
        ++wrongReleases_;
    }
}

size_t FakePlatform::TransformersCreated() const {
    const std::lock_guard lock(mutex_);
    return transformersCreated_;
}

size_t FakePlatform::TransformersDeleted() const {
    const std::lock_guard lock(mutex_);
    return transformersCreated_ - transformers_.size();
}

void FakePlatform::SetAdaptiveManager(const std::shared_ptr<AdaptiveVideoSourceManagerInterface>& manager) {
    const std::lock_guard lock(mutex_);
    adaptiveManager_ = manager;
}

std::shared_ptr<AdaptiveVideoSourceManagerInterface> FakePlatform::AdaptiveManager() const {
    const std::lock_guard lock(mutex_);
    return adaptiveManager_.lock();
}

Model::API::ConnectivityLogResponse* FakePlatform::MakeConnectivityResponse() {
    const std::lock_guard lock(mutex_);
    responses_.push_back(
        std::make_unique<Model::API::ConnectivityLogResponse>(results_.connectivityResponse));
    return responses_.back().get();
}

}  // namespace Testing
}  // namespace Corvanta
