// What a view does whatever SDL it is built with; the same file is compiled for both.
#include "ui/AbstractView.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/SDLAdditions.h"
#include "tests/ui/TestView.h"

namespace Corvanta::UI {
namespace {

using Testing::Calls;
using Testing::ConfigurationValue;
using Testing::Fake;
using Testing::FakeResults;
using Testing::Sdl;
using Testing::TestView;
using Testing::ViewTest;

using Names = std::vector<std::string>;

class AbstractViewTest : public ViewTest {
protected:
    static void Configure(const std::string& key, const ConfigurationValue& value) {
        Fake().Set([&](FakeResults& results) { results.configuration[key] = value; });
    }
    static bool IsConfigured(const std::string& key) {
        return Fake().Get([&](const FakeResults& results) { return results.configuration.contains(key); });
    }
    // Raises the event as SDL does: its watches run at once.
    static void Raise(SDL_Event event) { SDL_PushEvent(&event); }
    static void RaiseWindowEvent(Uint8 kind, Uint32 window, int data1, int data2) {
        SDL_Event event{};
        event.type = SDL_WINDOWEVENT;
        event.window.event = kind;
        event.window.windowID = window;
        event.window.data1 = data1;
        event.window.data2 = data2;
        Raise(event);
    }
    static Uint32 WindowOf(const TestView& view) { return SDL_GetWindowID(view.GetWindow()); }
    static std::string TextOf(const void* pointer) { return Testing::ToText(pointer); }
};

TEST_F(AbstractViewTest, StartsWithoutWindowSizeOrScale) {
    const TestView view(7);
    EXPECT_EQ(view.GetScale(), 1.0F);
    EXPECT_EQ(view.GetWindowId(), 7);
    EXPECT_EQ(view.GetWindow(), nullptr);
    EXPECT_EQ(view.GetRenderer(), nullptr);
    EXPECT_EQ(view.GetWidth(), 0);
    EXPECT_EQ(view.GetHeight(), 0);
    EXPECT_FALSE(view.IsInitialised());
    EXPECT_EQ(view.GetSdlWindowId(), -1);
    EXPECT_EQ(view.GetNativeView(), nullptr);
}

TEST_F(AbstractViewTest, OpensAWindowAndARendererOnTheHostsHandle) {
    TestView view;
    EXPECT_EQ(view.Init(Handle(), 640, 360), 1);
    EXPECT_TRUE(view.IsInitialised());
    EXPECT_NE(view.GetWindow(), nullptr);
    EXPECT_NE(view.GetRenderer(), nullptr);
    EXPECT_EQ(view.GetWidth(), 640);
    EXPECT_EQ(view.GetHeight(), 360);
    EXPECT_EQ(view.GetAspectRatio(), 640.0F / 360.0F);
    EXPECT_EQ(view.GetSdlWindowId(), static_cast<int>(WindowOf(view)));
    EXPECT_EQ(view.GetNativeView(), nullptr);
    EXPECT_EQ(Fake().CallsOf("SDL_CreateWindowFrom")[0].arguments[0], TextOf(Handle()));
    // Nothing is laid out or drawn yet.
    EXPECT_TRUE(view.sizes.empty());
    EXPECT_FALSE(view.TakeDirty());
}

TEST_F(AbstractViewTest, TakesTheStepsOfItsStartInOrder) {
    size_t linesBeforeBlendMode = 99;
    Fake().OnCall("SDL_SetRenderDrawBlendMode",
                  [&](const auto&) { linesBeforeBlendMode = Fake().LogsOf(2).size(); });
    bool initialisedBeforeBrightness = true;
    TestView view;
    Fake().OnCall("Configuration_GetPropertyInt",
                  [&](const auto&) { initialisedBeforeBrightness = view.IsInitialised(); });
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    EXPECT_EQ(Calls().NamesAmong({"SDL_CreateWindowFrom", "Configuration_GetPropertyBoolean",
                                  "SDL_CreateRenderer", "SDL_SetRenderDrawBlendMode", "SDL_AddEventWatch",
                                  "Configuration_GetPropertyInt"}),
              (Names{"SDL_CreateWindowFrom", "Configuration_GetPropertyBoolean", "SDL_CreateRenderer",
                     "SDL_SetRenderDrawBlendMode", "SDL_AddEventWatch", "Configuration_GetPropertyInt"}));
    EXPECT_EQ(linesBeforeBlendMode, 1U);
    EXPECT_FALSE(initialisedBeforeBrightness);
    EXPECT_EQ(Fake().Logs(),
              (std::vector<Testing::LogLine>{{2, "Selected renderer for this window is: software"}}));
    EXPECT_EQ(Fake().CallsOf("Configuration_GetPropertyBoolean")[0].arguments[0], "EnableVSync");
    EXPECT_EQ(Fake().CallsOf("Configuration_GetPropertyInt")[0].arguments[0], "SDRBrightnessBoost");
    SDL_BlendMode mode = SDL_BLENDMODE_NONE;
    SDL_GetRenderDrawBlendMode(view.GetRenderer(), &mode);
    EXPECT_EQ(mode, SDL_BLENDMODE_BLEND);
    EXPECT_EQ(Fake().CallsOf("SDL_AddEventWatch")[0].arguments[1], TextOf(&view));
}

TEST_F(AbstractViewTest, RefusesASecondStartAndKeepsItsSize) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    SDL_Renderer* const renderer = view.GetRenderer();
    Fake().ClearCalls();
    EXPECT_EQ(view.Init(Handle(), 100, 50), 0);
    EXPECT_EQ(view.GetWidth(), 640);
    EXPECT_EQ(view.GetHeight(), 360);
    EXPECT_EQ(view.GetAspectRatio(), 640.0F / 360.0F);
    EXPECT_EQ(view.GetRenderer(), renderer);
    EXPECT_TRUE(Fake().CallNames().empty());
}

TEST_F(AbstractViewTest, FailsWithoutAHandleAndYetKnowsTheSize) {
    TestView view;
    EXPECT_EQ(view.Init(nullptr, 640, 360), -1);
    EXPECT_EQ(view.GetWidth(), 640);
    EXPECT_EQ(view.GetHeight(), 360);
    EXPECT_EQ(view.GetAspectRatio(), 640.0F / 360.0F);
    EXPECT_FALSE(view.IsInitialised());
    EXPECT_EQ(Calls().Count("SDL_CreateWindowFrom"), 0U);
}

TEST_F(AbstractViewTest, TakesASizeOfNothing) {
    TestView view;
    EXPECT_EQ(view.Init(Handle(), 0, 0), 1);
    EXPECT_TRUE(std::isnan(view.GetAspectRatio()));
    view.CleanupWindow();
    EXPECT_EQ(view.Init(Handle(), 10, 0), 1);
    EXPECT_TRUE(std::isinf(view.GetAspectRatio()));
}

TEST_F(AbstractViewTest, FailsWhenTheWindowCannotBeMade) {
    Sdl().Fail("SDL_CreateWindowFrom");
    TestView view;
    EXPECT_EQ(view.Init(Handle(), 640, 360), -1);
    EXPECT_EQ(Calls().Count("SDL_CreateRenderer"), 0U);
    EXPECT_FALSE(view.IsInitialised());
    EXPECT_EQ(view.GetSdlWindowId(), -1);
}

TEST_F(AbstractViewTest, KeepsTheWindowWhenTheRendererCannotBeMadeAndTriesNoOther) {
    Sdl().Fail("SDL_CreateRenderer");
    TestView view;
    EXPECT_EQ(view.Init(Handle(), 640, 360), -1);
    EXPECT_EQ(Calls().Count("SDL_CreateRenderer"), 1U);
    EXPECT_NE(view.GetWindow(), nullptr);
    EXPECT_EQ(view.GetRenderer(), nullptr);
    EXPECT_EQ(Calls().Count("SDL_AddEventWatch"), 0U);
    EXPECT_TRUE(Fake().Logs().empty());
    view.CleanupWindow();
    EXPECT_EQ(Sdl().LiveWindows(), 0U);
}

TEST_F(AbstractViewTest, CleansUpWhatAFailedStartLeftBeforeTheNext) {
    Sdl().Fail("SDL_CreateRenderer");
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 640, 360), -1);
    EXPECT_EQ(Sdl().LiveWindows(), 1U);
    EXPECT_EQ(view.Init(Handle(), 320, 200), 1);
    EXPECT_EQ(Sdl().LiveWindows(), 1U);
    EXPECT_EQ(Sdl().LiveRenderers(), 1U);
    EXPECT_EQ(Calls().NamesAmong({"SDL_CreateWindowFrom", "SDL_DestroyWindow"}),
              (Names{"SDL_CreateWindowFrom", "SDL_DestroyWindow", "SDL_CreateWindowFrom"}));
    EXPECT_EQ(view.GetWidth(), 320);
}

TEST_F(AbstractViewTest, CleansUpWithoutHarmWhenNothingWasMade) {
    TestView view;
    view.CleanupWindow();
    EXPECT_TRUE(Fake().CallNames().empty());
    SDL_Quit();
    Sdl().ReplaceForeignWindows(false);
    view.CleanupWindow();
    EXPECT_EQ(view.Init(Handle(), 640, 360), -1);
}

TEST_F(AbstractViewTest, GivesBackRendererAndWindowInOrder) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    Fake().ClearCalls();
    view.CleanupWindow();
    EXPECT_EQ(Fake().CallNames(), (Names{"SDL_DelEventWatch", "SDL_DestroyRenderer", "SDL_DestroyWindow"}));
    EXPECT_EQ(view.GetWindow(), nullptr);
    EXPECT_EQ(view.GetRenderer(), nullptr);
    EXPECT_FALSE(view.IsInitialised());
    view.CleanupWindow();
    EXPECT_EQ(Calls().Count("SDL_DestroyRenderer"), 1U);
}

TEST_F(AbstractViewTest, StartsAgainAfterItWasCleanedUp) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    view.CleanupWindow();
    EXPECT_EQ(view.Init(Handle(), 320, 200), 1);
    EXPECT_EQ(view.GetAspectRatio(), 1.6F);
    EXPECT_EQ(Sdl().LiveRenderers(), 1U);
}

TEST_F(AbstractViewTest, CleansUpWhenItIsDestroyed) {
    {
        TestView view;
        ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    }
    EXPECT_EQ(Sdl().LiveRenderers(), 0U);
    EXPECT_EQ(Sdl().LiveWindows(), 0U);
    // Nobody listens any more.
    SDL_Event event{};
    event.type = kRenderColorSpaceChangedEvent;
    Raise(event);
}

TEST_F(AbstractViewTest, ChoosesTheLastDriverOfItsName) {
    Sdl().SetRenderDrivers({"direct3d", "direct3d11", "opengl", "direct3d11", "software"});
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    EXPECT_EQ(Fake().CallsOf("SDL_CreateRenderer")[0].arguments[1], "3");
}

TEST_F(AbstractViewTest, LeavesTheChoiceToSdlWithoutThatDriver) {
    Sdl().SetRenderDrivers({"direct3d", "direct3d12", "opengl"});
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    EXPECT_EQ(Fake().CallsOf("SDL_CreateRenderer")[0].arguments[1], "-1");
}

TEST_F(AbstractViewTest, ShowsSdrWhiteAt280NitsUnlessTheUserChose) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    EXPECT_EQ(view.GetSDRBrightness(), 280.0F);
    EXPECT_FALSE(IsConfigured("SDRBrightnessBoost"));
}

TEST_F(AbstractViewTest, ShowsSdrWhiteAsConfigured) {
    Configure("SDRBrightnessBoost", int32_t{150});
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    EXPECT_EQ(view.GetSDRBrightness(), 150.0F);
}

TEST_F(AbstractViewTest, ShowsSdrWhiteAt280NitsWhenTheKeyHoldsSomethingElse) {
    Configure("SDRBrightnessBoost", std::string("bright"));
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    EXPECT_EQ(view.GetSDRBrightness(), 280.0F);
}

TEST_F(AbstractViewTest, StoresTheTruncatedAndAppliesTheRoundedBrightness) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    Fake().ClearCalls();
    view.SetSDRBrightness(203.6F);
    ASSERT_EQ(Calls().Count("Configuration_SetPropertyInt"), 1U);
    EXPECT_EQ(Fake().CallsOf("Configuration_SetPropertyInt")[0].arguments,
              (Names{"SDRBrightnessBoost", "203"}));
    EXPECT_EQ(view.GetSDRBrightness(), 204.0F);
}

TEST_F(AbstractViewTest, AppliesABrightnessThatCannotBeStored) {
    Fake().Set([](FakeResults& results) { results.configurationWritable = false; });
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    view.SetSDRBrightness(100.0F);
    EXPECT_EQ(view.GetSDRBrightness(), 100.0F);
}

TEST_F(AbstractViewTest, SurvivesWildBrightness) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    for (const float nits : {1.0e30F, -1.0e30F, std::numeric_limits<float>::infinity(),
                             std::numeric_limits<float>::quiet_NaN()}) {
        view.SetSDRBrightness(nits);
    }
    EXPECT_EQ(Calls().Count("Configuration_SetPropertyInt"), 4U);
    EXPECT_EQ(Fake().CallsOf("Configuration_SetPropertyInt")[3].arguments[1], "0");
}

TEST_F(AbstractViewTest, KnowsNoBrightnessAndStoresNoneWithoutARenderer) {
    TestView view;
    EXPECT_EQ(view.GetSDRBrightness(), 0.0F);
    view.SetSDRBrightness(200.0F);
    EXPECT_TRUE(Fake().CallNames().empty());
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    view.CleanupWindow();
    EXPECT_EQ(view.GetSDRBrightness(), 0.0F);
}

TEST_F(AbstractViewTest, ResizesItsWindowBeforeItLaysOut) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    (void)view.TakeDirty();
    Fake().ClearCalls();
    view.Resize(800, 450);
    ASSERT_GE(Calls().Count("SDL_SetWindowSize"), 1U);
    EXPECT_EQ(Fake().CallsOf("SDL_SetWindowSize")[0].arguments,
              (Names{TextOf(view.GetWindow()), "800", "450"}));
    EXPECT_TRUE(view.TakeDirty());
    EXPECT_EQ(view.GetWidth(), 800);
    EXPECT_EQ(view.GetHeight(), 450);
    // The aspect ratio stays that of the start.
    EXPECT_EQ(view.GetAspectRatio(), 640.0F / 360.0F);
    ASSERT_FALSE(view.sizes.empty());
    EXPECT_EQ(view.sizes.back(), std::pair(800, 450));
}

TEST_F(AbstractViewTest, KnowsItsNewSizeWhenItLaysOut) {
    class Layout final : public AbstractView {
    public:
        Layout() : AbstractView(0) {}
        void Render() override {}
        void OnResized(int width, int height) override {
            knew = GetWidth() == width && GetHeight() == height && dirty_.load();
        }
        bool knew = false;
    };
    Layout view;
    view.Resize(30, 20);
    EXPECT_TRUE(view.knew);
}

TEST_F(AbstractViewTest, LaysOutWithoutAWindowToo) {
    TestView view;
    view.Resize(800, 450);
    EXPECT_EQ(view.sizes, (std::vector{std::pair(800, 450)}));
    EXPECT_EQ(Calls().Count("SDL_SetWindowSize"), 0U);
    EXPECT_TRUE(view.TakeDirty());
}

TEST_F(AbstractViewTest, DrawsOnThePartOfTheWindowThatItIsTold) {
    TestView view;
    view.SetViewport(10, 10);
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    view.SetViewport(320, 200);
    EXPECT_EQ(Fake().CallsOf("SDL_RenderSetViewport").back().arguments[1], "0 0 320 200");
}

TEST_F(AbstractViewTest, ScalesTheRendererByTheContentScale) {
    TestView view;
    view.SetContentScaleFactor(3.0F);
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    view.SetContentScaleFactor(1.5F);
    float x = 0;
    float y = 0;
    SDL_RenderGetScale(view.GetRenderer(), &x, &y);
    EXPECT_EQ(x, 1.5F);
    EXPECT_EQ(y, 1.5F);
    // It is the renderer's own: the view's sizes and scale stay.
    EXPECT_EQ(view.GetScale(), 1.0F);
    EXPECT_TRUE(view.sizes.empty());
}

TEST_F(AbstractViewTest, IgnoresAContentScaleAtWhichNothingCouldBeDrawn) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    for (const float factor :
         {0.0F, -1.0F, std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()}) {
        view.SetContentScaleFactor(factor);
    }
    EXPECT_EQ(Calls().Count("SDL_RenderSetScale"), 0U);
}

TEST_F(AbstractViewTest, TellsANewWindowScaleAndThenLaysOutAgain) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    view.SetWindowScale(1.25F);
    EXPECT_EQ(view.GetScale(), 1.25F);
    EXPECT_EQ(view.scales, std::vector{1.25F});
    EXPECT_EQ(view.sizesAtScale, 0U);
    EXPECT_EQ(view.sizes, (std::vector{std::pair(640, 360)}));
    EXPECT_EQ(Calls().Count("SDL_RenderSetScale"), 0U);
}

TEST_F(AbstractViewTest, DoesNothingWhenTheWindowScaleIsTheOneItHas) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    Fake().ClearCalls();
    view.SetWindowScale(1.0F);
    EXPECT_TRUE(view.scales.empty());
    EXPECT_TRUE(view.sizes.empty());
    EXPECT_TRUE(Fake().CallNames().empty());
}

TEST_F(AbstractViewTest, KeepsSizesAndScalesToWhatLayoutsCanReckonWith) {
    TestView view;
    view.Resize(std::numeric_limits<int>::max(), std::numeric_limits<int>::min());
    EXPECT_EQ(view.GetWidth(), 1 << 20);
    EXPECT_EQ(view.GetHeight(), -(1 << 20));
    view.SetWindowScale(1.0e30F);
    EXPECT_EQ(view.GetScale(), 64.0F);
    view.SetWindowScale(-std::numeric_limits<float>::infinity());
    EXPECT_EQ(view.GetScale(), -64.0F);
}

TEST_F(AbstractViewTest, TakesAScaleThatIsNoNumberForNewEachTime) {
    TestView view;
    view.SetWindowScale(std::numeric_limits<float>::quiet_NaN());
    view.SetWindowScale(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(view.scales.size(), 2U);
    EXPECT_EQ(view.sizes.size(), 2U);
}

TEST_F(AbstractViewTest, FollowsAResizeOfItsWindow) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    RaiseWindowEvent(SDL_WINDOWEVENT_RESIZED, WindowOf(view), 500, 300);
    ASSERT_FALSE(view.sizes.empty());
    EXPECT_EQ(view.sizes.back(), std::pair(500, 300));
    EXPECT_EQ(view.GetWidth(), 500);
    EXPECT_EQ(view.GetHeight(), 300);
}

TEST_F(AbstractViewTest, IgnoresWhatHappensToOtherWindows) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    RaiseWindowEvent(SDL_WINDOWEVENT_RESIZED, WindowOf(view) + 1, 500, 300);
    RaiseWindowEvent(SDL_WINDOWEVENT_RESIZED, 0, 500, 300);
    EXPECT_TRUE(view.sizes.empty());
    EXPECT_EQ(view.GetWidth(), 640);
}

TEST_F(AbstractViewTest, IgnoresAllOtherEventsOfItsWindow) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    RaiseWindowEvent(SDL_WINDOWEVENT_SIZE_CHANGED, WindowOf(view), 500, 300);
    RaiseWindowEvent(SDL_WINDOWEVENT_MOVED, WindowOf(view), 500, 300);
    for (const Uint32 type : {SDL_RENDER_TARGETS_RESET, SDL_RENDER_DEVICE_RESET}) {
        SDL_Event event{};
        event.type = type;
        Raise(event);
    }
    EXPECT_TRUE(view.sizes.empty());
    EXPECT_EQ(view.targetChanges, 0);
}

TEST_F(AbstractViewTest, HearsThatTheOutputsColourChanged) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    SDL_Event event{};
    event.type = 0x2002;
    Raise(event);
    EXPECT_EQ(view.targetChanges, 1);
}

TEST_F(AbstractViewTest, LeavesEveryEventInTheQueue) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    SDL_FlushEvents(SDL_FIRSTEVENT, SDL_LASTEVENT);
    SDL_Event event{};
    event.type = 0x2002;
    Raise(event);
    EXPECT_EQ(SDL_PollEvent(&event), 1);
    EXPECT_EQ(event.type, Uint32{0x2002});
}

TEST_F(AbstractViewTest, HearsNothingOnceItIsCleanedUp) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 640, 360), 1);
    const Uint32 window = WindowOf(view);
    view.CleanupWindow();
    RaiseWindowEvent(SDL_WINDOWEVENT_RESIZED, window, 500, 300);
    SDL_Event event{};
    event.type = 0x2002;
    Raise(event);
    EXPECT_TRUE(view.sizes.empty());
    EXPECT_EQ(view.targetChanges, 0);
}

TEST_F(AbstractViewTest, LetsTwoViewsEachFollowTheirOwnWindow) {
    TestView first;
    TestView second;
    ASSERT_EQ(first.Init(Handle(), 640, 360), 1);
    ASSERT_EQ(second.Init(Handle(), 640, 360), 1);
    RaiseWindowEvent(SDL_WINDOWEVENT_RESIZED, WindowOf(second), 500, 300);
    EXPECT_TRUE(first.sizes.empty());
    EXPECT_FALSE(second.sizes.empty());
}

}  // namespace
}  // namespace Corvanta::UI
