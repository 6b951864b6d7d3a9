#include "drawing/KeyToCharacter.h"

#include <SDL_keycode.h>
#include <gtest/gtest.h>

#include <string_view>

namespace Corvanta::Drawing {
namespace {

constexpr KeyModifiers kNone;
constexpr KeyModifiers kShift{.shift = true};
constexpr KeyModifiers kCapsLock{.capsLock = true};
constexpr KeyModifiers kBoth{.shift = true, .capsLock = true};

TEST(KeyToCharacter, TypesLettersInTheCaseThatShiftOrCapsLockMakes) {
    for (int letter = 'a'; letter <= 'z'; ++letter) {
        const int upperCase = letter - 'a' + 'A';
        EXPECT_EQ(KeyToCharacter(letter, kNone), letter);
        EXPECT_EQ(KeyToCharacter(letter, kShift), upperCase);
        EXPECT_EQ(KeyToCharacter(letter, kCapsLock), upperCase);
        EXPECT_EQ(KeyToCharacter(letter, kBoth), upperCase);
    }
}

TEST(KeyToCharacter, TypesDigitsAndWithShiftTheirPartners) {
    constexpr std::string_view kDigits = "0123456789";
    constexpr std::string_view kPartners = ")!@#$%^&*(";
    for (size_t i = 0; i < kDigits.size(); ++i) {
        EXPECT_EQ(KeyToCharacter(kDigits[i], kNone), kDigits[i]);
        EXPECT_EQ(KeyToCharacter(kDigits[i], kCapsLock), kDigits[i]);
        EXPECT_EQ(KeyToCharacter(kDigits[i], kShift), kPartners[i]);
        EXPECT_EQ(KeyToCharacter(kDigits[i], kBoth), kPartners[i]);
    }
}

TEST(KeyToCharacter, TypesMarksAndWithShiftTheirPartners) {
    constexpr int kKeys[] = {96, 45, 61, 91, 93, 92, 59, 39, 47, 46, 44};
    constexpr std::string_view kMarks = "`-=[]\\;'/.,";
    constexpr std::string_view kPartners = "~_+{}|:\"?><";
    for (size_t i = 0; i < kMarks.size(); ++i) {
        EXPECT_EQ(KeyToCharacter(kKeys[i], kNone), kMarks[i]);
        EXPECT_EQ(KeyToCharacter(kKeys[i], kCapsLock), kMarks[i]);
        EXPECT_EQ(KeyToCharacter(kKeys[i], kShift), kPartners[i]);
    }
}

TEST(KeyToCharacter, TypesBlankAndLineFeedWhateverIsHeld) {
    for (const KeyModifiers& modifiers : {kNone, kShift, kCapsLock, kBoth}) {
        EXPECT_EQ(KeyToCharacter(SDLK_SPACE, modifiers), ' ');
        EXPECT_EQ(KeyToCharacter(SDLK_RETURN, modifiers), '\n');
    }
}

TEST(KeyToCharacter, TypesNothingForAnyOtherKey) {
    for (const SDL_Keycode key :
         {0, 8, 9, 10, 27, 33, 64, 65, 90, 95, 123, 126, 127, 228, 0x20AC, -1, -0x7FFFFFFF}) {
        EXPECT_EQ(KeyToCharacter(key, kNone), 0) << key;
        EXPECT_EQ(KeyToCharacter(key, kShift), 0) << key;
    }
    for (const SDL_KeyCode key : {SDLK_F1, SDLK_LSHIFT, SDLK_KP_5, SDLK_KP_ENTER, SDLK_DELETE}) {
        EXPECT_EQ(KeyToCharacter(key, kNone), 0) << key;
        EXPECT_EQ(KeyToCharacter(key, kShift), 0) << key;
    }
}

}  // namespace
}  // namespace Corvanta::Drawing
