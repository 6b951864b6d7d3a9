#include "engine/logger/Logger.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "platform/Logger.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/TemporaryFolder.h"

namespace Corvanta::Engine {
namespace {

class Logger : public testing::Test {
protected:
    ~Logger() override { ConfigureLog(kLogInformation, {}); }

    bool Has(const std::string& text) const {
        return Eventually([&] { return folder.Read("log").find(text) != std::string::npos; });
    }

    TemporaryFolder folder;
};

TEST_F(Logger, WritesTheFormattedLineAtItsLevel) {
    ConfigureLog(kLogDebug, folder.File("log"));
    LOG(kLogDebug, "w,h: %d %d", 1280, 720);
    LOG(kLogError, "bad %s", "thing");
    EXPECT_TRUE(Has("bad thing"));
    const std::string log = folder.Read("log");
    EXPECT_NE(log.find("debug   w,h: 1280 720\n"), std::string::npos) << log;
    EXPECT_NE(log.find("error   bad thing\n"), std::string::npos) << log;
}

TEST_F(Logger, LeavesOutWhatIsBelowItsLevelAndTakesUnknownLevelsForWarnings) {
    ConfigureLog(kLogWarning, folder.File("log"));
    LOG(kLogDebug, "debug");
    LOG(kLogInformation, "information");
    LOG(17, "strange");
    EXPECT_TRUE(Has("warning strange"));
    EXPECT_EQ(folder.Read("log").find("information"), std::string::npos);
    EXPECT_EQ(folder.Read("log").find("debug"), std::string::npos);
}

TEST_F(Logger, WritesLongLinesWholeAndPercentSignsAsTheyAre) {
    ConfigureLog(kLogInformation, folder.File("log"));
    const std::string text(5000, 'x');
    LOG(kLogInformation, "%s end", text.c_str());
    LOG(kLogInformation, "%s", "100 %s {} {0}");
    EXPECT_TRUE(Has("100 %s {} {0}"));
    EXPECT_NE(folder.Read("log").find(text + " end\n"), std::string::npos);
}

TEST_F(Logger, KeepsTextsOfOthersOnTheirLine) {
    ConfigureLog(kLogInformation, folder.File("log"));
    LOG(kLogInformation, "%s has come", "a\nb\r\x1b[31m\x7f\xC2\x9B\xC3\xA9");
    const std::string text(5000, 'x');
    LOG(kLogInformation, "%s\nend", text.c_str());
    EXPECT_TRUE(Has("x?end\n"));
    EXPECT_NE(folder.Read("log").find("a?b??[31m???\xC3\xA9 has come\n"), std::string::npos)
        << folder.Read("log");
}

TEST_F(Logger, GoesOnWithoutAFileThatCannotBeOpened) {
    ConfigureLog(kLogInformation, folder.path);
    LOG(kLogInformation, "still here");
    ConfigureLog(kLogInformation, folder.File("log"));
    LOG(kLogInformation, "and here");
    EXPECT_TRUE(Has("and here"));
}

TEST_F(Logger, KeepsLinesOfManyThreadsWhole) {
    ConfigureLog(kLogInformation, folder.File("log"));
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([thread] {
            for (int line = 0; line < 100; ++line) LOG(kLogInformation, "thread %d line %d.", thread, line);
        });
    }
    for (auto& thread : threads) thread.join();
    for (int thread = 0; thread < 4; ++thread)
        EXPECT_TRUE(Has("thread " + std::to_string(thread) + " line 99.\n"));
}

}  // namespace
}  // namespace Corvanta::Engine
