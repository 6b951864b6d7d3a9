#include "host/Names.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

#include "engine/common/Utf8.h"

namespace Corvanta::Host {
namespace {

using Engine::IsOneLine;

TEST(Names, MayBeAnyTextOnOneLine) {
    for (const char* const text :
         {"", "Review", "two words", "Zoë", "日本語", "🎬 dailies", "\xF4\x8F\xBF\xBF"}) {
        EXPECT_TRUE(IsOneLine(text)) << text;
    }
}

TEST(Names, AreRefusedWhereTheyAreNoUtf8) {
    for (const char* const text : {"\xFF", "\x80", "caf\xC3", "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80",
                                   "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80", "\xE2\x82z"}) {
        EXPECT_FALSE(IsOneLine(text)) << text;
    }
}

TEST(Names, AreRefusedWhereTheyBreakTheLine) {
    for (const std::string& text :
         {std::string("a\nb"), std::string("tab\t"), std::string("\x1b[31m"), std::string("\x7f"),
          std::string("\xC2\x85"), std::string("\xE2\x80\xA8"), std::string(1, '\0')}) {
        EXPECT_FALSE(IsOneLine(text));
    }
}

TEST(Names, OfOwnRoomsAreNeverTheSame) {
    std::set<std::string> names;
    for (int i = 0; i < 100; ++i) names.insert(MakeOwnRoomName());
    EXPECT_EQ(names.size(), 100U);
    for (const std::string& name : names) {
        EXPECT_GE(name.size(), 32U);
        EXPECT_TRUE(IsOneLine(name));
    }
}

}  // namespace
}  // namespace Corvanta::Host
