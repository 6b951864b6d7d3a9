// The wire form of each shape, byte for byte, written and read.
#include <SDL_ttf.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "drawing/Ellipse.h"
#include "drawing/ErasedLinePath.h"
#include "drawing/Line.h"
#include "drawing/LinePath.h"
#include "drawing/Rectangle.h"
#include "drawing/ShapeReader.h"
#include "drawing/TextBox.h"
#include "tests/drawing/WireTest.h"

namespace Corvanta::Drawing {
namespace {

using namespace Testing;
using nlohmann::json;

// "data" of a golden text, with one field put in place of its own.
[[nodiscard]] json DataOf(const char* golden) {
    return json::parse(golden).at("data");
}

[[nodiscard]] json DataWith(const char* golden, const char* key, const char* value) {
    json data = DataOf(golden);
    data[key] = json::parse(value);
    return data;
}

template <typename Class>
[[nodiscard]] std::shared_ptr<Class> ReadAs(const char* text) {
    return std::dynamic_pointer_cast<Class>(ReadShape(json::parse(text)));
}

TEST(ShapeWire, WritesARectangle) {
    Rectangle rectangle;
    rectangle.x = 640;
    rectangle.y = 360.25;
    rectangle.width = -100;
    rectangle.height = -20.5;
    rectangle.fillColor = Color(0, 128, 255, 128);
    rectangle.strokeColor = Color(255, 0, 0, 255);
    rectangle.strokeWidth = 4;
    rectangle.controlId = "abc";
    EXPECT_EQ(rectangle.ToJson().dump(), kRectangle);
}

TEST(ShapeWire, ReadsARectangle) {
    const auto rectangle = ReadAs<Rectangle>(kRectangle);
    ASSERT_NE(rectangle, nullptr);
    EXPECT_EQ(rectangle->x, 640);
    EXPECT_EQ(rectangle->y, 360.25);
    EXPECT_EQ(rectangle->width, -100);
    EXPECT_EQ(rectangle->height, -20.5);
    EXPECT_EQ(rectangle->fillColor, Color(0, 128, 255, 128));
    EXPECT_EQ(rectangle->strokeColor, Color(255, 0, 0, 255));
    EXPECT_EQ(rectangle->strokeWidth, 4U);
    EXPECT_EQ(rectangle->controlId, "abc");
    EXPECT_FALSE(rectangle->normalized);
}

TEST(ShapeWire, WritesAnEllipse) {
    Ellipse ellipse;
    ellipse.x = -3;
    ellipse.width = 0.125;
    ellipse.height = 20;
    ellipse.fillColor = Color(0, 0, 0, 0);
    ellipse.strokeColor = Color(1, 2, 3, 4);
    ellipse.strokeWidth = 70'000;
    ellipse.controlId = "abc";
    EXPECT_EQ(ellipse.ToJson().dump(), kEllipse);
}

TEST(ShapeWire, ReadsAnEllipse) {
    const auto ellipse = ReadAs<Ellipse>(kEllipse);
    ASSERT_NE(ellipse, nullptr);
    EXPECT_EQ(ellipse->x, -3);
    EXPECT_EQ(ellipse->y, 0);
    EXPECT_EQ(ellipse->width, 0.125);
    EXPECT_EQ(ellipse->height, 20);
    EXPECT_EQ(ellipse->fillColor, Color(0, 0, 0, 0));
    EXPECT_EQ(ellipse->strokeColor, Color(1, 2, 3, 4));
    EXPECT_EQ(ellipse->strokeWidth, 70'000U);
    EXPECT_EQ(ellipse->controlId, "abc");
}

[[nodiscard]] std::string WrittenLine(uint32_t dash, bool arrow) {
    Line line;
    line.x1 = 1;
    line.y1 = 2;
    line.x2 = 3.5;
    line.y2 = -4;
    line.color = Color(9, 8, 7, 255);
    line.strokeWidth = 5;
    line.dash = dash;
    line.arrow = arrow;
    line.controlId = "abc";
    return line.ToJson().dump();
}

TEST(ShapeWire, WritesALineWithItsArrowAndItsDash) {
    EXPECT_EQ(WrittenLine(0, false), kLine);
    EXPECT_EQ(WrittenLine(0, true), kArrow);
    EXPECT_EQ(WrittenLine(40, false), kDashedLine);
}

TEST(ShapeWire, WritesTheGapOfADashIn32Bits) {
    EXPECT_NE(WrittenLine(3'000'000'000U, false).find(R"("dash":[3000000000,1705032704])"),
              std::string::npos);
}

TEST(ShapeWire, ReadsALine) {
    const auto line = ReadAs<Line>(kLine);
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->x1, 1);
    EXPECT_EQ(line->y1, 2);
    EXPECT_EQ(line->x2, 3.5);
    EXPECT_EQ(line->y2, -4);
    EXPECT_EQ(line->color, Color(9, 8, 7, 255));
    EXPECT_EQ(line->strokeWidth, 5U);
    EXPECT_EQ(line->dash, 0U);
    EXPECT_FALSE(line->arrow);
    EXPECT_EQ(line->controlId, "abc");
    EXPECT_TRUE(ReadAs<Line>(kArrow)->arrow);
    EXPECT_EQ(ReadAs<Line>(kDashedLine)->dash, 40U);
}

TEST(ShapeWire, TakesAnyShapeAtTheEndOfALineForAnArrow) {
    for (const char* const caps : {R"([null,"circle"])", R"([null,""])", "[null,0]", "[null,false]",
                                   "[[],[],null]", R"(["arrow",{}])"}) {
        EXPECT_TRUE(Line(DataWith(kLine, "endCapShapes", caps)).arrow) << caps;
    }
    for (const char* const caps : {"[null,null]", R"(["arrow",null])", R"(["arrow"])", "[]", "null", "true",
                                   "2", R"("arrow")", "{}", R"({"end":"arrow"})"}) {
        EXPECT_FALSE(Line(DataWith(kArrow, "endCapShapes", caps)).arrow) << caps;
    }
}

TEST(ShapeWire, ReadsOfADashItsFirstNumber) {
    const std::pair<const char*, uint32_t> dashes[] = {
        {"[10,30]", 10}, {"[10]", 10}, {"[10.9,null]", 10}, {"[true]", 1}, {"[-1,0]", 0xFFFFFFFFU},
        {"null", 0},     {"[]", 0},    {"{}", 0},           {"[0,5]", 0},  {"[4294967297]", 1},
    };
    for (const auto& [text, expected] : dashes) {
        EXPECT_EQ(Line(DataWith(kDashedLine, "dash", text)).dash, expected) << text;
    }
}

TEST(ShapeWire, WritesAsGapTwiceTheDashWhateverCame) {
    Line line(DataWith(kDashedLine, "dash", "[10,30]"));
    EXPECT_EQ(line.ToJson()["data"]["dash"].dump(), "[10,20]");
}

TEST(ShapeWire, WritesALinePath) {
    LinePath path;
    path.points = {{10, 20}, {10.5, -20.25}, {1e308, 0.1}};
    path.color = Color(255, 0, 0, 128);
    path.strokeWidth = 8;
    path.controlId = "abc";
    EXPECT_EQ(path.ToJson().dump(), kLinePath);
}

TEST(ShapeWire, ReadsALinePath) {
    const auto path = ReadAs<LinePath>(kLinePath);
    ASSERT_NE(path, nullptr);
    EXPECT_EQ(path->points, (std::vector<LinePath::Point>{{10, 20}, {10.5, -20.25}, {1e308, 0.1}}));
    EXPECT_EQ(path->color, Color(255, 0, 0, 128));
    EXPECT_EQ(path->strokeWidth, 8U);
    EXPECT_EQ(path->controlId, "abc");
    EXPECT_TRUE(path->normalizedPoints.empty());
    EXPECT_EQ(std::dynamic_pointer_cast<ErasedLinePath>(ReadShape(json::parse(kLinePath))), nullptr);
}

TEST(ShapeWire, ReadsAPathWithoutPoints) {
    const LinePath path(DataWith(kLinePath, "pointCoordinatePairs", "[]"));
    EXPECT_TRUE(path.points.empty());
    EXPECT_EQ(path.strokeWidth, 8U);
}

TEST(ShapeWire, IgnoresWhatFollowsTwoNumbersOfAPoint) {
    const LinePath path(DataWith(kLinePath, "pointCoordinatePairs", R"([[1,2,"three"],[4,5,null,6]])"));
    EXPECT_EQ(path.points, (std::vector<LinePath::Point>{{1, 2}, {4, 5}}));
}

TEST(ShapeWire, WritesAnEraserAsAPathInBlack) {
    ErasedLinePath eraser;
    eraser.points = {{10, 20}};
    eraser.strokeWidth = 30;
    eraser.color = Color(1, 2, 3, 4);
    eraser.controlId = "abc";
    EXPECT_EQ(eraser.ToJson().dump(), kErasedLinePath);
    EXPECT_EQ(eraser.color, Color());
}

TEST(ShapeWire, ReadsAnEraserOfAnyColour) {
    for (const char* const color : {R"("#000")", R"j("rgba(255, 0, 0, 1.0)")j", R"("")", R"("nonsense")"}) {
        const ErasedLinePath eraser(DataWith(kErasedLinePath, "pointColor", color));
        EXPECT_EQ(eraser.color, Color(0, 0, 0, 0)) << color;
        EXPECT_EQ(eraser.points, (std::vector<LinePath::Point>{{10, 20}}));
        EXPECT_EQ(eraser.strokeWidth, 30U);
    }
    EXPECT_NE(ReadAs<ErasedLinePath>(kErasedLinePath), nullptr);
}

TEST(ShapeWire, WritesAText) {
    TextBox box;
    box.x = 5;
    box.y = 6.5;
    box.text = "one\ntwo \"ü\"";
    box.color = Color(255, 255, 255, 255);
    box.fontStyle = TTF_STYLE_BOLD | TTF_STYLE_ITALIC | TTF_STYLE_UNDERLINE;
    box.fontSize = 23.5;
    box.fontFamily = "Arial";
    box.controlId = "abc";
    EXPECT_EQ(box.ToJson().dump(), kText);
}

TEST(ShapeWire, ReadsAText) {
    const auto box = ReadAs<TextBox>(kText);
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->x, 5);
    EXPECT_EQ(box->y, 6.5);
    EXPECT_EQ(box->text, "one\ntwo \"ü\"");
    EXPECT_EQ(box->color, Color(255, 255, 255, 255));
    EXPECT_EQ(box->fontStyle, TTF_STYLE_BOLD | TTF_STYLE_ITALIC);
    EXPECT_EQ(box->fontSize, 24.0);
    EXPECT_EQ(box->fontFamily, "Arial");
    EXPECT_EQ(box->state, TextBox::State::Finished);
    EXPECT_EQ(box->strokeWidth, 0U);
    EXPECT_EQ(box->controlId, "abc");
}

TEST(ShapeWire, KeepsEveryByteOfATextThroughTheTrip) {
    std::string bytes;
    for (char byte = 0; byte < 127; ++byte) bytes += byte;
    bytes += "\x7F\u00FC\u20AC\U0001F600";
    TextBox box;
    box.text = bytes;
    box.fontSize = 24;
    box.controlId = bytes;
    const auto read = std::dynamic_pointer_cast<TextBox>(ReadShape(json::parse(box.ToJson().dump())));
    EXPECT_EQ(read->text, bytes);
    EXPECT_EQ(read->controlId, bytes);
}

TEST(ShapeWire, LeavesTheStrokeWidthOfATextUnread) {
    EXPECT_EQ(TextBox(DataWith(kText, "strokeWidth", "7")).strokeWidth, 0U);
    EXPECT_EQ(TextBox(DataWith(kText, "strokeWidth", R"("wide")")).strokeWidth, 0U);
}

TEST(ShapeWire, WritesWhatItHasReadByteForByte) {
    for (const char* const golden : kGoldenShapes) {
        EXPECT_EQ(ReadShape(json::parse(golden))->ToJson().dump(), golden);
    }
}

TEST(ShapeWire, NeedsOfOtherFieldsNone) {
    const std::pair<const char*, std::vector<const char*>> unread[] = {
        {kLine, {"capStyle"}},
        {kLinePath, {"order", "tailSize", "smooth"}},
        {kText, {"strokeWidth", "forcedWidth", "forcedHeight", "v"}}};
    for (const auto& [golden, keys] : unread) {
        json shape = json::parse(golden);
        for (const char* const key : keys) shape["data"].erase(key);
        shape.erase("id");
        EXPECT_EQ(ReadShape(std::move(shape))->ToJson().dump(), golden);
    }
}

TEST(ShapeWire, KeepsEveryAlphaThroughTheTrip) {
    for (int alpha = 0; alpha < 256; ++alpha) {
        Rectangle rectangle;
        rectangle.fillColor = Color(1, 2, 3, static_cast<uint8_t>(alpha));
        rectangle.strokeColor = Color(4, 5, 6, static_cast<uint8_t>(255 - alpha));
        const json written = rectangle.ToJson();
        const Rectangle read(written.at("data"));
        EXPECT_EQ(read.fillColor, rectangle.fillColor);
        EXPECT_EQ(read.strokeColor, rectangle.strokeColor);
    }
}

TEST(ShapeWire, ReadsEveryKindOfNumberIntoAPosition) {
    const std::pair<const char*, double> numbers[] = {
        {"5", 5},           {"-7", -7},
        {"0.1", 0.1},       {"1e308", 1e308},
        {"-1e308", -1e308}, {"5e-324", 5e-324},
        {"1e-999", 0},      {"18446744073709551615", 18446744073709551615.0},
        {"1e2", 100},       {"-9223372036854775808", -9223372036854775808.0}};
    for (const auto& [text, expected] : numbers) {
        const Rectangle rectangle(DataWith(kRectangle, "x", text));
        EXPECT_EQ(rectangle.x, expected) << text;
    }
    EXPECT_TRUE(std::signbit(Rectangle(DataWith(kRectangle, "x", "-0.0")).x));
}

TEST(ShapeWire, KeepsEveryDoubleThroughTheTrip) {
    std::mt19937_64 random(7);
    for (int turn = 0; turn < 1000; ++turn) {
        const auto bits = random();
        double number = 0;
        std::memcpy(&number, &bits, sizeof(number));
        if (!std::isfinite(number)) continue;
        Rectangle rectangle;
        rectangle.x = number;
        const Rectangle read(json::parse(rectangle.ToJson().dump()).at("data"));
        EXPECT_EQ(read.x, number);
    }
}

TEST(ShapeWire, CutsAStrokeWidthToThe32LowBitsOfItsWholePart) {
    const std::pair<const char*, uint32_t> numbers[] = {
        {"0", 0},
        {"255", 255},
        {"70000", 70'000},
        {"4294967295", 0xFFFFFFFFU},
        {"4294967298", 2},
        {"18446744073709551615", 0xFFFFFFFFU},
        {"2.999", 2},
        {"-0.9", 0},
        {"-1", 0xFFFFFFFFU},
        {"-2.5", 0xFFFFFFFEU},
        {"4294967298.5", 2},
        {"3000000000.5", 3000000000U},
        {"1e19", 0x89E80000U},
        {"1e20", 1661992960U},
        {"-1e20", 2632974336U},
        {"1e308", 0},
        {"true", 1},
        {"false", 0},
    };
    for (const auto& [text, expected] : numbers) {
        EXPECT_EQ(Rectangle(DataWith(kRectangle, "strokeWidth", text)).strokeWidth, expected) << text;
        EXPECT_EQ(Ellipse(DataWith(kEllipse, "strokeWidth", text)).strokeWidth, expected) << text;
        EXPECT_EQ(Line(DataWith(kLine, "strokeWidth", text)).strokeWidth, expected) << text;
        EXPECT_EQ(LinePath(DataWith(kLinePath, "pointSize", text)).strokeWidth, expected) << text;
    }
}

TEST(ShapeWire, WritesANumberThatNoJsonHasAsNull) {
    Rectangle rectangle;
    rectangle.x = std::numeric_limits<double>::quiet_NaN();
    rectangle.y = std::numeric_limits<double>::infinity();
    const std::string written = rectangle.ToJson().dump();
    EXPECT_NE(written.find(R"("x":null,"y":null)"), std::string::npos);
}

}  // namespace
}  // namespace Corvanta::Drawing
