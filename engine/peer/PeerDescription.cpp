#include "engine/peer/PeerDescription.h"

#include <gio/gio.h>
#include <gst/sdp/sdp.h>

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string_view>

namespace Corvanta::Engine {

namespace {

constexpr std::array<const char*, 3> kKinds = {"offer", "answer", "restart"};
// Deeper or longer texts than ours are nobody's description; JSON may escape each byte with six.
constexpr std::size_t kMaxTextBytes = 2 * kMaxDescriptionBytes;
constexpr std::uint32_t kMaxSession = 1'000'000'000;

// In the media line or, for all of them, in the session.
bool HasAttribute(const GstSDPMessage* message, const GstSDPMedia* media, const char* name) {
    return gst_sdp_media_get_attribute_val(media, name) != nullptr ||
           gst_sdp_message_get_attribute_val(message, name) != nullptr;
}

bool IsUsableSdp(const std::string& sdp) {
    if (sdp.empty() || sdp.size() > kMaxDescriptionBytes || sdp.find('\0') != std::string::npos) return false;
    GstSDPMessage* message = nullptr;
    if (gst_sdp_message_new_from_text(sdp.c_str(), &message) != GST_SDP_OK) return false;
    const guint lines = gst_sdp_message_medias_len(message);
    bool isUsable = lines > 0 && lines <= kMaxMediaLines;
    for (guint line = 0; isUsable && line < lines; ++line) {
        const GstSDPMedia* media = gst_sdp_message_get_media(message, line);
        for (const char* name : {"ice-ufrag", "ice-pwd", "fingerprint", "setup"}) {
            isUsable = isUsable && HasAttribute(message, media, name);
        }
    }
    gst_sdp_message_free(message);
    return isUsable;
}

}  // namespace

std::string WriteDescription(const PeerDescription& description) {
    nlohmann::json object = {{"type", kKinds[static_cast<std::size_t>(description.kind)]},
                             {"session", description.session}};
    if (description.kind != DescriptionKind::Restart) object["sdp"] = description.sdp;
    return object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::optional<PeerDescription> ReadDescription(const std::string& text) {
    if (text.size() > kMaxTextBytes) return std::nullopt;
    // What is nested deeper is left out, so that no text makes a deep tree.
    const nlohmann::json object = nlohmann::json::parse(
        text, [](int depth, nlohmann::json::parse_event_t, nlohmann::json&) { return depth <= 4; }, false);
    if (!object.is_object()) return std::nullopt;
    const auto type = object.find("type");
    if (type == object.end() || !type->is_string()) return std::nullopt;
    const auto kind = std::find(kKinds.begin(), kKinds.end(), type->get_ref<const std::string&>());
    if (kind == kKinds.end()) return std::nullopt;

    PeerDescription description;
    description.kind = static_cast<DescriptionKind>(kind - kKinds.begin());
    if (const auto session = object.find("session"); session != object.end()) {
        if (!session->is_number_unsigned() || session->get<std::uint64_t>() > kMaxSession)
            return std::nullopt;
        description.session = session->get<std::uint32_t>();
    }
    if (description.kind == DescriptionKind::Restart) return description;
    const auto sdp = object.find("sdp");
    if (sdp == object.end() || !sdp->is_string()) return std::nullopt;
    description.sdp = sdp->get<std::string>();
    if (!IsUsableSdp(description.sdp)) return std::nullopt;
    return description;
}

bool IsUsableCandidate(std::uint32_t mediaLine, const std::string& text) {
    constexpr std::string_view kPrefix = "candidate:";
    if (mediaLine >= kMaxMediaLines || text.size() > kMaxCandidateBytes || !text.starts_with(kPrefix)) {
        return false;
    }
    if (std::any_of(text.begin(), text.end(), [](char c) { return c < ' ' || c > '~'; })) return false;
    std::istringstream words(text);
    std::string foundation, protocol, address, typeWord, type;
    unsigned component = 0;
    std::uint64_t priority = 0;
    unsigned port = 0;
    words >> foundation >> component >> protocol >> priority >> address >> port >> typeWord >> type;
    if (!words || typeWord != "typ" || component < 1 || component > 2 || port > 65535) return false;
    if (g_ascii_strcasecmp(protocol.c_str(), "udp") != 0) return false;
    return g_hostname_is_ip_address(address.c_str()) != FALSE;
}

}  // namespace Corvanta::Engine
