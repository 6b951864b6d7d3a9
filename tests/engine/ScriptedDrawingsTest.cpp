#include "engine/embedded/ScriptedDrawings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace Corvanta::Engine {
namespace {

using nlohmann::json;
using ::testing::Contains;
using ::testing::ElementsAre;

const std::vector<std::string> kPeople{"ada", "bob", "cid", "dan"};
constexpr int kManyMessages = 200;

// What a client that hears the messages has, as ids of shapes by sender and stream.
class Listener {
public:
    void Hear(const DataChannelMessage& message) {
        const json broadcast = json::parse(message.text);
        auto& marks = marks_[{message.senderId, broadcast.at("streamId").get<std::string>()}];
        const json& shapes = broadcast.at("message").at("shapes");
        std::vector<std::string> ids;
        for (const json& shape : shapes) ids.push_back(shape.at("controlId"));
        if (broadcast.at("message").at("clearCanvas").get<bool>()) {
            ++takenBack_;
            ASSERT_FALSE(marks.empty()) << "nothing was there to be taken back";
            marks.pop_back();
            EXPECT_EQ(marks, ids) << "all but the last mark stay";
        } else {
            ASSERT_EQ(ids.size(), 1U);
            EXPECT_TRUE(known_.insert(ids.front()).second) << "an id came twice";
            marks.push_back(ids.front());
        }
    }

    void Forget(const std::string& person) {
        std::erase_if(marks_, [&](const auto& entry) {
            return entry.first.first == person || entry.first.second == person;
        });
    }

    [[nodiscard]] std::size_t Standing() const {
        std::size_t count = 0;
        for (const auto& [place, ids] : marks_) count += ids.size();
        return count;
    }
    [[nodiscard]] int TakenBack() const { return takenBack_; }

private:
    std::map<std::pair<std::string, std::string>, std::vector<std::string>> marks_;
    std::set<std::string> known_;
    int takenBack_ = 0;
};

// The first shape of each class, as a text.
std::map<std::string, json> FirstOfEachClass() {
    ScriptedDrawings drawings;
    std::map<std::string, json> first;
    for (int i = 0; i < kManyMessages; ++i) {
        const auto message = drawings.Next(kPeople, std::nullopt);
        const json broadcast = json::parse(message->text);
        for (const json& shape : broadcast.at("message").at("shapes")) {
            first.emplace(shape.at("className"), shape);
        }
    }
    EXPECT_EQ(first.size(), 4U);
    return first;
}

std::vector<std::string> KeysOf(const json& object) {
    std::vector<std::string> keys;
    for (const auto& item : object.items()) keys.push_back(item.key());
    return keys;
}

TEST(ScriptedDrawings, AddMarksAndTakeSomeBackWithAHandfulStanding) {
    ScriptedDrawings drawings;
    Listener listener;
    std::size_t most = 0;
    for (int i = 0; i < kManyMessages; ++i) {
        const auto message = drawings.Next(kPeople, std::nullopt);
        ASSERT_TRUE(message);
        listener.Hear(*message);
        most = std::max(most, listener.Standing());
    }
    EXPECT_EQ(most, ScriptedDrawings::kMostMarks);
    EXPECT_GE(listener.TakenBack(), kManyMessages / 4);
}

TEST(ScriptedDrawings, BeginWithAMarkOfEachKindOfHand) {
    ScriptedDrawings drawings;
    EXPECT_EQ(drawings.Next(kPeople, std::nullopt)->senderId, "ada");
    EXPECT_EQ(drawings.Next(kPeople, std::nullopt)->senderId, "bob");
    const std::map<std::string, json> shapes = FirstOfEachClass();
    EXPECT_THAT(shapes, Contains(::testing::Key("LinePath")));
    EXPECT_THAT(shapes, Contains(::testing::Key("Line")));
    EXPECT_THAT(shapes, Contains(::testing::Key("Text")));
    EXPECT_THAT(shapes, Contains(::testing::Key("Ellipse")));
}

TEST(ScriptedDrawings, GoToTheStreamOfWhoeverSpeaks) {
    ScriptedDrawings drawings;
    const auto streamOf = [](const DataChannelMessage& message) {
        return json::parse(message.text).at("streamId").get<std::string>();
    };
    EXPECT_EQ(streamOf(*drawings.Next(kPeople, "cid")), "cid");
    EXPECT_EQ(streamOf(*drawings.Next(kPeople, std::nullopt)), "bob") << "their own";
    EXPECT_EQ(streamOf(*drawings.Next(kPeople, "somebody not seen")), "cid");
}

TEST(ScriptedDrawings, WaitForSomebodyToBeSeen) {
    ScriptedDrawings drawings;
    EXPECT_FALSE(drawings.Next({}, "ada"));
    EXPECT_TRUE(drawings.Next({"ada"}, std::nullopt));
}

TEST(ScriptedDrawings, ForgetWhoHasLeft) {
    ScriptedDrawings drawings;
    Listener listener;
    std::vector<std::string> present = kPeople;
    const auto speak = [&](const std::string& speaker, int count) {
        for (int i = 0; i < count; ++i) {
            const auto message = drawings.Next(present, speaker);
            ASSERT_TRUE(message);
            EXPECT_THAT(present, Contains(message->senderId));
            EXPECT_THAT(present, Contains(json::parse(message->text).at("streamId").get<std::string>()));
            listener.Hear(*message);
        }
    };
    speak("ada", 10);
    present.erase(present.begin());
    listener.Forget("ada");
    speak("dan", 40);
}

TEST(ScriptedDrawings, AreSlow) {
    ScriptedDrawings drawings;
    std::set<std::chrono::milliseconds> waits;
    for (int i = 0; i < kManyMessages; ++i) waits.insert(drawings.NextWait());
    EXPECT_GE(*waits.begin(), std::chrono::seconds(6));
    EXPECT_LE(*waits.rbegin(), std::chrono::seconds(10));
    EXPECT_GT(waits.size(), kManyMessages / 2U);
}

TEST(ScriptedDrawings, AreTheSameEachTime) {
    ScriptedDrawings one;
    ScriptedDrawings other;
    for (int i = 0; i < kManyMessages; ++i) {
        EXPECT_EQ(one.Next(kPeople, "bob")->text, other.Next(kPeople, "bob")->text);
    }
}

TEST(ScriptedDrawings, HaveIdsOfFifteenDifferentLettersAndDigits) {
    for (const auto& [name, shape] : FirstOfEachClass()) {
        const std::string id = shape.at("controlId");
        EXPECT_EQ(id.size(), 15U);
        EXPECT_EQ(std::set<char>(id.begin(), id.end()).size(), 15U) << id;
        EXPECT_TRUE(std::ranges::all_of(id, [](unsigned char c) { return std::isalnum(c) != 0; })) << id;
        EXPECT_EQ(shape.at("id"), id);
        EXPECT_THAT(KeysOf(shape), ElementsAre("className", "controlId", "data", "id"));
    }
}

TEST(ScriptedDrawings, SendEveryFieldOfEachShape) {
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

TEST(ScriptedDrawings, AreWrittenAsRealClientsWriteThem) {
    ScriptedDrawings drawings;
    static_cast<void>(drawings.Next(kPeople, "ada"));
    const auto message = drawings.Next(kPeople, "ada");
    const std::string id =
        json::parse(message->text).at("message").at("shapes").at(0).at("controlId").get<std::string>();
    std::string expected = R"x({"message":{"clearCanvas":false,"shapes":[{"className":"Line","controlId":")x";
    expected += id;
    expected += R"x(","data":{"capStyle":"round","color":"rgba(33, 150, 243, 1.000000)","dash":null,)x";
    expected += R"x("endCapShapes":[null,"arrow"],"strokeWidth":10,"x1":1010.0,"x2":780.0,)x";
    expected += R"x("y1":420.0,"y2":330.0},"id":")x";
    expected += id;
    expected += R"x("}]},"streamId":"ada","type":"draw-canvas-broadcast"})x";
    EXPECT_EQ(message->text, expected);
}

}  // namespace
}  // namespace Corvanta::Engine
