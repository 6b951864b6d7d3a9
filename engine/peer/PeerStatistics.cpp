#include "engine/peer/PeerStatistics.h"

#include <gst/webrtc/webrtc.h>

#include <algorithm>
#include <cmath>
#include <string_view>

namespace Corvanta::Engine {

namespace {

constexpr double kMsPerSecond = 1000;
constexpr double kBitsPerByte = 8;

// Counters come as 32 or 64 bits, signed or not, by the version of the element.
double Number(const GstStructure* structure, const char* name) {
    const GValue* value = gst_structure_get_value(structure, name);
    if (value == nullptr) return 0;
    GValue number = G_VALUE_INIT;
    g_value_init(&number, G_TYPE_DOUBLE);
    const bool isNumber = g_value_transform(value, &number) != FALSE;
    const double result = isNumber ? g_value_get_double(&number) : 0;
    g_value_unset(&number);
    return std::isfinite(result) ? result : 0;
}

std::uint64_t Count(const GstStructure* structure, const char* name) {
    return static_cast<std::uint64_t>(std::max(Number(structure, name), 0.0));
}

void AddCodec(const GstStructure* structure, PeerReport& report) {
    const char* text = gst_structure_get_string(structure, "mime-type");
    const std::string_view type = text != nullptr ? text : "";
    if (type.starts_with("video/")) report.videoCodec = type.substr(6);
}

void AddRemoteInbound(const GstStructure* structure, PeerReport& report) {
    if (gst_structure_has_field(structure, "round-trip-time") != FALSE) {
        const double roundTrip = Number(structure, "round-trip-time") * kMsPerSecond;
        // Zero: the peer has not heard of this side's clock yet.
        if (roundTrip > 0) report.roundTripMs = std::max(report.roundTripMs.value_or(0), roundTrip);
    }
    const double share = std::clamp(Number(structure, "fraction-lost"), 0.0, 1.0);
    report.remoteLossShare = std::max(report.remoteLossShare.value_or(0), share);
}

gboolean AddEntry(GQuark, const GValue* value, gpointer data) {
    auto& report = *static_cast<PeerReport*>(data);
    if (!GST_VALUE_HOLDS_STRUCTURE(value)) return TRUE;
    const GstStructure* structure = gst_value_get_structure(value);
    GstWebRTCStatsType type{};
    if (gst_structure_get(structure, "type", GST_TYPE_WEBRTC_STATS_TYPE, &type, nullptr) == FALSE)
        return TRUE;
    switch (type) {
        case GST_WEBRTC_STATS_INBOUND_RTP:
            report.bytesReceived += Count(structure, "bytes-received");
            report.packetsReceived += Count(structure, "packets-received");
            report.packetsLost += static_cast<std::int64_t>(Number(structure, "packets-lost"));
            report.jitterMs = std::max(report.jitterMs, Number(structure, "jitter") * kMsPerSecond);
            break;
        case GST_WEBRTC_STATS_OUTBOUND_RTP: report.bytesSent += Count(structure, "bytes-sent"); break;
        case GST_WEBRTC_STATS_REMOTE_INBOUND_RTP: AddRemoteInbound(structure, report); break;
        case GST_WEBRTC_STATS_CODEC: AddCodec(structure, report); break;
        default: break;
    }
    return TRUE;
}

}  // namespace

PeerReport ReadReport(const GstStructure* stats) {
    PeerReport report;
    if (stats != nullptr) gst_structure_foreach(stats, AddEntry, &report);
    return report;
}

PeerStatistics StatisticsRates::Add(const PeerReport& report, Clock::time_point now) {
    PeerStatistics statistics;
    statistics.jitterMs = report.jitterMs;
    if (report.roundTripMs) lastRoundTripMs = report.roundTripMs;
    statistics.roundTripMs = lastRoundTripMs;
    statistics.remoteLossShare = report.remoteLossShare;
    statistics.width = report.width;
    statistics.height = report.height;
    statistics.videoCodec = report.videoCodec;
    const double seconds = std::chrono::duration<double>(now - lastTime).count();
    const bool isContinued = last && report.bytesSent >= last->bytesSent &&
                             report.bytesReceived >= last->bytesReceived && report.pictures >= last->pictures;
    if (isContinued && seconds > 0) {
        statistics.uploadRate =
            static_cast<double>(report.bytesSent - last->bytesSent) * kBitsPerByte / seconds;
        statistics.downloadRate =
            static_cast<double>(report.bytesReceived - last->bytesReceived) * kBitsPerByte / seconds;
        statistics.frameRate = static_cast<double>(report.pictures - last->pictures) / seconds;
        const auto lost =
            static_cast<double>(std::max<std::int64_t>(report.packetsLost - last->packetsLost, 0));
        const auto received =
            static_cast<double>(report.packetsReceived) - static_cast<double>(last->packetsReceived);
        if (lost + received > 0) statistics.lossShare = lost / (lost + std::max(received, 0.0));
    }
    last = report;
    lastTime = now;
    return statistics;
}

}  // namespace Corvanta::Engine
