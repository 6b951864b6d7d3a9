#include "ui/Initials.h"

#include <gtest/gtest.h>

namespace Corvanta::UI {
namespace {

TEST(Initials, AreTheFirstLettersOfTheFirstTwoWords) {
    EXPECT_EQ(InitialsOf("Ada Lovelace"), "AL");
    EXPECT_EQ(InitialsOf("ada king lovelace"), "AK");
}

TEST(Initials, AreOneLetterForOneWord) {
    EXPECT_EQ(InitialsOf("ada"), "A");
    EXPECT_EQ(InitialsOf("a"), "A");
}

TEST(Initials, AreOneLetterForANameThatEndsInItsFirstSpace) {
    EXPECT_EQ(InitialsOf("ada "), "A");
}

TEST(Initials, AreNoneForNoName) {
    EXPECT_EQ(InitialsOf(""), "");
}

TEST(Initials, TakeALeadingSpaceForTheFirstLetter) {
    EXPECT_EQ(InitialsOf(" x"), " X");
    EXPECT_EQ(InitialsOf(" "), " ");
}

TEST(Initials, LookBehindTheFirstSpaceAlone) {
    EXPECT_EQ(InitialsOf("ada  lovelace"), "A ");
    EXPECT_EQ(InitialsOf("ada\tlovelace"), "A");
}

TEST(Initials, LeaveWhatHasNoUpperCase) {
    EXPECT_EQ(InitialsOf("1st _two"), "1_");
}

TEST(Initials, TakeALetterOfSeveralBytesWhole) {
    EXPECT_EQ(InitialsOf("\u00C9mile zola"), "\u00C9Z");
    EXPECT_EQ(InitialsOf("\u0418\u0432\u0430\u043D \u041F\u0435\u0442\u0440\u043E\u0432"), "\u0418\u041F");
    EXPECT_EQ(InitialsOf("\u674E \u5C0F\u9F99"), "\u674E\u5C0F");
    EXPECT_EQ(InitialsOf("\U0001F600 ok"), "\U0001F600O");
    EXPECT_EQ(InitialsOf("ada \u00E9"), "A\u00E9");
}

TEST(Initials, TakeWhatThereIsOfABrokenLetter) {
    EXPECT_EQ(InitialsOf("\xC3"), "\xC3");
    EXPECT_EQ(InitialsOf("\xE6\x9D"), "\xE6\x9D");
    EXPECT_EQ(InitialsOf("\xF0\x9F x"), "\xF0\x9FX");
    EXPECT_EQ(InitialsOf("\xC3z"), "\xC3");
    EXPECT_EQ(InitialsOf("\x80\x80"), "\x80");
    EXPECT_EQ(InitialsOf("\xFF\xFF b"),
              "\xFF"
              "B");
}

TEST(Initials, AreThoseOfAVeryLongName) {
    EXPECT_EQ(InitialsOf(std::string(100000, 'q')), "Q");
    EXPECT_EQ(InitialsOf(std::string(50000, 'q') + " " + std::string(50000, 'r')), "QR");
}

}  // namespace
}  // namespace Corvanta::UI
