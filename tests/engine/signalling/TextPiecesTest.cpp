#include "engine/signalling/TextPieces.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "tests/engine/signalling/LogLines.h"

namespace Corvanta::Engine {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr const char* kDropped = "is dropped";

class TextPieces : public ::testing::Test {
protected:
    std::optional<std::string> Take(const std::string& piece) { return joiner.Take(piece, now); }
    // What the last piece completes; the others must complete nothing.
    std::optional<std::string> TakeAll(const std::vector<std::string>& pieces) {
        std::optional<std::string> whole;
        for (const std::string& piece : pieces) {
            EXPECT_FALSE(whole);
            whole = Take(piece);
        }
        return whole;
    }

    TextJoiner joiner{"sender"};
    TextJoiner::Clock::time_point now;
};

std::string BodyOf(const std::string& piece) {
    return piece.substr(piece.find('\n') + 1);
}

TEST_F(TextPieces, GiveTheTextThatWasSplit) {
    std::uint64_t sequence = 0;
    for (const std::size_t size :
         {0U, 1U, 16'000U, 16'316U, 16'317U, 16'318U, 16'384U, 40'000U, 1'000'000U}) {
        std::string text(size, 'x');
        for (std::size_t place = 0; place < size; ++place) text[place] = static_cast<char>('a' + place % 23);
        const auto pieces = SplitText(text, sequence++);
        for (const std::string& piece : pieces) EXPECT_LE(piece.size(), kLongestPiece);
        EXPECT_LE(pieces.size(), size / 16'000 + 1);
        EXPECT_TRUE(TakeAll(pieces) == text) << size;
        EXPECT_EQ(joiner.UnfinishedTexts(), 0U);
        EXPECT_EQ(joiner.UnfinishedBytes(), 0U);
    }
}

TEST_F(TextPieces, TakeTheGreatestNumbers) {
    const std::string text(100'000, 'x');
    const auto pieces = SplitText(text, UINT64_MAX);
    for (const std::string& piece : pieces) EXPECT_LE(piece.size(), kLongestPiece);
    EXPECT_TRUE(TakeAll(pieces) == text);
}

TEST_F(TextPieces, AreCutBetweenCharacters) {
    std::string text = "x";
    for (int count = 0; count < 20'000; ++count) text += "\xF0\x9F\x8E\xA8";
    const auto pieces = SplitText(text, 1);
    ASSERT_GT(pieces.size(), 4U);
    for (const std::string& piece : pieces)
        EXPECT_NE(static_cast<unsigned char>(BodyOf(piece)[0]) & 0xC0U, 0x80U);
    EXPECT_TRUE(TakeAll(pieces) == text);
}

TEST_F(TextPieces, CarryWhatIsNoText) {
    std::string bytes(50'000, '\x80');
    bytes[3] = '\n';
    bytes[4] = '\0';
    EXPECT_TRUE(TakeAll(SplitText(bytes, 1)) == bytes);
}

TEST_F(TextPieces, OfTwoTextsMayAlternate) {
    const std::string one(40'000, '1');
    const std::string two(60'000, '2');
    const auto first = SplitText(one, 1);
    const auto second = SplitText(two, 2);
    ASSERT_EQ(first.size(), 3U);
    ASSERT_EQ(second.size(), 4U);
    for (std::size_t index = 0; index < 2; ++index) {
        EXPECT_FALSE(Take(first[index]));
        EXPECT_FALSE(Take(second[index]));
    }
    EXPECT_EQ(joiner.UnfinishedTexts(), 2U);
    EXPECT_TRUE(Take(first[2]) == one);
    EXPECT_FALSE(Take(second[2]));
    EXPECT_TRUE(Take(second[3]) == two);
    EXPECT_EQ(joiner.UnfinishedBytes(), 0U);
}

TEST_F(TextPieces, ThatComeTwiceCountOnce) {
    for (const std::size_t size : {10U, 40'000U}) {
        const std::string text(size, 'x');
        const auto pieces = SplitText(text, size);
        std::vector<std::string> whole;
        for (int round = 0; round < 2; ++round)
            for (const std::string& piece : pieces)
                for (int count = 0; count < 2; ++count)
                    if (const auto joined = Take(piece)) whole.push_back(*joined);
        EXPECT_TRUE(whole == std::vector{text}) << whole.size();
        EXPECT_EQ(joiner.UnfinishedTexts(), 0U);
    }
}

TEST_F(TextPieces, OfWhichOneIsMissingGiveNothing) {
    const auto pieces = SplitText(std::string(40'000, 'x'), 1);
    EXPECT_FALSE(Take(pieces[0]));
    EXPECT_FALSE(Take(pieces[2]));
    EXPECT_EQ(joiner.UnfinishedTexts(), 0U);
    EXPECT_FALSE(Take(pieces[1]));
    EXPECT_FALSE(Take(pieces[2]));
    EXPECT_EQ(TakeAll(SplitText("next", 2)), "next");
}

TEST_F(TextPieces, OfDifferentTextsAreNeverMixed) {
    const auto first = SplitText(std::string(40'000, '1'), 7);
    for (const std::size_t size : {40'000U, 41'000U}) {
        TextJoiner other("sender");
        const auto second = SplitText(std::string(size, '2'), 7);
        EXPECT_FALSE(other.Take(first[0], now));
        for (const std::string& piece : second) EXPECT_FALSE(other.Take(piece, now)) << size;
        EXPECT_FALSE(other.Take(first[1], now));
        EXPECT_FALSE(other.Take(first[2], now));
        EXPECT_EQ(other.UnfinishedTexts(), 0U);
        EXPECT_EQ(other.Take(SplitText("next", 8)[0], now), "next");
    }
}

TEST_F(TextPieces, ThatAreGarbageChangeNothing) {
    const std::string text(40'000, 'x');
    const auto pieces = SplitText(text, 5);
    EXPECT_FALSE(Take(pieces[0]));
    for (const std::string& garbage : {std::string(),
                                       std::string("{}"),
                                       std::string("t"),
                                       std::string("t1"),
                                       std::string("t1\n"),
                                       std::string("t1 5 0\n"),
                                       std::string("t1 5 0 40000"),
                                       std::string("t1  5 0 40000\nx"),
                                       std::string("t1 5 -1 40000\nx"),
                                       std::string("t1 5 +0 40000\nx"),
                                       std::string("t1 5 0x0 40000\nx"),
                                       std::string("t2 6 0 5\nabcde"),
                                       std::string("t1 6 0 5\nabcdef"),
                                       std::string("t1 6 0 5\n"),
                                       std::string("t1 6 6 5\n"),
                                       std::string("t1 6 5 5\n"),
                                       std::string("t1 6 0 0\nx"),
                                       std::string("t1 99999999999999999999 0 5\nabcde"),
                                       std::string("t1 6 18446744073709551615 5\nabc"),
                                       std::string("t1 6 0 5 \nabcde"),
                                       std::string("T1 6 0 5\nabcde"),
                                       std::string(100, '\0'),
                                       std::string("t1 6 0 20000\n") + std::string(kLongestPiece, 'y'),
                                       std::string(1'000'000, 't')}) {
        EXPECT_FALSE(Take(garbage)) << garbage.substr(0, 40);
        EXPECT_EQ(joiner.UnfinishedTexts(), 1U) << garbage.substr(0, 40);
    }
    EXPECT_FALSE(Take(pieces[1]));
    EXPECT_TRUE(Take(pieces[2]) == text);
}

TEST_F(TextPieces, OfATextThatIsTooLongGoWholeWithOneLine) {
    LogLines log;
    const auto pieces = SplitText(std::string(kLongestText + 1, 'x'), 1);
    for (const std::string& piece : pieces) {
        EXPECT_FALSE(Take(piece));
        ASSERT_EQ(joiner.UnfinishedBytes(), 0U);
    }
    EXPECT_EQ(log.Count(kDropped), 1);
    EXPECT_EQ(TakeAll(SplitText("next", 2)), "next");
}

TEST_F(TextPieces, OfTheLongestTextAreJoined) {
    const std::string text(kLongestText, 'x');
    const auto whole = TakeAll(SplitText(text, 1));
    ASSERT_TRUE(whole);
    EXPECT_TRUE(*whole == text);
}

TEST_F(TextPieces, OfManyTextsThatAreOnlyBegunAreForgotten) {
    std::vector<std::string> last;
    for (std::uint64_t sequence = 0; sequence < 100; ++sequence) {
        last = SplitText(std::string(20'000, 'x'), sequence);
        EXPECT_FALSE(Take(last[0]));
        EXPECT_LE(joiner.UnfinishedTexts(), TextJoiner::kMostUnfinished);
    }
    EXPECT_EQ(joiner.UnfinishedTexts(), TextJoiner::kMostUnfinished);
    EXPECT_TRUE(Take(last[1]));
}

TEST_F(TextPieces, OfManyLongTextsAreBoundedInAll) {
    constexpr std::size_t kSize = kLongestText / 4;
    std::vector<std::vector<std::string>> texts;
    for (std::uint64_t sequence = 0; sequence < 6; ++sequence)
        texts.push_back(SplitText(std::string(kSize, static_cast<char>('0' + sequence)), sequence));
    std::size_t most = 0;
    // All but the last piece of each, in turns.
    for (std::size_t index = 0; index + 1 < texts[0].size(); ++index) {
        for (const auto& pieces : texts) {
            EXPECT_FALSE(Take(pieces[index]));
            most = std::max(most, joiner.UnfinishedBytes());
        }
    }
    EXPECT_LE(most, TextJoiner::kMostBytes);
    EXPECT_GT(most, TextJoiner::kMostBytes / 2);
    EXPECT_FALSE(Take(texts.front().back()));
    EXPECT_TRUE(Take(texts.back().back()) == std::string(kSize, '5'));
}

TEST_F(TextPieces, WaitHalfAMinuteForTheRest) {
    const std::string text(20'000, 'x');
    const auto first = SplitText(text, 1);
    const auto second = SplitText(text, 2);
    EXPECT_FALSE(Take(first[0]));
    now += milliseconds(1);
    EXPECT_FALSE(Take(second[0]));
    now += seconds(30);
    joiner.Expire(now);
    EXPECT_EQ(joiner.UnfinishedTexts(), 1U);
    EXPECT_FALSE(Take(first[1]));
    EXPECT_TRUE(Take(second[1]) == text);
    EXPECT_EQ(joiner.UnfinishedBytes(), 0U);
}

TEST_F(TextPieces, ThatAreDroppedByTheThousandAreSeldomLogged) {
    LogLines log;
    for (int count = 0; count < 10'000; ++count) EXPECT_FALSE(Take("garbage"));
    EXPECT_EQ(log.Count(kDropped), 1);
    now += TextJoiner::kSilence;
    for (int count = 0; count < 10'000; ++count) EXPECT_FALSE(Take("garbage"));
    EXPECT_EQ(log.Count(kDropped), 2);
}

TEST_F(TextPieces, InAnyOrderNeverGrowBeyondTheBounds) {
    std::mt19937 random(7);
    std::vector<std::string> pieces;
    for (std::uint64_t sequence = 0; sequence < 200; ++sequence)
        for (const std::string& piece : SplitText(std::string(random() % 100'000, 'x'), sequence / 2))
            pieces.push_back(piece);
    for (int count = 0; count < 20'000; ++count) {
        std::string piece = pieces[random() % pieces.size()];
        if (random() % 4 == 0 && !piece.empty())
            piece[random() % std::min<std::size_t>(piece.size(), 30)] = '7';
        now += milliseconds(random() % 20);
        const auto whole = Take(piece);
        EXPECT_LE(whole.value_or("").size(), 1'000'000U);
        EXPECT_LE(joiner.UnfinishedTexts(), TextJoiner::kMostUnfinished);
        EXPECT_LE(joiner.UnfinishedBytes(), TextJoiner::kMostBytes);
    }
}

}  // namespace
}  // namespace Corvanta::Engine
