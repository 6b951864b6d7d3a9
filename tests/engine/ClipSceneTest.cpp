#include "engine/webrtc/ClipScene.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "engine/webrtc/GstSupport.h"

namespace Corvanta::Engine {
namespace {

using std::chrono::milliseconds;

struct Picture {
    Picture() : samples(kClipWidth * kClipHeight * 3 / 2) {}
    Planes View() {
        uint8_t* const luma = samples.data();
        uint8_t* const chroma = luma + kClipWidth * kClipHeight;
        return {kClipWidth, kClipHeight,   luma, chroma, chroma + kClipWidth * kClipHeight / 4,
                kClipWidth, kClipWidth / 2};
    }
    std::vector<uint8_t> samples;
};

Picture Draw(const ClipScene& scene, milliseconds time) {
    Picture picture;
    scene.Draw(time, picture.View());
    return picture;
}

class ClipSceneTest : public testing::Test {
protected:
    ClipSceneTest() { EXPECT_TRUE(EnsureGStreamer()); }
};

TEST_F(ClipSceneTest, TestPictureShowsTheBarsInTheirOrder) {
    const auto scene = MakeTestScene("test");
    Picture picture = Draw(*scene, milliseconds(0));
    const Planes view = picture.View();
    // BT.709 limited range, 75 %: white, yellow, cyan, green, magenta, red, blue.
    constexpr uint8_t kExpected[7][3] = {{180, 128, 128}, {168, 44, 136}, {145, 147, 44}, {133, 63, 52},
                                         {63, 193, 204},  {51, 109, 212}, {28, 212, 120}};
    for (int bar = 0; bar < 7; ++bar) {
        const int x = kClipWidth * (2 * bar + 1) / 14;
        constexpr int kRow = 180;
        EXPECT_EQ(view.y[kRow * view.strideY + x], kExpected[bar][0]) << bar;
        EXPECT_EQ(view.u[kRow / 2 * view.strideUV + x / 2], kExpected[bar][1]) << bar;
        EXPECT_EQ(view.v[kRow / 2 * view.strideUV + x / 2], kExpected[bar][2]) << bar;
    }
}

TEST_F(ClipSceneTest, EveryPictureDiffersFromTheOneBefore) {
    for (const bool isPerson : {true, false}) {
        const auto scene = isPerson ? MakePersonScene("name", 0, {0, 1}) : MakeTestScene("test");
        Picture last = Draw(*scene, milliseconds(0));
        for (int frame = 1; frame < 30; ++frame) {
            Picture next = Draw(*scene, milliseconds(frame * 33));
            EXPECT_NE(next.samples, last.samples) << frame;
            last = std::move(next);
        }
    }
}

TEST_F(ClipSceneTest, StaysInsideThePictureAtAnyTime) {
    // Sanitizers watch the edges; the values stay in limited range.
    const auto scene =
        MakePersonScene("A very long name that is wider than the picture is, by far and further", 1, {0, 1});
    const auto test = MakeTestScene("test");
    for (int step = 0; step < 40; ++step) {
        Picture picture = Draw(step % 2 == 0 ? *scene : *test, milliseconds(step * 617));
        EXPECT_GE(*std::min_element(picture.samples.begin(), picture.samples.end()), 14);
        EXPECT_LE(*std::max_element(picture.samples.begin(), picture.samples.end()), 242);
    }
}

TEST_F(ClipSceneTest, LooksDifferForEachPerson) {
    const auto one = MakePersonScene("name", 0, {0, 1});
    const auto two = MakePersonScene("name", 1, {0, 1});
    EXPECT_NE(Draw(*one, milliseconds(0)).samples, Draw(*two, milliseconds(0)).samples);
}

TEST_F(ClipSceneTest, LooksDifferForEachName) {
    // Under one name, so that the label is the same.
    const auto draw = [](const std::string& name) {
        return Draw(*MakePersonScene("name", LookOf(name), {0, 1}), milliseconds(0)).samples;
    };
    EXPECT_EQ(LookOf("one"), LookOf("one"));
    EXPECT_NE(draw("one"), draw("two"));
    std::set<std::size_t> looks;
    for (const char* const name : {"one", "two", "Ada", "Bo", "Alva", "Bruno", "red", "blue", ""})
        looks.insert(LookOf(name));
    EXPECT_EQ(looks.size(), 9U);
    // Guests go by their numbers.
    EXPECT_GT(*looks.begin(), 16U);
}

TEST_F(ClipSceneTest, ExactlyOnePersonSpeaksAtATimeAndEachHasATurn) {
    std::vector<std::unique_ptr<ClipScene>> scenes;
    for (std::size_t index = 0; index < 3; ++index)
        scenes.push_back(MakePersonScene("name", index, {index, 3}));
    std::vector<int> spoke(3, 0);
    for (int step = 0; step < 12 * 20; ++step) {
        int speaking = 0;
        for (std::size_t index = 0; index < 3; ++index) {
            if (scenes[index]->Loudness(milliseconds(step * 50)) <= 0) continue;
            ++speaking;
            ++spoke[index];
        }
        EXPECT_LE(speaking, 1) << step;
    }
    for (const int times : spoke) EXPECT_GT(times, 20);
}

TEST_F(ClipSceneTest, TestToneIsThereButFarBelowSpeech) {
    const auto scene = MakeTestScene("test");
    EXPECT_GT(scene->Loudness(milliseconds(0)), 0.0);
    EXPECT_LT(scene->Loudness(milliseconds(0)), 0.005);
}

TEST(ClipPainter, ConvertsColoursByBt709) {
    const Yuv white = ToYuv(FromHex(0xFFFFFF));
    EXPECT_EQ(white.y, 235);
    EXPECT_EQ(white.u, 128);
    EXPECT_EQ(white.v, 128);
    const Yuv blue = ToYuv(FromHex(0x0000FF));
    EXPECT_EQ(blue.y, 32);
    EXPECT_EQ(blue.u, 240);
    EXPECT_EQ(blue.v, 118);
}

TEST(ClipPainter, ClipsSpritesAtEveryEdge) {
    std::vector<uint8_t> luma(16 * 16, 16);
    std::vector<uint8_t> chromaU(8 * 8, 128);
    std::vector<uint8_t> chromaV(8 * 8, 128);
    const Planes target{16, 16, luma.data(), chromaU.data(), chromaV.data(), 16, 8};
    Canvas canvas(8, 8);
    canvas.Fill(RoundedBox(-1, -1, 9, 9, 0), FromHex(0xFFFFFF));
    const Sprite sprite = canvas.ToSprite();
    for (const int x : {-100, -8, -5, -1, 0, 3, 12, 15, 16, 100}) {
        for (const int y : {-100, -8, -5, -1, 0, 3, 12, 15, 16, 100}) sprite.Draw(target, x, y);
    }
    EXPECT_GE(luma[0], 230);
    EXPECT_EQ(chromaU[0], 128);
}

}  // namespace
}  // namespace Corvanta::Engine
