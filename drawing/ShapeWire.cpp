// The wire form of the shapes: each one's fields under "data", in an envelope that names its class and
// itself. Readers look at the fields in a fixed order, which decides what is thrown when several are bad.
#include <utility>

#include <nlohmann/json.hpp>

#include "drawing/Color.h"
#include "drawing/Ellipse.h"
#include "drawing/ErasedLinePath.h"
#include "drawing/FontText.h"
#include "drawing/Line.h"
#include "drawing/LinePath.h"
#include "drawing/Rectangle.h"
#include "drawing/TextBox.h"
#include "drawing/WireValues.h"

namespace Corvanta::Drawing {

namespace {

using nlohmann::json;

// An eraser's colour means nothing to its readers.
constexpr char kEraserColor[] = "#000";

// The name stands there twice: other clients know it under "id".
[[nodiscard]] json Envelope(const char* className, const Shape& shape, json&& data) {
    json envelope = json::object();
    envelope["className"] = className;
    envelope["data"] = std::move(data);
    envelope["id"] = shape.controlId;
    envelope["controlId"] = shape.controlId;
    return envelope;
}

[[nodiscard]] Color ReadColor(const json& value) {
    return Color::Parse(ReadText(value));
}

// Rectangle and Ellipse have the same fields.
template <typename Box>
void ReadBox(Box& box, const json& data) {
    box.x = data.at("x").get<double>();
    box.y = data.at("y").get<double>();
    box.width = data.at("width").get<double>();
    box.height = data.at("height").get<double>();
    box.fillColor = ReadColor(data.at("fillColor"));
    box.strokeColor = ReadColor(data.at("strokeColor"));
    box.strokeWidth = ReadUnsigned(data.at("strokeWidth"));
}

template <typename Box>
[[nodiscard]] json WriteBox(const Box& box) {
    json data = json::object();
    data["x"] = box.x;
    data["y"] = box.y;
    data["width"] = box.width;
    data["height"] = box.height;
    data["fillColor"] = box.fillColor.ToRgbaString();
    data["strokeColor"] = box.strokeColor.ToRgbaString();
    data["strokeWidth"] = box.strokeWidth;
    return data;
}

// Other clients may end a line with any shape; here each is an arrow head.
[[nodiscard]] bool ReadArrow(const json& endCapShapes) {
    return endCapShapes.size() > 1 && !ElementOf(endCapShapes, 1).is_null();
}

// The gap that comes second is not read: here it is always twice the dash.
[[nodiscard]] uint32_t ReadDash(const json& dash) {
    return dash.empty() ? 0 : ReadUnsigned(ElementOf(dash, 0));
}

[[nodiscard]] json WriteDash(uint32_t dash) {
    if (dash == 0) return nullptr;
    return json::array({dash, 2 * dash});
}

[[nodiscard]] json WritePoints(const std::vector<LinePath::Point>& points) {
    json::array_t pairs;
    pairs.reserve(points.size());
    for (const auto& [x, y] : points) {
        json::array_t pair;
        pair.reserve(2);
        pair.emplace_back(x);
        pair.emplace_back(y);
        pairs.emplace_back(std::move(pair));
    }
    return pairs;
}

}  // namespace

Rectangle::Rectangle(const json& data) {
    ReadBox(*this, data);
}

json Rectangle::ToJson() {
    return Envelope("Rectangle", *this, WriteBox(*this));
}

Ellipse::Ellipse(const json& data) {
    ReadBox(*this, data);
}

json Ellipse::ToJson() {
    return Envelope("Ellipse", *this, WriteBox(*this));
}

Line::Line(const json& data) {
    x1 = data.at("x1").get<double>();
    x2 = data.at("x2").get<double>();
    y1 = data.at("y1").get<double>();
    y2 = data.at("y2").get<double>();
    color = ReadColor(data.at("color"));
    arrow = ReadArrow(data.at("endCapShapes"));
    dash = ReadDash(data.at("dash"));
    strokeWidth = ReadUnsigned(data.at("strokeWidth"));
}

json Line::ToJson() {
    json data = json::object();
    data["x1"] = x1;
    data["y1"] = y1;
    data["x2"] = x2;
    data["y2"] = y2;
    data["strokeWidth"] = strokeWidth;
    data["color"] = color.ToRgbaString();
    data["capStyle"] = "round";
    data["dash"] = WriteDash(dash);
    data["endCapShapes"] = json::array({nullptr, arrow ? json("arrow") : json()});
    return Envelope("Line", *this, std::move(data));
}

LinePath::LinePath(const json& data) {
    color = ReadColor(data.at("pointColor"));
    const json& pairs = data.at("pointCoordinatePairs");
    RequireArray(pairs);
    points.reserve(pairs.size());
    for (const json& pair : pairs) {
        const auto x = ElementOf(pair, 0).get<double>();
        points.emplace_back(x, ElementOf(pair, 1).get<double>());
    }
    strokeWidth = ReadUnsigned(data.at("pointSize"));
}

json LinePath::ToJson() {
    json data = json::object();
    // How other clients smooth a path; here it is always done so.
    data["order"] = 3;
    data["tailSize"] = 3;
    data["smooth"] = true;
    data["pointCoordinatePairs"] = WritePoints(points);
    data["pointSize"] = strokeWidth;
    data["pointColor"] = color.ToRgbaString();
    return Envelope("LinePath", *this, std::move(data));
}

ErasedLinePath::ErasedLinePath(const json& data) : LinePath(data) {
    color = Color(0, 0, 0, 0);
}

json ErasedLinePath::ToJson() {
    const std::scoped_lock lock(colorMutex_);
    color = Color();
    json written = LinePath::ToJson();
    written["className"] = "ErasedLinePath";
    written["data"]["pointColor"] = kEraserColor;
    return written;
}

TextBox::TextBox(const json& data) {
    x = data.at("x").get<double>();
    y = data.at("y").get<double>();
    text = ReadText(data.at("text"));
    color = ReadColor(data.at("color"));
    FontText font = ParseFontText(ReadText(data.at("font")));
    fontStyle = font.style;
    fontSize = font.size;
    fontFamily = std::move(font.family);
}

json TextBox::ToJson() {
    json data = json::object();
    data["x"] = x;
    data["y"] = y;
    data["text"] = text;
    data["color"] = color.ToRgbaString();
    data["strokeWidth"] = strokeWidth;
    data["font"] = WriteFontText({fontStyle, fontSize, fontFamily});
    // Other clients may force a size on a text; no text from here has one.
    data["forcedWidth"] = 0;
    data["forcedHeight"] = 0;
    data["v"] = 1;
    return Envelope("Text", *this, std::move(data));
}

}  // namespace Corvanta::Drawing
