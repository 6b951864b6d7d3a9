#include "room/VideoMetadataMessage.h"

#include <cmath>
#include <exception>
#include <limits>

#include <nlohmann/json.hpp>

namespace Corvanta::Room {

std::optional<VideoSourceData> ParseVideoMetadataMessage(const std::string& text) {
    try {
        const nlohmann::json message = nlohmann::json::parse(text);
        if (message.at("type").get<std::string>() != "video-metadata-message") return std::nullopt;
        const nlohmann::json& data = message.at("message").at("sourceData");
        const nlohmann::json& rate = data.at("frameRate");
        const double frameRate = rate.is_boolean() ? (rate.get<bool>() ? 1.0 : 0.0) : rate.get<double>();
        if (!(std::abs(frameRate) <= std::numeric_limits<float>::max())) return std::nullopt;
        return VideoSourceData{data.at("streamId").get<std::string>(), static_cast<float>(frameRate),
                               data.at("sourceName").get<std::string>()};
    } catch (const std::exception&) {
        // Whatever a peer sends, a message that does not read is one that says nothing.
        return std::nullopt;
    }
}

}  // namespace Corvanta::Room
