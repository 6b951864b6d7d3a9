#include "engine/embedded/ScriptedShapes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace Corvanta::Engine {
namespace {

using nlohmann::json;
using ::testing::ElementsAre;

constexpr std::size_t kManyKinds = 24;

// The first shape of each class.
std::map<std::string, json> FirstOfEachClass() {
    std::mt19937 random;
    std::map<std::string, json> first;
    for (std::size_t kind = 0; kind < kManyKinds; ++kind) {
        const json shape = MakeScriptedShape(kind, kind, random);
        first.emplace(shape.at("className"), shape);
    }
    return first;
}

std::vector<std::string> KeysOf(const json& object) {
    std::vector<std::string> keys;
    for (const auto& item : object.items()) keys.push_back(item.key());
    return keys;
}

TEST(ScriptedShapes, AreOfEachClassThatAHandDraws) {
    EXPECT_THAT(KeysOf(FirstOfEachClass()), ElementsAre("Ellipse", "Line", "LinePath", "Text"));
}

TEST(ScriptedShapes, AreTheSameEachTimeWithAnIdentityOfTheirOwn) {
    std::mt19937 one, other;
    std::set<std::string> known;
    for (std::size_t kind = 0; kind < kManyKinds; ++kind) {
        const json shape = MakeScriptedShape(kind, 1, one);
        EXPECT_EQ(shape, MakeScriptedShape(kind, 1, other));
        EXPECT_TRUE(known.insert(shape.at("controlId")).second) << "an id came twice";
    }
}

TEST(ScriptedShapes, HaveIdsOfFifteenDifferentLettersAndDigits) {
    for (const auto& [name, shape] : FirstOfEachClass()) {
        const std::string id = shape.at("controlId");
        EXPECT_EQ(id.size(), 15U);
        EXPECT_EQ(std::set<char>(id.begin(), id.end()).size(), 15U) << id;
        EXPECT_TRUE(std::ranges::all_of(id, [](unsigned char c) { return std::isalnum(c) != 0; })) << id;
        EXPECT_EQ(shape.at("id"), id);
        EXPECT_THAT(KeysOf(shape), ElementsAre("className", "controlId", "data", "id"));
    }
}

TEST(ScriptedShapes, SendEveryFieldOfEachShape) {
    const std::map<std::string, json> shapes = FirstOfEachClass();
    EXPECT_THAT(
        KeysOf(shapes.at("LinePath").at("data")),
        ElementsAre("order", "pointColor", "pointCoordinatePairs", "pointSize", "smooth", "tailSize"));
    EXPECT_THAT(KeysOf(shapes.at("Line").at("data")), ElementsAre("capStyle", "color", "dash", "endCapShapes",
                                                                  "strokeWidth", "x1", "x2", "y1", "y2"));
    EXPECT_THAT(KeysOf(shapes.at("Ellipse").at("data")),
                ElementsAre("fillColor", "height", "strokeColor", "strokeWidth", "width", "x", "y"));
    EXPECT_THAT(
        KeysOf(shapes.at("Text").at("data")),
        ElementsAre("color", "font", "forcedHeight", "forcedWidth", "strokeWidth", "text", "v", "x", "y"));
    EXPECT_GT(shapes.at("LinePath").at("data").at("pointCoordinatePairs").size(), 20U);
}

TEST(ScriptedShapes, AreWrittenAsRealClientsWriteThem) {
    std::mt19937 random;
    const json shape = MakeScriptedShape(1, 1, random);
    const std::string id = shape.at("controlId");
    std::string expected = R"x({"message":{"clearCanvas":false,"shapes":[{"className":"Line","controlId":")x";
    expected += id;
    expected += R"x(","data":{"capStyle":"round","color":"rgba(33, 150, 243, 1.000000)","dash":null,)x";
    expected += R"x("endCapShapes":[null,"arrow"],"strokeWidth":10,"x1":1010.0,"x2":780.0,)x";
    expected += R"x("y1":420.0,"y2":330.0},"id":")x";
    expected += id;
    expected += R"x("}]},"streamId":"ada","type":"draw-canvas-broadcast"})x";
    EXPECT_EQ(WriteBroadcast("ada", json::array({shape}), ApplyShapes::Add), expected);
}

}  // namespace
}  // namespace Corvanta::Engine
