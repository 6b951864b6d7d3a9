#include "room/VideoMetadataMessage.h"

#include <nlohmann/json.hpp>

namespace Corvanta::Room {

std::optional<VideoSourceData> ParseVideoMetadataMessage(const std::string& text) {
    try {
        const nlohmann::json message = nlohmann::json::parse(text);
        if (message.at("type").get<std::string>() != "video-metadata-message") return std::nullopt;
        const nlohmann::json& data = message.at("message").at("sourceData");
        return VideoSourceData{data.at("streamId").get<std::string>(), data.at("frameRate").get<float>(),
                               data.at("sourceName").get<std::string>()};
    } catch (const nlohmann::json::exception&) {
        // Whatever a peer sends, a message that does not read is one that says nothing.
        return std::nullopt;
    }
}

}  // namespace Corvanta::Room
