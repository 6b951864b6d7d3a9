#include <gtest/gtest.h>

#include <random>
#include <string>

#include "engine/Engine.h"
#include "engine/configuration/ConfigurationFile.h"

namespace Corvanta::Engine {
namespace {

TEST(NotesMerge, TakesTheOnlyChange) {
    EXPECT_EQ(MergeNotes("base", "mine", "base"), "mine");
    EXPECT_EQ(MergeNotes("base", "base", "theirs"), "theirs");
    EXPECT_EQ(MergeNotes("base", "same", "same"), "same");
    EXPECT_EQ(MergeNotes("", "", ""), "");
}

TEST(NotesMerge, KeepsBothChangesInDifferentPlaces) {
    EXPECT_EQ(MergeNotes("one\ntwo\nthree\n", "one 1\ntwo\nthree\n", "one\ntwo\nthree 3\n"),
              "one 1\ntwo\nthree 3\n");
    EXPECT_EQ(MergeNotes("one\ntwo\nthree\n", "one\ntwo\nthree\nfour\n", "zero\none\ntwo\nthree\n"),
              "zero\none\ntwo\nthree\nfour\n");
    // In one line, too.
    EXPECT_EQ(MergeNotes("the big dog", "the bigger dog", "the big dogs"), "the bigger dogs");
}

TEST(NotesMerge, PutsMineBelowTheirsWhereTheyMeet) {
    EXPECT_EQ(MergeNotes("a\nb\nc", "a\nmine\nc", "a\ntheirs\nc"), "a\ntheirs\nmine\nc");
    EXPECT_EQ(MergeNotes("a\n", "a\nmine", "a\ntheirs"), "a\ntheirs\nmine");
    EXPECT_EQ(MergeNotes("", "mine", "theirs"), "theirs\nmine");
    EXPECT_EQ(MergeNotes("", "mine\n", "theirs\n"), "theirs\nmine\n");
}

TEST(NotesMerge, WritesNothingTwiceThatOneHasFromTheOther) {
    EXPECT_EQ(MergeNotes("a\n", "a\nhello", "a\nhel"), "a\nhello");
    EXPECT_EQ(MergeNotes("a\n", "a\nhel", "a\nhello"), "a\nhello");
}

TEST(NotesMerge, PrefersATextToItsRemoval) {
    EXPECT_EQ(MergeNotes("a\nb\nc", "a\nc", "a\nb and more\nc"), "a\nb and more\nc");
    EXPECT_EQ(MergeNotes("a\nb\nc", "a\nb and more\nc", "a\nc"), "a\nb and more\nc");
    EXPECT_EQ(MergeNotes("everything", "", "everything new"), "everything new");
}

TEST(NotesMerge, CutsNoLetterInTwo) {
    // Their bytes begin with the same one, or end with it.
    const std::string merged =
        MergeNotes("\xC3\xA4 x \xC3\xB6", "\xC3\xBC x \xC3\xB6", "\xC3\xA4 x \xC3\x9F");
    EXPECT_EQ(merged, "\xC3\xBC x \xC3\x9F");
    EXPECT_TRUE(IsStorable(MergeNotes("\xC3\xA4", "\xC3\xBC", "\xC4\xA4")));
}

// Whatever two people make of a text: each line that was written by one of them is there.
TEST(NotesMerge, LosesNoWrittenLine) {
    std::mt19937 random(7);
    const auto number = [&](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
    for (int round = 0; round < 3000; ++round) {
        std::string base;
        for (int line = number(5); line > 0; --line) base += "line " + std::to_string(number(4)) + "\n";
        const auto write = [&](const std::string& what) {
            std::string text = base;
            std::size_t place = static_cast<std::size_t>(number(static_cast<int>(text.size()) + 1));
            place = place == 0 ? 0 : text.rfind('\n', place - 1) + 1;
            return text.insert(place, what + "\n");
        };
        const std::string merged = MergeNotes(base, write("mine"), write("theirs"));
        EXPECT_NE(merged.find("mine\n"), std::string::npos) << base << "|" << merged;
        EXPECT_NE(merged.find("theirs\n"), std::string::npos) << base << "|" << merged;
        EXPECT_GE(merged.size(), base.size() + 12);
    }
}

}  // namespace
}  // namespace Corvanta::Engine
