#include "guest/GuestMarks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace Corvanta::Guest {
namespace {

using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

// What a client has of one guest that hears its messages, as the shapes' ids by stream.
class Listener {
public:
    void Hear(const std::string& text) {
        const json broadcast = json::parse(text);
        EXPECT_EQ(broadcast.at("type"), "draw-canvas-broadcast");
        auto& marks = marks_[broadcast.at("streamId").get<std::string>()];
        const json& body = broadcast.at("message");
        if (body.at("clearCanvas").get<bool>() || body.at("shapes").empty()) marks.clear();
        for (const json& shape : body.at("shapes")) {
            const std::string id = shape.at("controlId");
            EXPECT_EQ(shape.at("id"), id);
            if (std::ranges::find(marks, id) == marks.end()) marks.push_back(id);
        }
    }

    [[nodiscard]] std::vector<std::string> On(const std::string& streamId) { return marks_[streamId]; }

private:
    std::map<std::string, std::vector<std::string>> marks_;
};

TEST(GuestMarks, AreHeardOneByOne) {
    GuestMarks marks(1, 0);
    Listener listener;
    listener.Hear(marks.Draw("one"));
    listener.Hear(marks.Draw("two"));
    listener.Hear(marks.Draw("one"));
    EXPECT_THAT(listener.On("one"), SizeIs(2));
    EXPECT_THAT(listener.On("two"), SizeIs(1));
    EXPECT_EQ(marks.Count(), 3U);
}

TEST(GuestMarks, AreTakenBackFromTheStreamOfTheOldest) {
    GuestMarks marks(1, 0);
    Listener listener;
    listener.Hear(marks.Draw("two"));
    listener.Hear(marks.Draw("one"));
    const auto onOne = listener.On("one");
    listener.Hear(marks.Draw("two"));
    const std::string oldest = listener.On("two").front();

    listener.Hear(marks.TakeBack().value());
    EXPECT_THAT(listener.On("two"), ElementsAre(oldest)) << "the newest of that stream goes";
    listener.Hear(marks.TakeBack().value());
    EXPECT_THAT(listener.On("two"), IsEmpty());
    EXPECT_EQ(listener.On("one"), onOne);
    listener.Hear(marks.TakeBack().value());
    EXPECT_EQ(marks.Count(), 0U);
    EXPECT_FALSE(marks.TakeBack());
}

TEST(GuestMarks, BringANewcomerToWhereTheOthersAre) {
    GuestMarks marks(1, 0);
    Listener early, late;
    for (const char* const stream : {"one", "two", "one", "three"}) early.Hear(marks.Draw(stream));
    early.Hear(marks.TakeBack().value());
    early.Hear(marks.TakeBack().value());
    for (const std::string& text : marks.TellAll()) late.Hear(text);
    for (const char* const stream : {"one", "two", "three"}) EXPECT_EQ(early.On(stream), late.On(stream));
    EXPECT_THAT(late.On("two"), SizeIs(1));
}

TEST(GuestMarks, BringSomebodyBackWhoHasMissedThatAMarkWasTakenBack) {
    GuestMarks marks(1, 0);
    Listener absent;
    for (const char* const stream : {"one", "one", "two"}) absent.Hear(marks.Draw(stream));
    const std::string first = absent.On("one").front();
    static_cast<void>(marks.TakeBack());
    for (const std::string& text : marks.TellAll()) absent.Hear(text);
    EXPECT_THAT(absent.On("one"), ElementsAre(first));
    static_cast<void>(marks.TakeBack());
    for (const std::string& text : marks.TellAll()) absent.Hear(text);
    EXPECT_THAT(absent.On("one"), IsEmpty());
    EXPECT_THAT(absent.On("two"), SizeIs(1));
}

TEST(GuestMarks, GoWithTheirStream) {
    GuestMarks marks(1, 0);
    static_cast<void>(marks.Draw("one"));
    static_cast<void>(marks.Draw("two"));
    marks.Forget("one");
    EXPECT_EQ(marks.Count(), 1U);
    EXPECT_THAT(marks.TellAll(), SizeIs(1));
}

TEST(GuestMarks, AreTheSameForTheSameSeedAndOthersForAnotherHand) {
    std::set<std::string> known;
    for (const std::uint32_t seed : {1U, 2U}) {
        for (const std::size_t hand : {0U, 1U, 2U}) {
            GuestMarks marks(seed, hand), again(seed, hand);
            Listener listener;
            for (int i = 0; i < 20; ++i) {
                const std::string text = marks.Draw("one");
                EXPECT_EQ(text, again.Draw("one"));
                listener.Hear(text);
            }
            for (const std::string& id : listener.On("one")) EXPECT_TRUE(known.insert(id).second) << id;
        }
    }
}

}  // namespace
}  // namespace Corvanta::Guest
