#include "engine/transport/TextBacklog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/logger/Logger.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/TemporaryFolder.h"

namespace Corvanta::Engine {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class TextBacklogTest : public testing::Test {
protected:
    TextBacklogTest() { ConfigureLog(2, folder.File("engine.log")); }
    ~TextBacklogTest() override { ConfigureLog(2, {}); }

    void Send(std::string text) { backlog.Send(std::move(text), taker); }
    void Flush() { backlog.Flush(taker); }
    [[nodiscard]] std::string Log() const { return folder.Read("engine.log"); }
    [[nodiscard]] bool Logs(const std::string& text) const {
        return Eventually([&] { return Log().find(text) != std::string::npos; });
    }

    const TemporaryFolder folder;
    // How many more are taken; the first letters of those that were.
    int willing = 0;
    std::vector<std::string> taken;
    TextBacklog backlog{"Bruno"};
    const TextBacklog::Taker taker = [this](const std::string& text) {
        if (willing <= 0) return false;
        --willing;
        taken.push_back(text.substr(0, 3));
        return true;
    };
};

TEST_F(TextBacklogTest, HandsOnAtOnceWhatIsTaken) {
    willing = 2;
    Send("1");
    Send("2");
    EXPECT_THAT(taken, ElementsAre("1", "2"));
    EXPECT_TRUE(backlog.IsEmpty());
    EXPECT_EQ(backlog.Bytes(), 0U);
}

TEST_F(TextBacklogTest, KeepsTheOrderThroughALossAndAHalfReturn) {
    willing = 1;
    Send("1");
    Send("2");
    Send("3");
    EXPECT_THAT(taken, ElementsAre("1"));
    EXPECT_FALSE(backlog.IsEmpty());
    willing = 1;
    // Behind what waits, although it could be taken.
    Send("4");
    EXPECT_THAT(taken, ElementsAre("1", "2"));
    willing = 100;
    Flush();
    Send("5");
    EXPECT_THAT(taken, ElementsAre("1", "2", "3", "4", "5"));
    EXPECT_TRUE(backlog.IsEmpty());
    EXPECT_EQ(backlog.Bytes(), 0U);
}

TEST_F(TextBacklogTest, LetsTheOldestGoWhereThereAreTooManyAndSaysSoOnce) {
    const std::size_t quarter = TextBacklog::kMostBytes / 4 - TextBacklog::kBytesPerText;
    for (const char* mark : {"1", "2", "3", "4"}) Send(mark + std::string(quarter - 1, '.'));
    EXPECT_EQ(backlog.Bytes(), TextBacklog::kMostBytes);
    Send("5");
    Send("6" + std::string(quarter - 1, '.'));
    EXPECT_LE(backlog.Bytes(), TextBacklog::kMostBytes);
    EXPECT_TRUE(Logs("\"Bruno\" cannot be reached"));
    willing = 100;
    Flush();
    EXPECT_THAT(taken, ElementsAre("3..", "4..", "5", "6.."));
    EXPECT_EQ(backlog.Bytes(), 0U);
    EXPECT_TRUE(Logs("2 texts for it are lost"));
    EXPECT_EQ(Log().find("cannot be reached"), Log().rfind("cannot be reached"));
}

TEST_F(TextBacklogTest, CountsShortTextsWithWhatTheyTakeToBeKept) {
    const std::size_t most = TextBacklog::kMostBytes / TextBacklog::kBytesPerText;
    for (std::size_t index = 0; index < most + 3; ++index) Send("");
    EXPECT_EQ(backlog.Bytes(), TextBacklog::kMostBytes);
    willing = 1'000'000;
    Flush();
    EXPECT_EQ(taken.size(), most);
}

TEST_F(TextBacklogTest, KeepsTheOthersWhereOneIsTooLongForAll) {
    Send("1");
    Send(std::string(TextBacklog::kMostBytes, 'x'));
    Send("2");
    willing = 100;
    Flush();
    EXPECT_THAT(taken, ElementsAre("1", "2"));
    // While there is a way, nothing has to be kept.
    Send("long" + std::string(TextBacklog::kMostBytes, 'x'));
    EXPECT_THAT(taken, ElementsAre("1", "2", "lon"));
}

TEST_F(TextBacklogTest, LetsATakerSendMore) {
    Send("1");
    Send("2");
    const TextBacklog::Taker answering = [&](const std::string& text) {
        taken.push_back(text);
        if (text == "1") backlog.Send("answer", taker);
        return true;
    };
    willing = 0;
    backlog.Flush(answering);
    EXPECT_THAT(taken, ElementsAre("1", "2", "answer"));
    EXPECT_TRUE(backlog.IsEmpty());
}

TEST_F(TextBacklogTest, TakesNothingWithoutAWay) {
    Flush();
    Send("1");
    Flush();
    EXPECT_THAT(taken, IsEmpty());
    EXPECT_FALSE(backlog.IsEmpty());
}

}  // namespace
}  // namespace Corvanta::Engine
