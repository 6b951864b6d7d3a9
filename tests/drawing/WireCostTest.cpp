// Long values are moved, not copied, and cost in proportion to their length.
#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <limits>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>

#include "drawing/BroadcastMessage.h"
#include "drawing/LinePath.h"
#include "drawing/ShapeReader.h"
#include "drawing/TextBox.h"
#include "tests/drawing/WireTest.h"
#include "tests/fake_platform/AllocationCounter.h"

namespace Corvanta::Drawing {
namespace {

using namespace Testing;
using Corvanta::Testing::AllocationCounter;
using nlohmann::json;

constexpr size_t kMegabyte = size_t{1} << 20;

struct Cost {
    size_t allocations = 0;
    size_t bytes = 0;
};

template <typename Function>
[[nodiscard]] Cost CostOf(Function&& function) {
    AllocationCounter::Start();
    function();
    const size_t allocations = AllocationCounter::Stop();
    return {allocations, AllocationCounter::Bytes()};
}

[[nodiscard]] json LongPath(size_t points) {
    json path = json::parse(kLinePath);
    json& pairs = path["data"]["pointCoordinatePairs"];
    pairs = json::array();
    for (size_t index = 0; index < points; ++index) {
        const auto number = static_cast<double>(index);
        pairs.push_back(json::array({number * 0.37, number / 7}));
    }
    return path;
}

TEST(WireCost, ReadsAPathWithOneAllocationForAllItsPoints) {
    json path = LongPath(100'000);
    std::shared_ptr<Shape> shape;
    const Cost cost = CostOf([&] { shape = ReadShape(std::move(path)); });
    EXPECT_EQ(std::dynamic_pointer_cast<LinePath>(shape)->points.size(), 100'000U);
    EXPECT_LE(cost.bytes, 100'000 * sizeof(LinePath::Point) + 4096);
    EXPECT_LE(cost.allocations, 8U);
}

TEST(WireCost, MovesALongName) {
    json line = json::parse(kLine);
    line["controlId"] = std::string(kMegabyte, 'a');
    std::shared_ptr<Shape> shape;
    const Cost cost = CostOf([&] { shape = ReadShape(std::move(line)); });
    EXPECT_EQ(shape->controlId.size(), kMegabyte);
    EXPECT_LE(cost.bytes, 4096U);
}

TEST(WireCost, MovesALongClassName) {
    json element = json::parse(R"({"data":{}})");
    element["className"] = std::string(kMegabyte, 'a');
    const Cost cost = CostOf([&] { EXPECT_EQ(ReadShape(std::move(element)), nullptr); });
    // The line of the log is the harness's own.
    EXPECT_LE(cost.bytes, 4096U);
}

TEST(WireCost, CopiesALongTextOnce) {
    json text = json::parse(kText);
    text["data"]["text"] = std::string(kMegabyte, 'a');
    std::shared_ptr<Shape> shape;
    const Cost cost = CostOf([&] { shape = ReadShape(std::move(text)); });
    EXPECT_EQ(std::dynamic_pointer_cast<TextBox>(shape)->text.size(), kMegabyte);
    EXPECT_LE(cost.bytes, kMegabyte + 4096);
}

TEST(WireCost, MovesShapesOutOfTheirMessage) {
    std::string text = R"({"message":{"shapes":[)";
    for (int index = 0; index < 100; ++index) {
        if (index > 0) text += ',';
        text += kRectangle;
    }
    text += R"(]},"streamId":"camera","type":"draw-canvas-broadcast"})";
    std::optional<BroadcastMessage> message = BroadcastMessage::Open(text);
    ASSERT_TRUE(message.has_value());
    size_t shapes = 0;
    const Cost cost = CostOf([&] {
        message->ReadBody();
        for (; message->HasNext(); ++shapes) static_cast<void>(message->ReadNext());
    });
    EXPECT_EQ(shapes, 100U);
    // The shapes themselves, and the end of what surrounded the list.
    EXPECT_LE(cost.allocations, 102U);
}

// Processor time of reading over that of the bare parse, the best of three turns of each.
[[nodiscard]] double ReadingOverParsing(const std::string& text) {
    const auto ticks = [](auto&& function) {
        double best = std::numeric_limits<double>::infinity();
        for (int turn = 0; turn < 3; ++turn) {
            const std::clock_t start = std::clock();
            function();
            best = std::min(best, static_cast<double>(std::clock() - start));
        }
        return best;
    };
    const double parsing = ticks([&text] { [[maybe_unused]] const json parsed = json::parse(text); });
    const double reading = ticks([&text] {
        std::optional<BroadcastMessage> message = BroadcastMessage::Open(text);
        message->ReadBody();
        while (message->HasNext()) static_cast<void>(message->ReadNext());
    });
    return reading / parsing;
}

[[nodiscard]] std::string MessageWith(json shape) {
    json message;
    message["type"] = "draw-canvas-broadcast";
    message["streamId"] = "camera";
    message["message"]["shapes"].push_back(std::move(shape));
    return message.dump();
}

// Far above what is measured, far below what a second look at all that came before would cost.
constexpr double kBound = 12;

TEST(WireCost, GrowsWithThePointsOfAPath) {
    EXPECT_LT(ReadingOverParsing(MessageWith(LongPath(100'000))), kBound);
}

TEST(WireCost, GrowsWithALongTextFontAndColour) {
    for (const char* const field : {"text", "font", "color"}) {
        for (const char* const piece : {"a", " ", "1", "rgba", "a b"}) {
            std::string value = std::string(field) == "font" ? "24px " : "";
            while (value.size() < kMegabyte) value += piece;
            json text = json::parse(kText);
            text["data"][field] = value;
            EXPECT_LT(ReadingOverParsing(MessageWith(text)), kBound) << field << " of '" << piece << "'";
        }
    }
}

TEST(WireCost, GrowsWithTheDigitsOfAColour) {
    for (const char* const front : {"#", "rgba(", "rgba(1, 2, 3, 0.", "rgba(1, 2, 3, 1e"}) {
        std::string value = front;
        value.append(kMegabyte, '0');
        value += '7';
        json text = json::parse(kText);
        text["data"]["color"] = value;
        EXPECT_LT(ReadingOverParsing(MessageWith(text)), kBound) << front;
    }
}

}  // namespace
}  // namespace Corvanta::Drawing
