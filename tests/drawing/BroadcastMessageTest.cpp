#include "drawing/BroadcastMessage.h"

#include <gtest/gtest.h>

#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "drawing/Line.h"
#include "drawing/Rectangle.h"
#include "drawing/ShapeReader.h"
#include "drawing/TextBox.h"
#include "tests/drawing/WireTest.h"
#include "tests/fake_platform/FakePlatform.h"

namespace Corvanta::Drawing {
namespace {

using namespace Testing;
using Shapes = std::vector<std::shared_ptr<Shape>>;
using Texts = std::vector<std::string>;

// A message from the texts of its parts.
[[nodiscard]] std::string MessageOf(const std::string& body, const std::string& streamId = R"("camera")") {
    std::string text = R"({"message":)";
    text += body;
    text += R"(,"streamId":)";
    text += streamId;
    text += R"(,"type":"draw-canvas-broadcast"})";
    return text;
}

[[nodiscard]] std::string MessageOfShapes(const Texts& shapes, bool clearCanvas = false) {
    std::string body =
        clearCanvas ? R"({"clearCanvas":true,"shapes":[)" : R"({"clearCanvas":false,"shapes":[)";
    for (const std::string& shape : shapes) {
        if (body.back() != '[') body += ',';
        body += shape;
    }
    body += "]}";
    return MessageOf(body);
}

[[nodiscard]] BroadcastMessage Opened(const std::string& text) {
    std::optional<BroadcastMessage> message = BroadcastMessage::Open(text);
    if (!message) throw std::logic_error("not a message of this type");
    return std::move(*message);
}

[[nodiscard]] std::string ThrownByBody(const std::string& body) {
    BroadcastMessage message = Opened(MessageOf(body));
    return ThrownBy([&message] {
        message.ReadBody();
        return 0;
    });
}

[[nodiscard]] Shapes ShapesOf(BroadcastMessage& message) {
    Shapes shapes;
    while (message.HasNext()) shapes.push_back(message.ReadNext());
    return shapes;
}

TEST(BroadcastMessage, IsOneLineWithItsKeysInOrder) {
    const Shapes shapes{ReadShape(nlohmann::json::parse(kRectangle)),
                        ReadShape(nlohmann::json::parse(kText))};
    EXPECT_EQ(BroadcastMessage::Write(shapes, "camera", false), MessageOfShapes({kRectangle, kText}));
    EXPECT_EQ(BroadcastMessage::Write({shapes[0]}, "camera", true), MessageOfShapes({kRectangle}, true));
    EXPECT_EQ(BroadcastMessage::Write({}, "camera", true), MessageOfShapes({}, true));
}

TEST(BroadcastMessage, LeavesTextOutsideAsciiAsItIs) {
    EXPECT_NE(BroadcastMessage::Write({}, "räum", false).find(R"("streamId":"räum")"), std::string::npos);
}

TEST(BroadcastMessage, LeavesOutAShapeThatIsNotThere) {
    const Shapes shapes{nullptr, ReadShape(nlohmann::json::parse(kLine))};
    EXPECT_EQ(BroadcastMessage::Write(shapes, "camera", false), MessageOfShapes({kLine}));
}

TEST(BroadcastMessage, IsNotWrittenWithATextThatIsNoUtf8) {
    const auto text = std::make_shared<TextBox>();
    text->text = "a\xFF";
    EXPECT_EQ(ThrownBy([&text] { return BroadcastMessage::Write({text}, "camera", false); }),
              "type_error 316: invalid UTF-8 byte at index 1: 0xFF");
}

TEST(BroadcastMessage, TellsItsStreamBeforeItsBodyIsRead) {
    EXPECT_EQ(Opened(MessageOf("7")).StreamId(), "camera");
    EXPECT_EQ(Opened(R"({"streamId":"","type":"draw-canvas-broadcast"})").StreamId(), "");
}

TEST(BroadcastMessage, HasNoShapesBeforeItsBodyIsRead) {
    BroadcastMessage message = Opened(MessageOfShapes({kLine}, true));
    EXPECT_FALSE(message.HasNext());
    EXPECT_FALSE(message.EndsPresentShapes());
    EXPECT_EQ(message.ReadNext(), nullptr);
}

TEST(BroadcastMessage, GivesItsShapesInOrder) {
    BroadcastMessage message = Opened(MessageOfShapes({kLine, kText, kRectangle}));
    message.ReadBody();
    const Shapes shapes = ShapesOf(message);
    ASSERT_EQ(shapes.size(), 3U);
    EXPECT_EQ(shapes[0]->ToJson().dump(), kLine);
    EXPECT_EQ(shapes[1]->ToJson().dump(), kText);
    EXPECT_EQ(shapes[2]->ToJson().dump(), kRectangle);
    EXPECT_EQ(message.ReadNext(), nullptr);
}

TEST(BroadcastMessage, ReadsWhatItHasWritten) {
    Texts texts(std::begin(kGoldenShapes), std::end(kGoldenShapes));
    const std::string text = MessageOfShapes(texts, true);
    BroadcastMessage message = Opened(text);
    message.ReadBody();
    EXPECT_EQ(BroadcastMessage::Write(ShapesOf(message), message.StreamId(), true), text);
}

TEST(BroadcastMessage, EndsPresentShapesWhenToldOrEmpty) {
    const std::pair<std::string, bool> bodies[] = {{R"({"clearCanvas":true,"shapes":[1]})", true},
                                                   {R"({"clearCanvas":false,"shapes":[1]})", false},
                                                   {R"({"shapes":[1]})", false},
                                                   {R"({"clearCanvas":false,"shapes":[]})", true},
                                                   {R"({"clearCanvas":true,"shapes":[]})", true},
                                                   {R"({"shapes":[]})", true}};
    for (const auto& [body, expected] : bodies) {
        BroadcastMessage message = Opened(MessageOf(body));
        message.ReadBody();
        EXPECT_EQ(message.EndsPresentShapes(), expected) << body;
    }
}

TEST(BroadcastMessage, IsNotOneOfAnotherType) {
    for (const char* const type : {R"("video-metadata-message")", R"("")", R"("Draw-canvas-broadcast")",
                                   "null", "7", "true", R"(["draw-canvas-broadcast"])", "{}"}) {
        const std::string text = std::string(R"({"type":)") + type + "}";
        EXPECT_FALSE(BroadcastMessage::Open(text).has_value()) << type;
    }
}

TEST(BroadcastMessage, RefusesWhatIsNoMessage) {
    EXPECT_EQ(ThrownBy([] { return BroadcastMessage::Open(""); }).substr(0, 15), "parse_error 101");
    EXPECT_EQ(ThrownBy([] { return BroadcastMessage::Open(R"({"type":)"); }).substr(0, 15),
              "parse_error 101");
    EXPECT_EQ(ThrownBy([] { return BroadcastMessage::Open("{}"); }),
              "out_of_range 403: key 'type' not found");
    const std::pair<const char*, const char*> others[] = {
        {"null", "null"}, {"true", "boolean"}, {"1", "number"}, {R"("type")", "string"}, {"[]", "array"}};
    for (const auto& [text, type] : others) {
        EXPECT_EQ(ThrownBy([message = text] { return BroadcastMessage::Open(message); }),
                  std::string("type_error 304: cannot use at() with ") + type);
    }
}

TEST(BroadcastMessage, RefusesBytesThatAreNoUtf8AndNumbersThatAreTooLarge) {
    EXPECT_EQ(ThrownBy([] { return BroadcastMessage::Open("{\"type\":\"a\xFF\"}"); }).substr(0, 15),
              "parse_error 101");
    EXPECT_EQ(ThrownBy([] { return BroadcastMessage::Open(R"({"type":1e999})"); }).substr(0, 16),
              "out_of_range 406");
}

TEST(BroadcastMessage, ReadsNestingOfAnyDepth) {
    constexpr size_t kDepth = 100'000;
    const std::string deep = std::string(kDepth, '[') + std::string(kDepth, ']');
    BroadcastMessage message = Opened(MessageOfShapes({deep, kLine}));
    message.ReadBody();
    EXPECT_EQ(ThrownBy([&message] { return message.ReadNext(); }),
              "type_error 304: cannot use at() with array");
    EXPECT_NE(message.ReadNext(), nullptr);
}

TEST(BroadcastMessage, RefusesAMessageWithoutAGoodStream) {
    EXPECT_EQ(ThrownBy([] { return BroadcastMessage::Open(R"({"type":"draw-canvas-broadcast"})"); }),
              "out_of_range 403: key 'streamId' not found");
    const std::pair<const char*, const char*> streams[] = {
        {"null", "null"}, {"true", "boolean"}, {"1", "number"}, {"{}", "object"}, {"[]", "array"}};
    for (const auto& [text, type] : streams) {
        EXPECT_EQ(ThrownBy([stream = text] { return BroadcastMessage::Open(MessageOf("{}", stream)); }),
                  std::string("type_error 302: type must be string, but is ") + type);
    }
}

TEST(BroadcastMessage, RefusesABodyWithoutAListOfShapes) {
    BroadcastMessage bodiless = Opened(R"({"streamId":"camera","type":"draw-canvas-broadcast"})");
    EXPECT_EQ(ThrownBy([&bodiless] {
                  bodiless.ReadBody();
                  return 0;
              }),
              "out_of_range 403: key 'message' not found");
    EXPECT_EQ(ThrownByBody("{}"), "out_of_range 403: key 'shapes' not found");
    EXPECT_EQ(ThrownByBody("null"), "type_error 304: cannot use at() with null");
    EXPECT_EQ(ThrownByBody("[]"), "type_error 304: cannot use at() with array");
    const std::pair<const char*, const char*> lists[] = {{"null", "null"},
                                                         {"true", "boolean"},
                                                         {"1", "number"},
                                                         {R"("")", "string"},
                                                         {R"({"a":[]})", "object"}};
    for (const auto& [text, type] : lists) {
        EXPECT_EQ(ThrownByBody(std::string(R"({"shapes":)") + text + "}"),
                  std::string("type_error 302: type must be array, but is ") + type);
    }
}

TEST(BroadcastMessage, RefusesAWishToClearThatIsNeitherTrueNorFalse) {
    const std::pair<const char*, const char*> wishes[] = {
        {"null", "null"}, {"1", "number"}, {R"("true")", "string"}, {"{}", "object"}, {"[]", "array"}};
    for (const auto& [text, type] : wishes) {
        for (const char* const list : {"[]", "[1]"}) {
            const std::string body = std::string(R"({"clearCanvas":)") + text + R"(,"shapes":)" + list + "}";
            EXPECT_EQ(ThrownByBody(body),
                      std::string("type_error 302: type must be boolean, but is ") + type);
        }
    }
}

TEST(BroadcastMessage, LooksAtTheListBeforeTheWishToClear) {
    EXPECT_EQ(ThrownByBody(R"({"clearCanvas":1,"shapes":2})"),
              "type_error 302: type must be array, but is number");
}

TEST(BroadcastMessage, GivesTheShapesBeforeABadOne) {
    BroadcastMessage message = Opened(MessageOfShapes({kLine, "{}", kText}));
    message.ReadBody();
    EXPECT_NE(message.ReadNext(), nullptr);
    EXPECT_EQ(ThrownBy([&message] { return message.ReadNext(); }),
              "out_of_range 403: key 'className' not found");
}

TEST(BroadcastMessage, GoesOnBehindAClassThatNobodyKnows) {
    Corvanta::Testing::Fake().Reset();
    BroadcastMessage message = Opened(MessageOfShapes({R"({"className":"Polygon","data":{}})", kLine}));
    message.ReadBody();
    EXPECT_EQ(message.ReadNext(), nullptr);
    ASSERT_TRUE(message.HasNext());
    EXPECT_NE(std::dynamic_pointer_cast<Line>(message.ReadNext()), nullptr);
    EXPECT_EQ(Corvanta::Testing::Fake().LogsOf(3), Texts{"Attempting to draw unsupported type Polygon"});
}

}  // namespace
}  // namespace Corvanta::Drawing
