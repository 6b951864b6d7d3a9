#include "drawing/ControlId.h"

#include <gtest/gtest.h>

#include <cctype>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace Corvanta::Drawing {
namespace {

TEST(ControlId, Has15LettersAndDigitsAndNoneTwice) {
    for (int turn = 0; turn < 1000; ++turn) {
        const std::string id = GenerateControlId();
        ASSERT_EQ(id.size(), 15U);
        EXPECT_EQ(std::set<char>(id.begin(), id.end()).size(), 15U) << id;
        for (const char character : id)
            EXPECT_NE(std::isalnum(static_cast<unsigned char>(character)), 0) << id;
    }
}

TEST(ControlId, UsesTheWholeAlphabet) {
    std::set<char> used;
    for (int turn = 0; turn < 1000; ++turn) {
        const std::string id = GenerateControlId();
        used.insert(id.begin(), id.end());
    }
    EXPECT_EQ(used.size(), 62U);
}

TEST(ControlId, IsNeverTheSameTwiceWhicheverThreadsAsk) {
    constexpr size_t kThreads = 4;
    constexpr size_t kIds = 2000;
    std::vector<std::vector<std::string>> made(kThreads);
    std::vector<std::thread> threads;
    for (std::vector<std::string>& ids : made) {
        threads.emplace_back([&ids] {
            for (size_t turn = 0; turn < kIds; ++turn) ids.push_back(GenerateControlId());
        });
    }
    for (std::thread& thread : threads) thread.join();
    std::set<std::string> all;
    for (const std::vector<std::string>& ids : made) all.insert(ids.begin(), ids.end());
    EXPECT_EQ(all.size(), kThreads * kIds);
}

}  // namespace
}  // namespace Corvanta::Drawing
