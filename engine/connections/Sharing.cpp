// The functions of engine/Engine.h that start and stop the local user's own streams.
#include <glib.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>
#include <variant>

#include "engine/Engine.h"
#include "engine/connections/Room.h"
#include "engine/transport/StreamNames.h"
#include "engine/webrtc/CameraChoice.h"
#include "engine/webrtc/DeviceCapture.h"
#include "engine/webrtc/ScreenGrabber.h"
#include "engine/webrtc/ScreenSource.h"
#include "engine/webrtc/ScreenTargets.h"
#include "engine/webrtc/SourceCheck.h"

namespace Corvanta::Engine {

namespace {

// What a device is asked for.
constexpr PictureShape kDeviceShape{.width = 1920, .height = 1080, .frameRate = 30};

// A stream, or what hinders it as one line for the user.
using Prepared = std::variant<OwnStreamDescription, std::string>;

std::string Quoted(std::string_view text) {
    std::string quoted = "\"";
    quoted += text;
    quoted += '"';
    return quoted;
}

OwnStreamDescription Describe(StreamType type, std::string name) {
    OwnStreamDescription description{.type = type, .displayName = name, .source = {}, .isWindow = false};
    description.source.name = std::move(name);
    return description;
}

Prepared PrepareScreen(std::string_view source) {
    std::uint32_t window = 0;
    const char* const end = source.data() + source.size();
    const auto [parsed, error] = std::from_chars(source.data(), end, window);
    if (!source.empty() && (error != std::errc() || parsed != end)) {
        return Quoted(source) + " is no window's number";
    }
    if (auto problem = ScreenGrabber(window).Problem()) return std::move(*problem);
    auto title = FindScreenTitle(window);
    if (!title) return std::string("The window is no longer there");
    OwnStreamDescription description = Describe(StreamType::Screenshare, std::move(*title));
    description.isWindow = window != 0;
    description.source.makeCapture = [window] { return MakeScreenElement(window); };
    return description;
}

Prepared PrepareFile(const std::string& source) {
    if (source.empty()) return std::string("No file is given");
    std::error_code error;
    const auto path = std::filesystem::absolute(source, error);
    if (auto problem = CheckFile(path)) return std::move(*problem);
    OwnStreamDescription description = Describe(StreamType::File, path.filename().string());
    description.source.uri = TakeText(g_filename_to_uri(path.c_str(), nullptr, nullptr));
    return description;
}

// The last part of its path, else its host: a URI may hold a password.
std::string NameOfUri(const std::string& uri) {
    GUri* const parsed = g_uri_parse(uri.c_str(), G_URI_FLAGS_PARSE_RELAXED, nullptr);
    if (parsed == nullptr) return "Address";
    std::string name = std::filesystem::path(g_uri_get_path(parsed)).filename().string();
    const char* const host = g_uri_get_host(parsed);
    if (name.empty() && host != nullptr) name = host;
    g_uri_unref(parsed);
    return name.empty() ? "Address" : name;
}

Prepared PrepareUri(std::string_view source) {
    constexpr std::string_view kBlank = " \t\r\n";
    const auto first = source.find_first_not_of(kBlank);
    if (first == std::string_view::npos) return std::string("No address is given");
    const std::string uri(source.substr(first, source.find_last_not_of(kBlank) + 1 - first));
    if (gst_uri_is_valid(uri.c_str()) == FALSE) {
        return Quoted(uri) + " is no address: it begins with a protocol such as https://";
    }
    if (auto problem = CheckUri(uri)) return std::move(*problem);
    OwnStreamDescription description = Describe(StreamType::URL, NameOfUri(uri));
    description.source.uri = uri;
    return description;
}

Prepared PrepareDevice(StreamType type, const std::string& source) {
    const auto devices = ListDevices(DeviceKind::Camera);
    if (std::find(devices.begin(), devices.end(), source) == devices.end()) {
        return std::string("There is no device ") + Quoted(source);
    }
    OwnStreamDescription description = Describe(type, source);
    if (source == kTestPicture) {
        description.source.makeScene = [source] { return MakeTestScene(source); };
        description.source.clipEpoch = std::chrono::steady_clock::now();
    } else {
        description.source.makeCapture = [source] { return MakeCameraElement(source, kDeviceShape); };
    }
    return description;
}

Prepared Prepare(StreamType type, const std::string& source) {
    if (type == StreamType::Camera) return std::string("The camera is no stream that can be shared");
    if (StreamWord(type).empty()) return std::string("Such a stream cannot be shared");
    if (type == StreamType::Screenshare) return PrepareScreen(source);
    if (type == StreamType::File) return PrepareFile(source);
    if (type == StreamType::URL) return PrepareUri(source);
    return PrepareDevice(type, source);
}

}  // namespace

std::optional<std::string> ShareStream(StreamType type, const std::string& source) {
    const std::string noRoom = "There is no room in which it could be shared";
    const auto room = Room::Current();
    if (!room) return noRoom;
    Prepared prepared = Prepare(type, source);
    if (auto* const problem = std::get_if<std::string>(&prepared)) return std::move(*problem);
    if (!room->Streams().Share(std::get<OwnStreamDescription>(std::move(prepared)))) return noRoom;
    return std::nullopt;
}

void StopSharing(StreamType type) {
    if (const auto room = Room::Current()) room->Streams().Stop(type);
}

std::vector<StreamType> SharedStreams() {
    const auto room = Room::Current();
    return room ? room->Streams().Types() : std::vector<StreamType>();
}

}  // namespace Corvanta::Engine
