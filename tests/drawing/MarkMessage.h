// What another participant draws, as it comes over the data channel: plain rectangles, which can be found
// again as pixels.
#pragma once

#include <SDL.h>

#include <cstdint>
#include <initializer_list>
#include <string>

namespace Corvanta::Testing {

// A rectangle of one opaque colour, which is 0xAARRGGBB, as a message carries it. place: in canvas units.
inline std::string MarkJson(const std::string& id, const SDL_Rect& place, uint32_t argb) {
    std::string color = "\"rgba(";
    for (const uint32_t shift : {16U, 8U, 0U}) color += std::to_string(argb >> shift & 0xFFU) += ", ";
    color += "1.000000)\"";
    std::string json = R"({"className":"Rectangle","controlId":")";
    json += id;
    json += R"(","data":{"fillColor":)";
    json += color;
    json += R"(,"strokeWidth":0,"strokeColor":)";
    json += color;
    json += R"(,"x":)" + std::to_string(place.x);
    json += R"(,"y":)" + std::to_string(place.y);
    json += R"(,"width":)" + std::to_string(place.w);
    json += R"(,"height":)" + std::to_string(place.h);
    json += "}}";
    return json;
}

// Such shapes, drawn on that stream. clearCanvas: they take the place of all that the sender has there.
inline std::string MarkMessage(const std::string& streamId, std::initializer_list<std::string> shapes,
                               bool clearCanvas = false) {
    std::string list;
    for (const std::string& shape : shapes) {
        if (!list.empty()) list += ',';
        list += shape;
    }
    std::string text = R"({"type":"draw-canvas-broadcast","streamId":")";
    text += streamId;
    text += R"(","message":{"clearCanvas":)";
    text += clearCanvas ? "true" : "false";
    text += R"(,"shapes":[)" + list;
    text += "]}}";
    return text;
}

}  // namespace Corvanta::Testing
