// What the functions of the fake platform answer. Each test starts from these defaults; FakePlatform::Set
// changes them under the fake's lock, so that a thread of the code under test may ask at the same time.
#pragma once

#include <cmath>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <variant>

#include "platform/Connections.h"
#include "platform/RESTfulAPI.h"
#include "platform/VideoFrameAdaptation.h"
#include "platform/VideoFrameBuffer.h"
#include "platform/WebRTC.h"

namespace Corvanta::Testing {

using ConfigurationValue = std::variant<bool, int32_t, uint32_t, double, std::string>;

struct FakeResults {
    // Connections
    int32_t connectionIndex = 1;
    int32_t recordingConnectionIndex = 2;
    int32_t endRecordingResult = 0;
    std::map<StreamType, std::string> localUserStreamIds{{StreamType::Camera, "me"}};
    std::map<StreamType, std::string> localDisplayNames{{StreamType::Camera, "Me"}};
    std::map<std::string, StreamType> streamTypes;
    // A stream without an entry has its id for a name.
    std::map<std::string, std::string> publisherNames;
    std::set<std::string> externalSources;
    // Pairs of a camera stream's id and the id of that user's own external stream.
    std::set<std::pair<std::string, std::string>> ownExternalStreams;
    std::string roomId = "room-id";
    std::string recordingId = "recording-id";

    // GraphQL client
    std::string storedToken = "token";
    std::string profileId = "profile-id";
    std::string email = "me@example.com";
    std::string displayName = "Me";

    // Configuration. A key without an entry cannot be read. Writing keeps the value here unless it is
    // refused.
    std::map<std::string, ConfigurationValue> configuration;
    bool configurationWritable = true;
    std::string configurationLocation = "configuration-folder";

    // Media engine. The switches of tracks and the volumes change what the queries answer.
    std::optional<std::string> activeSpeaker;
    uint32_t targetBitrate = 2000000;
    bool micIsNone = false;
    bool speakerIsNone = false;
    int32_t videoCaptureIndex = 0;
    bool localAudioEnabled = true;
    bool localVideoEnabled = true;
    std::map<std::string, double> remoteVolumes;
    float localStreamsVolume = 1.0F;
    bool screenShareCapturing = false;
    std::set<StreamType> nativeStreamsCapturing;
    bool exportSucceeds = true;
    // Takes the place of the converter, which makes a mid-grey frame of the size, type and colour space asked
    // for.
    std::function<std::shared_ptr<VideoFrameBuffer>(const std::shared_ptr<VideoFrameBuffer>& frame,
                                                    int32_t width, int32_t height, VideoFrameBufferType type,
                                                    const ColorSpace& colorSpace)>
        convert;

    // The one file that plays locally
    int64_t fileDurationMs = 60000;
    int64_t fileProgressMs = 0;
    bool fileIsPaused = true;
    int32_t filePrivileges = 1;
    double nativeStreamVolume = 1.0;
    std::map<StreamType, double> defaultVolumes;
    std::shared_ptr<VideoFrameBuffer> preview;
    bool previewLoading = false;
    std::function<double(double position)> gainDb = [](double position) {
        return 20.0 * std::log10(position);
    };

    // Media manager
    std::map<int32_t, std::string> runningLocalSources;
    bool messagesAccepted = true;
    VideoFrameAdaptation adaptation;

    // Diagnostics
    std::string operatingSystem = "Operating System 1";
    std::string platformVersion = "Version 1";
    std::string cpuType = "Processor 1";
    std::string cpuSystemUsage = "20%";
    std::string cpuAppUsage = "10%";
    std::string connectionType = "Ethernet";

    // Connectivity log
    bool connectivityLogAccepted = true;
    Model::API::ConnectivityLogResponse connectivityResponse;
    int32_t connectivityStatus = Model::API::kResponseSuccess;
    // A service that breaks its word: null takes the place of the response.
    bool connectivityResponseMissing = false;
};

}  // namespace Corvanta::Testing
