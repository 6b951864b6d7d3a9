#include "engine/webrtc/SourceCheck.h"

#include <gst/pbutils/pbutils.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include "engine/webrtc/GstSupport.h"

namespace Corvanta::Engine {

namespace {

constexpr std::chrono::microseconds kReadingTime = std::chrono::seconds(3);

struct Needed {
    const char* element;
    const char* plugins;
};

constexpr std::array kNeeded{
    Needed{"uridecodebin", "base"},      Needed{"appsrc", "base"},        Needed{"appsink", "base"},
    Needed{"audioconvert", "base"},      Needed{"audioresample", "base"}, Needed{"volume", "base"},
    Needed{"videoconvertscale", "base"}, Needed{"level", "good"},         Needed{"videoflip", "good"},
};

bool IsInstalled(const char* element) {
    return GstOwned<GstElementFactory>(gst_element_factory_find(element)) != nullptr;
}

// Of "gstreamer|1.0|program|description|decoder-video/x-h264, ...".
std::vector<std::string> SplitDetail(const std::string& detail) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    while (true) {
        const std::size_t end = detail.find('|', start);
        parts.push_back(detail.substr(start, end - start));
        if (end == std::string::npos) return parts;
        start = end + 1;
    }
}

// A room shows no subtitles, so their decoders are not missed.
bool IsNeeded(std::string_view what) {
    constexpr std::array kUnused{"decoder-text/",
                                 "decoder-subpicture/",
                                 "decoder-subtitle/",
                                 "decoder-application/x-ssa",
                                 "decoder-application/x-ass",
                                 "decoder-closedcaption/",
                                 "decoder-meta/"};
    for (const std::string_view prefix : kUnused) {
        if (what.starts_with(prefix)) return false;
    }
    return true;
}

// What the message misses, when it is about something that is not installed and needed.
std::optional<std::string> MissingIn(GstMessage* message) {
    if (gst_is_missing_plugin_message(message) == FALSE) return std::nullopt;
    const auto parts = SplitDetail(TakeText(gst_missing_plugin_message_get_installer_detail(message)));
    if (parts.size() >= 5 && !IsNeeded(parts[4])) return std::nullopt;
    return TakeText(gst_missing_plugin_message_get_description(message));
}

// Opens the file as far as its first pictures. Whatever else is wrong with it, playing it will tell.
std::optional<std::string> FindMissingDecoder(const std::string& uri) {
    const GstOwned<GstElement> pipeline(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(nullptr))));
    const auto decoder = MakeElement("uridecodebin");
    if (!decoder) return std::nullopt;
    g_object_set(decoder.get(), "uri", uri.c_str(), "force-sw-decoders", TRUE, nullptr);
    const auto connectSink = +[](GstElement*, GstPad* pad, GstBin* bin) {
        const auto sink = MakeElement("fakesink");
        if (!sink) return;
        gst_bin_add(bin, GST_ELEMENT(gst_object_ref(sink.get())));
        const GstOwned<GstPad> target(gst_element_get_static_pad(sink.get(), "sink"));
        gst_pad_link(pad, target.get());
        gst_element_sync_state_with_parent(sink.get());
    };
    g_signal_connect(decoder.get(), "pad-added", G_CALLBACK(connectSink), pipeline.get());
    gst_bin_add(GST_BIN(pipeline.get()), GST_ELEMENT(gst_object_ref(decoder.get())));
    gst_element_set_state(pipeline.get(), GST_STATE_PAUSED);

    const GstOwned<GstBus> bus(gst_element_get_bus(pipeline.get()));
    constexpr auto kTypes = static_cast<GstMessageType>(GST_MESSAGE_ELEMENT | GST_MESSAGE_ASYNC_DONE |
                                                        GST_MESSAGE_ERROR | GST_MESSAGE_EOS);
    const gint64 deadline = g_get_monotonic_time() + kReadingTime.count();
    std::optional<std::string> missing;
    for (bool isOpen = false; !isOpen && !missing;) {
        const gint64 restNs = (deadline - g_get_monotonic_time()) * 1000;
        if (restNs <= 0) break;
        GstMessage* message =
            gst_bus_timed_pop_filtered(bus.get(), static_cast<GstClockTime>(restNs), kTypes);
        if (message == nullptr) break;
        missing = MissingIn(message);
        isOpen = GST_MESSAGE_TYPE(message) != GST_MESSAGE_ELEMENT;
        gst_message_unref(message);
    }
    gst_element_set_state(pipeline.get(), GST_STATE_NULL);
    return missing;
}

}  // namespace

ResolvedSource ResolveSource(const std::string& source) {
    if (source == "test") return {ResolvedSource::Kind::TestPicture, {}};
    if (source == "clip") return {ResolvedSource::Kind::Person, {}};
    if (gst_uri_is_valid(source.c_str()) != FALSE) return {ResolvedSource::Kind::Uri, source};
    std::error_code error;
    const auto path = std::filesystem::absolute(source, error);
    return {ResolvedSource::Kind::Uri, TakeText(g_filename_to_uri(path.c_str(), nullptr, nullptr))};
}

std::optional<std::string> CheckFile(const std::filesystem::path& path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status)) return "The file " + path.string() + " does not exist";
    if (std::filesystem::is_directory(status)) return path.string() + " is a folder, not a file";
    if (::access(path.c_str(), R_OK) != 0) return "The file " + path.string() + " may not be read";
    const std::string uri = TakeText(g_filename_to_uri(path.c_str(), nullptr, nullptr));
    if (const auto missing = FindMissingDecoder(uri)) {
        return "The file " + path.string() + " cannot be played, since this is not installed: " + *missing;
    }
    return std::nullopt;
}

std::optional<std::string> CheckUri(const std::string& uri) {
    const std::string path = TakeText(g_filename_from_uri(uri.c_str(), nullptr, nullptr));
    if (!path.empty()) return CheckFile(path);
    // A network is not asked: whether something answers there can change at any time.
    const std::string protocol = TakeText(gst_uri_get_protocol(uri.c_str()));
    if (gst_uri_protocol_is_supported(GST_URI_SRC, protocol.c_str()) != FALSE) return std::nullopt;
    return "Nothing that is installed can read \"" + protocol + "://\"";
}

std::optional<std::string> CheckSource(const Participant& participant) {
    const std::string who = "Participant \"" + participant.name + "\": ";
    if (participant.source.empty()) return who + "no source is given";
    const ResolvedSource resolved = ResolveSource(participant.source);
    if (resolved.kind != ResolvedSource::Kind::Uri) return std::nullopt;
    auto problem = CheckUri(resolved.uri);
    if (!problem) return std::nullopt;
    // Now in the middle of a line.
    problem->front() = g_ascii_tolower(problem->front());
    return who + *problem;
}

std::optional<std::string> CheckInstallation() {
    for (const Needed& needed : kNeeded) {
        if (IsInstalled(needed.element)) continue;
        return std::string("GStreamer's element \"") + needed.element +
               "\" is missing: install gstreamer1.0-plugins-" + needed.plugins;
    }
    return std::nullopt;
}

}  // namespace Corvanta::Engine
