#include "ui/KeyNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace Corvanta::UI {
namespace {

using ::testing::ElementsAre;

TEST(KeyNames, GiveTheCodesOfAllKeysOfTheTable) {
    const std::vector<std::pair<const char*, int>> table = {{"LeftShift", 0x400000E1},
                                                            {"RightShift", 0x400000E1},
                                                            {"Shift", 0x400000E1},
                                                            {"Space", 32},
                                                            {"Back", 8},
                                                            {"Control", 0x400000E0},
                                                            {"LeftCtrl", 0x400000E0},
                                                            {"RightCtrl", 0x400000E0},
                                                            {"Alt", 0x400000E2},
                                                            {"LeftAlt", 0x400000E2},
                                                            {"System", 0x400000E2},
                                                            {"Option", 0x400000E2},
                                                            {"Command", 0x400000E3},
                                                            {"Capital", 0x40000039},
                                                            {"CapsLock", 0x40000039},
                                                            {"Tab", 9},
                                                            {"Return", 13},
                                                            {"Escape", 27},
                                                            {"PageUp", 0x4000004B},
                                                            {"PageDown", 0x4000004E},
                                                            {"Left", 0x40000050},
                                                            {"Right", 0x4000004F},
                                                            {"Down", 0x40000051},
                                                            {"Up", 0x40000052},
                                                            {"Delete", 127},
                                                            {"D0", 48},
                                                            {"D1", 49},
                                                            {"D2", 50},
                                                            {"D3", 51},
                                                            {"D4", 52},
                                                            {"D5", 53},
                                                            {"D6", 54},
                                                            {"D7", 55},
                                                            {"D8", 56},
                                                            {"D9", 57},
                                                            {"Oem3", 96},
                                                            {"OemMinus", 45},
                                                            {"OemPlus", 61},
                                                            {"OemOpenBrackets", 91},
                                                            {"Oem6", 93},
                                                            {"Oem5", 92},
                                                            {"Oem1", 59},
                                                            {"OemQuotes", 39},
                                                            {"OemQuestion", 47},
                                                            {"OemPeriod", 46},
                                                            {"OemComma", 44}};
    ASSERT_EQ(table.size(), 46U);
    for (const auto& [name, code] : table) EXPECT_EQ(GetKeyCodeFromName(name), code) << name;
}

TEST(KeyNames, GiveTheLowerCaseOfASingleCharacter) {
    for (int byte = 1; byte < 128; ++byte) {
        const char name[] = {static_cast<char>(byte), '\0'};
        EXPECT_EQ(GetKeyCodeFromName(name), byte >= 'A' && byte <= 'Z' ? byte + 32 : byte) << byte;
    }
    EXPECT_EQ(GetKeyCodeFromName("a"), 97);
    EXPECT_EQ(GetKeyCodeFromName("Z"), 122);
    EXPECT_EQ(GetKeyCodeFromName("1"), 49);
}

TEST(KeyNames, CountBytesAbove127AsTheyAre) {
    for (int byte = 128; byte < 256; ++byte) {
        const char name[] = {static_cast<char>(byte), '\0'};
        EXPECT_EQ(GetKeyCodeFromName(name), byte);
    }
    // A letter of two bytes is no single character.
    EXPECT_EQ(GetKeyCodeFromName("\xC3\xA9"), 0);
}

TEST(KeyNames, GiveNothingForANameThatIsNotInTheTable) {
    EXPECT_EQ(GetKeyCodeFromName(nullptr), 0);
    for (const char* name : {"", "F5", "RightAlt", "space", "SPACE", "Space ", "D10", "Oem2", "LWin"}) {
        EXPECT_EQ(GetKeyCodeFromName(name), 0) << name;
    }
}

TEST(KeyNames, AreLookedAtForAtMost1024Bytes) {
    for (const size_t length : {size_t{1023}, size_t{1024}, size_t{2000}}) {
        EXPECT_EQ(GetKeyCodeFromName(std::string(length, 'a').c_str()), 0);
    }
    // Not even read beyond them: there is no end.
    const std::vector<char> endless(1024, 'a');
    EXPECT_EQ(GetKeyCodeFromName(endless.data()), 0);
}

TEST(KeyNames, CountBothSidesOfAModifierAsOneKey) {
    const std::vector<std::pair<int, int>> sides = {{0x400000E1, 0x400000E5},
                                                    {0x400000E0, 0x400000E4},
                                                    {0x400000E2, 0x400000E6},
                                                    {0x400000E3, 0x400000E7}};
    for (const auto& [left, right] : sides) {
        EXPECT_THAT(GetEquivalentKeys(left), ElementsAre(left, right));
        // A name never gives a right one.
        EXPECT_THAT(GetEquivalentKeys(right), ElementsAre(right));
    }
}

TEST(KeyNames, CountAnyOtherKeyAsItself) {
    for (const int key : {0, 97, 32, 0x40000039, -1}) {
        EXPECT_THAT(GetEquivalentKeys(key), ElementsAre(key));
    }
}

}  // namespace
}  // namespace Corvanta::UI
