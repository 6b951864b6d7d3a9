// Texts over channels that break in the middle of them.
#include "engine/transport/TextLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "tests/engine/Eventually.h"
#include "tests/engine/peer/PeerPair.h"

namespace Corvanta::Engine {
namespace {

using testing::ElementsAre;

// One side with its line, and what is on the channel towards it.
struct Side {
    std::shared_ptr<TextLine> line;
    std::deque<std::string> incoming;
    std::vector<std::string> texts;
    // Messages that the channel still takes.
    std::size_t room = 1'000'000;
};

class TextLineTest : public testing::Test {
protected:
    TextLineTest() {
        running.Do([this] {
            Make(left, right);
            Make(right, left);
        });
    }
    ~TextLineTest() override {
        running.Do([this] {
            left.line.reset();
            right.line.reset();
        });
    }

    void Make(Side& side, Side& other) {
        side.line = std::make_shared<TextLine>(
            running.loop, "other",
            TextLine::Events{.send =
                                 [&side, &other](const std::string& message) {
                                     if (side.room == 0) return false;
                                     --side.room;
                                     other.incoming.push_back(message);
                                     return true;
                                 },
                             .text = [&side](std::string text) { side.texts.push_back(std::move(text)); }});
    }

    // A new channel: what was on the old one is lost.
    void Connect() {
        Break();
        left.line->Open();
        right.line->Open();
    }
    void Break() {
        left.line->Close();
        right.line->Close();
        left.incoming.clear();
        right.incoming.clear();
    }

    // Hands at most so many messages to each side; whether there were any.
    bool Carry(std::size_t most = 1'000'000) {
        bool isAny = false;
        for (Side* side : {&left, &right}) {
            for (std::size_t count = 0; count < most && !side->incoming.empty(); ++count) {
                const std::string message = std::move(side->incoming.front());
                side->incoming.pop_front();
                side->line->Take(message);
                isAny = true;
            }
        }
        return isAny;
    }

    // Lets the two talk until everything is confirmed.
    [[nodiscard]] bool Settles() {
        return Eventually([this] {
            bool isSettled = false;
            running.Do([&] {
                while (Carry()) {
                }
                isSettled = left.line->Unconfirmed() == 0 && right.line->Unconfirmed() == 0;
            });
            return isSettled;
        });
    }

    RunningLoop running;
    Side left, right;
};

TEST_F(TextLineTest, CarriesTextsBothWays) {
    running.Do([&] {
        Connect();
        left.line->Send("one");
        right.line->Send("two");
        left.line->Send("");
    });
    EXPECT_TRUE(Settles());
    EXPECT_THAT(right.texts, ElementsAre("one", ""));
    EXPECT_THAT(left.texts, ElementsAre("two"));
}

TEST_F(TextLineTest, KeepsWhatIsSentWithoutAChannel) {
    running.Do([&] {
        left.line->Send("before");
        Connect();
        left.line->Send("after");
    });
    EXPECT_TRUE(Settles());
    EXPECT_THAT(right.texts, ElementsAre("before", "after"));
}

TEST_F(TextLineTest, SendsNothingAheadOfTheOthersWord) {
    running.Do([&] {
        left.line->Open();
        left.line->Send("one");
        EXPECT_THAT(right.incoming, ElementsAre("r1 0"));
    });
}

TEST_F(TextLineTest, BringsEachTextOnceWhereverTheChannelBreaks) {
    std::vector<std::string> texts;
    for (int index = 0; index < 60; ++index) {
        texts.push_back(std::to_string(index));
        texts.back().append(index % 7 == 0 ? 40'000 : 10, 'x');
    }
    std::size_t next = 0;
    for (std::size_t carried = 0; next < texts.size(); ++carried) {
        running.Do([&] {
            Connect();
            for (std::size_t count = 0; count < 3 && next < texts.size(); ++count)
                left.line->Send(texts[next++]);
            // The first messages of each side, then a few more each time.
            for (std::size_t count = 0; count < carried % 9; ++count) Carry(1);
        });
    }
    running.Do([&] { Connect(); });
    EXPECT_TRUE(Settles());
    EXPECT_EQ(right.texts, texts);
}

TEST_F(TextLineTest, ConfirmsManyTextsWithOneMessage) {
    running.Do([&] {
        Connect();
        Carry();
        for (int index = 0; index < 100; ++index) left.line->Send("text");
        Carry();
        EXPECT_TRUE(left.incoming.empty());
    });
    EXPECT_TRUE(Eventually([&] {
        bool isThere = false;
        running.Do([&] { isThere = !left.incoming.empty(); });
        return isThere;
    }));
    running.Do([&] { EXPECT_THAT(left.incoming, ElementsAre("r1 100")); });
}

TEST_F(TextLineTest, WaitsForConfirmationOfWhatIsUnderWay) {
    running.Do([&] {
        Connect();
        Carry();
        for (std::size_t index = 0; index < 2 * TextLine::kMostUnconfirmed; ++index) left.line->Send("text");
        EXPECT_EQ(right.incoming.size(), TextLine::kMostUnconfirmed);
    });
    EXPECT_TRUE(Settles());
    EXPECT_EQ(right.texts.size(), 2 * TextLine::kMostUnconfirmed);
}

TEST_F(TextLineTest, GoesOnWhenTheChannelTakesMore) {
    const std::string longText(200'000, 'x');
    running.Do([&] {
        Connect();
        Carry();
        left.room = 5;
        left.line->Send(longText);
        left.line->Send("after");
        EXPECT_EQ(right.incoming.size(), 5U);
        Carry();
        EXPECT_TRUE(right.texts.empty());
        left.room = 1'000'000;
        left.line->OnDrained();
    });
    EXPECT_TRUE(Settles());
    EXPECT_THAT(right.texts, ElementsAre(longText, "after"));
}

TEST_F(TextLineTest, ConfirmsWhenTheChannelTakesIt) {
    running.Do([&] {
        right.room = 0;
        Connect();
        left.line->Send("one");
        Carry();
        EXPECT_TRUE(right.texts.empty());
        right.room = 1'000'000;
        right.line->OnDrained();
    });
    EXPECT_TRUE(Settles());
    EXPECT_THAT(right.texts, ElementsAre("one"));
}

TEST_F(TextLineTest, LetsTheOldestGoWhenTooMuchWaits) {
    const std::string megabyte(1'000'000, 'x');
    running.Do([&] {
        for (int index = 0; index < 10; ++index) left.line->Send(std::to_string(index) + megabyte);
        Connect();
    });
    EXPECT_TRUE(Settles());
    ASSERT_EQ(right.texts.size(), 8U);
    EXPECT_EQ(right.texts.front()[0], '2');
    EXPECT_EQ(right.texts.back()[0], '9');
}

TEST_F(TextLineTest, KeepsALongTextByItself) {
    const std::string longText(20'000'000, 'x');
    running.Do([&] {
        left.line->Send("short");
        left.line->Send(longText);
        Connect();
    });
    EXPECT_TRUE(Settles());
    EXPECT_THAT(right.texts, ElementsAre(longText));
}

TEST_F(TextLineTest, BringsATextToItsEndWhateverIsSaidMeanwhile) {
    const std::string longText(20'000'000, 'x');
    running.Do([&] {
        Connect();
        Carry();
        left.room = 5;
        left.line->Send(longText);
        left.line->Send("after");
        left.room = 1'000'000;
        left.line->OnDrained();
    });
    EXPECT_TRUE(Settles());
    EXPECT_THAT(right.texts, ElementsAre(longText, "after"));
}

TEST_F(TextLineTest, GoesOnWhenOneSideHasBegunAnew) {
    running.Do([&] {
        Connect();
        for (const char* text : {"one", "two", "three"}) left.line->Send(text);
    });
    ASSERT_TRUE(Settles());
    running.Do([&] {
        Break();
        Make(left, right);
        left.line->Send("four");
        right.line->Send("back");
        left.line->Open();
        right.line->Open();
        left.line->Send("five");
    });
    EXPECT_TRUE(Settles());
    EXPECT_THAT(right.texts, ElementsAre("one", "two", "three", "four", "five"));
    EXPECT_THAT(left.texts, ElementsAre("back"));
}

TEST_F(TextLineTest, ConfirmsManyBytesLater) {
    // More than comes at once and in many seconds.
    const std::size_t count = kLongestText / 8'000'000 + 16;
    running.Do([&] {
        Connect();
        Carry();
        for (std::size_t index = 0; index < count; ++index) {
            left.line->Send(std::string(8'000'000, 'x'));
            Carry();
        }
        EXPECT_EQ(right.texts.size(), count);
    });
    const auto isConfirmed = [&] {
        bool isThere = false;
        running.Do([&] { isThere = !left.incoming.empty(); });
        return isThere;
    };
    // This one was due when nothing was owed yet, and the next is when that is so again.
    ASSERT_TRUE(Eventually(isConfirmed));
    running.Do([&] {
        left.incoming.clear();
        left.line->Send("after");
        Carry();
        EXPECT_EQ(right.texts.back(), "after");
    });
    // Without a limit it would have come by then.
    EXPECT_FALSE(Eventually(isConfirmed, 10 * TextLine::kConfirmAfter));
}

TEST_F(TextLineTest, LetsGoOfATextThatNobodyJoins) {
    running.Do([&] {
        Connect();
        left.line->Send(std::string(kLongestText + 1, 'x'));
        left.line->Send("after");
    });
    EXPECT_TRUE(Settles());
    EXPECT_THAT(right.texts, ElementsAre("after"));
}

TEST_F(TextLineTest, PassesOverGarbage) {
    running.Do([&] {
        Connect();
        Carry();
        for (const std::string message :
             {"", "r1", "r1 ", "r1 x", "r1 -1", "r1 1 2", "r1 99999999999999999999999", "r1 7", "t1", "t1 0",
              "t1 1 3 5\n12", "t1 1 0 2\n123", "\xFF\xFE", "r2 1"})
            right.line->Take(message);
        left.line->Send("one");
    });
    EXPECT_TRUE(Settles());
    EXPECT_THAT(right.texts, ElementsAre("one"));
}

TEST_F(TextLineTest, TakesNoConfirmationOfWhatWasNotSent) {
    running.Do([&] {
        left.line->Open();
        left.line->Send("one");
        left.line->Take("r1 0");
        left.room = 0;
        left.line->Send("two");
        // The second is kept all the same.
        left.line->Take("r1 2");
        EXPECT_EQ(left.line->Unconfirmed(), 1U);
    });
}

TEST_F(TextLineTest, TakesATextOnceWhateverTheOtherSideHasMissed) {
    running.Do([&] {
        for (int channel = 0; channel < 3; ++channel) {
            Connect();
            right.line->Take("t1 1 0 3\none");
        }
    });
    EXPECT_THAT(right.texts, ElementsAre("one"));
}

TEST_F(TextLineTest, ReadsNoFloodOfTexts) {
    running.Do([&] {
        Connect();
        Carry();
        for (int index = 1; index <= 5000; ++index) {
            std::string message = "t1 ";
            message += std::to_string(index);
            message += " 0 1\nx";
            right.line->Take(message);
        }
    });
    EXPECT_EQ(right.texts.size(), 2 * TextLine::kMostUnconfirmed);
}

}  // namespace
}  // namespace Corvanta::Engine
