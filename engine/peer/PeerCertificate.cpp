#include "engine/peer/PeerCertificate.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>
#include <string_view>
#include <utility>

#include "engine/peer/SdpMessage.h"

namespace Corvanta::Engine {

namespace {

constexpr const char* kAttribute = "fingerprint";
constexpr std::string_view kBegin = "-----BEGIN CERTIFICATE-----";
constexpr std::string_view kEnd = "-----END CERTIFICATE-----";

constexpr std::array kDigests{
    std::pair{std::string_view("sha-256"), G_CHECKSUM_SHA256},
    std::pair{std::string_view("sha-384"), G_CHECKSUM_SHA384},
    std::pair{std::string_view("sha-512"), G_CHECKSUM_SHA512},
};

// The certificate's bytes (DER).
std::optional<std::string> BytesOf(std::string_view pem) {
    const auto begin = pem.find(kBegin);
    const auto end = pem.find(kEnd);
    if (begin == std::string_view::npos || end == std::string_view::npos || end < begin + kBegin.size())
        return std::nullopt;
    const std::string text(pem.substr(begin + kBegin.size(), end - begin - kBegin.size()));
    gsize size = 0;
    guchar* const bytes = g_base64_decode(text.c_str(), &size);
    std::string certificate(reinterpret_cast<const char*>(bytes), size);
    g_free(bytes);
    if (certificate.empty()) return std::nullopt;
    return certificate;
}

// Lower case, without what stands between the digits.
std::string DigitsOf(std::string_view text) {
    std::string digits;
    for (const char letter : text) {
        if (std::isxdigit(static_cast<unsigned char>(letter)) != 0)
            digits += static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    }
    return digits;
}

bool Fits(std::string_view fingerprint, const std::string& certificate) {
    const auto space = fingerprint.find(' ');
    if (space == std::string_view::npos) return false;
    const std::string_view name = fingerprint.substr(0, space);
    const auto digest = std::ranges::find_if(kDigests, [name](const auto& known) {
        return std::ranges::equal(known.first, name, [](char left, char right) {
            return left == std::tolower(static_cast<unsigned char>(right));
        });
    });
    if (digest == kDigests.end()) return false;
    gchar* const own = g_compute_checksum_for_data(
        digest->second, reinterpret_cast<const guchar*>(certificate.data()), certificate.size());
    const bool isSame = DigitsOf(fingerprint.substr(space + 1)) == own;
    g_free(own);
    return isSame;
}

}  // namespace

std::vector<std::string> FingerprintsOf(const std::string& sdp) {
    std::vector<std::string> found;
    const SdpMessage owned = ReadSdp(sdp);
    const GstSDPMessage* const message = owned.get();
    if (message == nullptr) return found;
    const auto add = [&found](const char* value) {
        if (value != nullptr && std::ranges::find(found, value) == found.end()) found.emplace_back(value);
    };
    for (guint place = 0;; ++place) {
        const char* const value = gst_sdp_message_get_attribute_val_n(message, kAttribute, place);
        if (value == nullptr) break;
        add(value);
    }
    for (guint line = 0; line < gst_sdp_message_medias_len(message); ++line) {
        const GstSDPMedia* const media = gst_sdp_message_get_media(message, line);
        for (guint place = 0;; ++place) {
            const char* const value = gst_sdp_media_get_attribute_val_n(media, kAttribute, place);
            if (value == nullptr) break;
            add(value);
        }
    }
    return found;
}

bool FitsCertificate(const std::vector<std::string>& fingerprints, const std::string& pem) {
    const auto certificate = BytesOf(pem);
    if (!certificate) return false;
    return std::ranges::any_of(
        fingerprints, [&](const std::string& fingerprint) { return Fits(fingerprint, *certificate); });
}

}  // namespace Corvanta::Engine
