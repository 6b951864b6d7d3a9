#include "engine/signalling/LineBuffer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Corvanta::Engine {
namespace {

std::vector<std::string> LinesOf(LineBuffer& buffer) {
    std::vector<std::string> lines;
    while (auto line = buffer.Next()) lines.push_back(*line);
    return lines;
}

TEST(LineBuffer, HandsOutWholeLinesHoweverTheBytesCome) {
    const std::string bytes = "one\n\ntwo\nthree";
    for (std::size_t step = 1; step <= bytes.size(); ++step) {
        LineBuffer buffer(16);
        std::vector<std::string> lines;
        for (std::size_t place = 0; place < bytes.size(); place += step) {
            buffer.Add(bytes.substr(place, step));
            for (const std::string& line : LinesOf(buffer)) lines.push_back(line);
        }
        EXPECT_EQ(lines, (std::vector<std::string>{"one", "", "two"})) << step;
        buffer.Add("\n");
        EXPECT_EQ(LinesOf(buffer), std::vector<std::string>{"three"});
        EXPECT_FALSE(buffer.IsTooLong());
    }
}

TEST(LineBuffer, TakesALineAsLongAsAllowed) {
    LineBuffer buffer(8);
    buffer.Add("1234567");
    EXPECT_FALSE(buffer.Next());
    EXPECT_FALSE(buffer.IsTooLong());
    buffer.Add("\n7654321\n");
    EXPECT_EQ(LinesOf(buffer), (std::vector<std::string>{"1234567", "7654321"}));
    EXPECT_FALSE(buffer.IsTooLong());
}

TEST(LineBuffer, GivesUpAtALineThatIsLonger) {
    for (const std::string& bytes : {std::string("good\n12345678\nafter\n"), std::string("good\n12345678"),
                                     std::string("good\n") + std::string(1000, 'x')}) {
        LineBuffer buffer(8);
        buffer.Add(bytes);
        EXPECT_EQ(LinesOf(buffer), std::vector<std::string>{"good"});
        EXPECT_TRUE(buffer.IsTooLong());
        buffer.Add("\nlater\n");
        EXPECT_FALSE(buffer.Next());
    }
}

}  // namespace
}  // namespace Corvanta::Engine
