#include "engine/peer/PeerDescription.h"

#include <gio/gio.h>

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string_view>

#include "engine/peer/SdpMessage.h"
#include "engine/webrtc/GstSupport.h"

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

// Whether it is a numeric address, and one of those that are tried.
bool IsReached(const std::string& address, Reach reach) {
    GInetAddress* const parsed = g_inet_address_new_from_string(address.c_str());
    if (parsed == nullptr) return false;
    const bool isLoopback = g_inet_address_get_is_loopback(parsed) != FALSE;
    g_object_unref(parsed);
    return isLoopback || reach == Reach::AllAddresses;
}

// Null for one that cannot be used.
SdpMessage ReadUsableSdp(const std::string& sdp) {
    SdpMessage none(nullptr, gst_sdp_message_free);
    if (sdp.size() > kMaxDescriptionBytes || sdp.find('\0') != std::string::npos) return none;
    SdpMessage message = ReadSdp(sdp);
    if (!message) return none;
    const guint lines = gst_sdp_message_medias_len(message.get());
    if (lines == 0 || lines > kMaxMediaLines) return none;
    for (guint line = 0; line < lines; ++line) {
        const GstSDPMedia* media = gst_sdp_message_get_media(message.get(), line);
        for (const char* name : {"ice-ufrag", "ice-pwd", "fingerprint", "setup"}) {
            if (!HasAttribute(message.get(), media, name)) return none;
        }
    }
    return message;
}

// Counts the candidates and takes out those that may not be handed on; whether there were any.
bool SiftCandidates(GstSDPMessage* message, Reach reach, unsigned& kept) {
    bool isSifted = false;
    for (guint line = 0; line < gst_sdp_message_medias_len(message); ++line) {
        auto* const media = const_cast<GstSDPMedia*>(gst_sdp_message_get_media(message, line));
        for (guint index = gst_sdp_media_attributes_len(media); index-- > 0;) {
            const GstSDPAttribute* attribute = gst_sdp_media_get_attribute(media, index);
            if (std::string_view(attribute->key) != "candidate") continue;
            std::string text = "candidate:";
            if (attribute->value != nullptr) text += attribute->value;
            if (kept < kMaxCandidates && IsUsableCandidate(line, text, reach)) {
                ++kept;
            } else {
                gst_sdp_media_remove_attribute(media, index);
                isSifted = true;
            }
        }
    }
    return isSifted;
}

}  // namespace

std::string WriteDescription(const PeerDescription& description) {
    nlohmann::json object = {{"type", kKinds[static_cast<std::size_t>(description.kind)]},
                             {"session", description.session}};
    if (description.kind != DescriptionKind::Restart) object["sdp"] = description.sdp;
    return object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::optional<PeerDescription> ReadDescription(const std::string& text, Reach reach) {
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
    const SdpMessage message = ReadUsableSdp(description.sdp);
    if (!message) return std::nullopt;
    if (SiftCandidates(message.get(), reach, description.candidates))
        description.sdp = TakeText(gst_sdp_message_as_text(message.get()));
    return description;
}

bool IsUsableCandidate(std::uint32_t mediaLine, const std::string& text, Reach reach) {
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
    return IsReached(address, reach);
}

}  // namespace Corvanta::Engine
