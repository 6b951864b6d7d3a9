#include "interface/SdlLog.h"

#include <thread>
#include <utility>

#include "tests/interface/RoomTest.h"

namespace Corvanta::Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

// Priority, level.
using Row = std::pair<int, int>;

class SdlLogTest : public FakePlatformTest, public ::testing::WithParamInterface<Row> {};

TEST_P(SdlLogTest, MapsEachPriorityToItsLevel) {
    Interface::SDLLogOutput(nullptr, SDL_LOG_CATEGORY_VIDEO, static_cast<SDL_LogPriority>(GetParam().first),
                            "text");
    EXPECT_THAT(Fake().Logs(), ElementsAre(LogLine{GetParam().second, "SDL message: text"}));
}

INSTANTIATE_TEST_SUITE_P(EveryRow, SdlLogTest,
                         ::testing::Values(Row{SDL_LOG_PRIORITY_VERBOSE, 3}, Row{SDL_LOG_PRIORITY_DEBUG, 1},
                                           Row{SDL_LOG_PRIORITY_INFO, 2}, Row{SDL_LOG_PRIORITY_WARN, 3},
                                           Row{SDL_LOG_PRIORITY_ERROR, 4}, Row{SDL_LOG_PRIORITY_CRITICAL, 4},
                                           Row{0, 3}, Row{7, 3}, Row{-1, 3}, Row{1000, 3}),
                         [](const auto& test) { return "Row" + std::to_string(test.index); });

TEST_F(SdlLogTest, TakesTheTextAsItIs) {
    Interface::SDLLogOutput(nullptr, 0, SDL_LOG_PRIORITY_INFO, "100 %s %n %d");
    Interface::SDLLogOutput(nullptr, 0, SDL_LOG_PRIORITY_INFO, nullptr);
    EXPECT_THAT(Fake().LogsOf(2), ElementsAre("SDL message: 100 %s %n %d", "SDL message: "));
}

class SdlLogRouteTest : public StartedTest {};

TEST_F(SdlLogRouteTest, CarriesSdlsOwnMessagesFromTheStartOn) {
    SDL_LogVerbose(SDL_LOG_CATEGORY_RENDER, "verbose %d", 1);
    SDL_LogDebug(SDL_LOG_CATEGORY_APPLICATION, "debug");
    SDL_LogCritical(SDL_LOG_CATEGORY_APPLICATION, "critical");
    EXPECT_THAT(Fake().Logs(),
                ElementsAre(LogLine{3, "SDL message: verbose 1"}, LogLine{1, "SDL message: debug"},
                            LogLine{4, "SDL message: critical"}));
}

TEST_F(SdlLogRouteTest, CarriesMessagesOfManyThreads) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([] {
            for (int j = 0; j < 50; ++j) Interface::SDLLogOutput(nullptr, 0, SDL_LOG_PRIORITY_ERROR, "x");
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_THAT(Fake().LogsOf(4), SizeIs(200));
}

}  // namespace
}  // namespace Corvanta::Testing
