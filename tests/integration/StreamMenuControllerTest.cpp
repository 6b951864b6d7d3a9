#include "integration/StreamMenuController.h"

#include <map>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include "tests/fake_platform/AllocationCounter.h"
#include "tests/integration/MenuTestBase.h"

namespace Corvanta::UI {
namespace {

using Testing::AllocationCounter;
using Testing::Call;
using Testing::Calls;
using ::testing::ElementsAre;
using Testing::Fake;
using Testing::FakeResults;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::UnorderedElementsAre;

class StreamMenuControllerTest : public Testing::ToolbarMenuTest {
protected:
    StreamMenuControllerTest() {
        controller.emplace();
        controller->SetResolveEntry(resolve);
        controller->SetFlameEntry(flame);
    }

    ToggleButton* const resolve = AddToBar(bar);
    ToggleButton* const flame = AddToBar(bar);
    std::optional<StreamMenuController> controller;
};

TEST_F(StreamMenuControllerTest, SubscribesFromItsBeginningToUnsubscribe) {
    EXPECT_EQ(Fake().ProcessListeners(), 1U);
    const auto subscribed = Calls().Of("ProcessMonitor_Subscribe");
    ASSERT_EQ(subscribed.size(), 1U);
    controller->Unsubscribe();
    EXPECT_EQ(Fake().ProcessListeners(), 0U);
    controller->Unsubscribe();
    controller.reset();
    EXPECT_EQ(Calls().Count("ProcessMonitor_Unsubscribe"), 1U);
}

TEST_F(StreamMenuControllerTest, UnsubscribesWhenItIsDestroyed) {
    controller.reset();
    EXPECT_EQ(Fake().ProcessListeners(), 0U);
}

TEST_F(StreamMenuControllerTest, KeepsTheLastReportAfterItHasUnsubscribed) {
    Fake().FireProcesses({{0, 12}});
    controller->Unsubscribe();
    Fake().FireProcesses({});
    EXPECT_EQ(controller->IsProcessRunning(0), 12);
}

TEST_F(StreamMenuControllerTest, ShowsNoEntryWhileNeitherProgramRuns) {
    EXPECT_THAT(controller->GetRunningEntries(),
                UnorderedElementsAre(Pair(resolve, false), Pair(flame, false)));
    EXPECT_EQ(controller->IsProcessRunning(0), -1);
}

TEST_F(StreamMenuControllerTest, ShowsAnEntryFromTheReportOn) {
    std::thread monitor([] { Fake().FireProcesses({{0, 0}}); });
    monitor.join();
    EXPECT_THAT(controller->GetRunningEntries(),
                UnorderedElementsAre(Pair(resolve, true), Pair(flame, false)));
    EXPECT_EQ(controller->IsProcessRunning(0), 0);
    Fake().FireProcesses({{1, 77}});
    EXPECT_THAT(controller->GetRunningEntries(),
                UnorderedElementsAre(Pair(resolve, false), Pair(flame, true)));
}

TEST_F(StreamMenuControllerTest, TakesAProcessOfNoIdForNoneAndIgnoresOtherApplications) {
    Fake().FireProcesses({{0, -1}, {5, 3}});
    EXPECT_THAT(controller->GetRunningEntries(),
                UnorderedElementsAre(Pair(resolve, false), Pair(flame, false)));
}

TEST_F(StreamMenuControllerTest, ForgetsAnEntryThatAnotherReplaces) {
    ToggleButton* const other = AddToBar(bar);
    controller->SetResolveEntry(other);
    Fake().FireProcesses({{0, 1}});
    EXPECT_THAT(controller->GetRunningEntries(), UnorderedElementsAre(Pair(other, true), Pair(flame, false)));
    controller->SetResolveEntry(nullptr);
    EXPECT_THAT(controller->GetRunningEntries(), ElementsAre(Pair(flame, false)));
}

TEST_F(StreamMenuControllerTest, LeavesNothingToThePointerOfAnEntryThatHasGone) {
    Fake().FireProcesses({{0, 1}});
    bar.UpdateRightGroup(controller->GetRunningEntries());
    bar.Render(Renderer(), {0, Testing::kToolbarTop});
    ASSERT_GT(resolve->rect.w, 0);
    resolve->hovered = true;
    Fake().FireProcesses({});
    bar.UpdateRightGroup(controller->GetRunningEntries());
    EXPECT_FALSE(resolve->hovered);
    EXPECT_EQ(resolve->rect, (SDL_Rect{0, 0, 0, 0}));
}

TEST_F(StreamMenuControllerTest, AppendsRunningEntriesToTheMainMenuInTheOrderOfTheirApplications) {
    const auto menu = MakeMenu(0);
    Button* const first = AddRow(*menu);
    controller->SetMainMenu(AddToBar(bar), menu.get());
    // Whichever address is the lower one.
    for (const auto& [front, back] : {std::pair(resolve, flame), std::pair(flame, resolve)}) {
        controller->SetResolveEntry(nullptr);
        controller->SetFlameEntry(nullptr);
        controller->SetResolveEntry(front);
        controller->SetFlameEntry(back);
        Fake().FireProcesses({{0, 1}, {1, 2}});
        for (int frame = 0; frame < 3; ++frame)
            controller->ApplyRunningEntries(controller->GetRunningEntries());
        EXPECT_THAT(menu->GetItems(), ElementsAre(first, front, back));
        Fake().FireProcesses({});
        for (int frame = 0; frame < 3; ++frame)
            controller->ApplyRunningEntries(controller->GetRunningEntries());
        EXPECT_THAT(menu->GetItems(), ElementsAre(first));
    }
}

TEST_F(StreamMenuControllerTest, GivesAnEntryTheSizeOfTheRowsThatItJoins) {
    const auto menu = MakeMenu(1);
    controller->SetMainMenu(AddToBar(bar), menu.get());
    menu->SetScale(2.0F);
    controller->ApplyRunningEntries({{resolve, true}});
    EXPECT_EQ(resolve->width, 2 * Testing::kMenuWidth);
    EXPECT_EQ(resolve->height, 96);
}

TEST_F(StreamMenuControllerTest, AppliesNothingWithoutAMainMenu) {
    controller->ApplyRunningEntries({{resolve, true}, {nullptr, true}});
    const auto menu = MakeMenu(0);
    controller->SetMainMenu(nullptr, menu.get());
    controller->ApplyRunningEntries({{nullptr, true}});
    EXPECT_THAT(menu->GetItems(), IsEmpty());
}

TEST_F(StreamMenuControllerTest, LightsEachItemByItsOwnStreamAlone) {
    using Setter = void (StreamMenuController::*)(ToggleButton*);
    const std::vector<std::pair<Setter, std::optional<StreamType>>> rows = {
        {&StreamMenuController::SetElgatoItem, StreamType::Elgato},
        {&StreamMenuController::SetNdiItem, StreamType::NDI},
        {&StreamMenuController::SetDeckLinkItem, StreamType::DeckLink},
        {&StreamMenuController::SetDeviceItem, StreamType::Device},
        {&StreamMenuController::SetFileItem, StreamType::File},
        {&StreamMenuController::SetUrlItem, StreamType::URL},
        {&StreamMenuController::SetScreenShareItem, std::nullopt}};
    ToggleButton* const main = AddToBar(bar);
    controller->SetMainMenu(main, nullptr);
    std::vector<ToggleButton*> items;
    for (const auto& [set, type] : rows) {
        items.push_back(AddToBar(bar));
        ((*controller).*set)(items.back());
    }
    for (size_t capturing = 0; capturing < rows.size(); ++capturing) {
        Fake().Set([&](FakeResults& results) {
            const auto& type = rows[capturing].second;
            results.screenShareCapturing = !type.has_value();
            results.nativeStreamsCapturing.clear();
            if (type.has_value()) results.nativeStreamsCapturing.insert(*type);
        });
        controller->UpdateCaptureStates();
        for (size_t item = 0; item < items.size(); ++item) {
            EXPECT_EQ(items[item]->IsToggled(), item == capturing) << capturing << ' ' << item;
        }
        EXPECT_TRUE(main->IsToggled()) << capturing;
    }
    Fake().Set([](FakeResults& results) {
        results.screenShareCapturing = false;
        results.nativeStreamsCapturing.clear();
    });
    Calls().Clear();
    // What a click leaves does not last.
    for (ToggleButton* item : items) item->OnClick();
    controller->UpdateCaptureStates();
    for (const ToggleButton* item : items) EXPECT_FALSE(item->IsToggled());
    EXPECT_FALSE(main->IsToggled());
    EXPECT_THAT(Calls().All(), ElementsAre(Call{"WebRTC_IsNativeStreamCapturing", {"8"}},
                                           Call{"WebRTC_IsNativeStreamCapturing", {"5"}},
                                           Call{"WebRTC_IsNativeStreamCapturing", {"6"}},
                                           Call{"WebRTC_IsNativeStreamCapturing", {"3"}},
                                           Call{"WebRTC_IsNativeStreamCapturing", {"4"}},
                                           Call{"WebRTC_IsNativeStreamCapturing", {"7"}},
                                           Call{"WebRTC_IsScreenShareCapturing", {}}));
}

TEST_F(StreamMenuControllerTest, ShowsNoCaptureStateOfApplicationsAndOfMediaSilo) {
    ToggleButton* const main = AddToBar(bar);
    ToggleButton* const mediaSilo = AddToBar(bar);
    controller->SetMainMenu(main, nullptr);
    controller->SetMediaSiloItem(mediaSilo);
    for (ToggleButton* item : {resolve, flame, mediaSilo, main}) item->SetToggled(true);
    controller->UpdateCaptureStates();
    for (const ToggleButton* item : {resolve, flame, mediaSilo, main}) EXPECT_FALSE(item->IsToggled());
}

TEST_F(StreamMenuControllerTest, ForgetsEverythingThatItBorrowed) {
    const auto menu = MakeMenu(1);
    Open(*menu);
    ToggleButton* const main = AddToBar(bar);
    controller->SetMainMenu(main, menu.get());
    controller->SetResolveMenu(menu.get());
    controller->SetNdiItem(main);
    controller->Clear();
    Calls().Clear();
    main->SetToggled(true);
    controller->UpdateCaptureStates();
    controller->ApplyRunningEntries({{resolve, true}});
    controller->Render(Renderer(), Testing::kViewHeight, Testing::kToolbarHeight);
    EXPECT_TRUE(main->IsToggled());
    EXPECT_THAT(controller->GetRunningEntries(), IsEmpty());
    EXPECT_EQ(menu->GetItems().size(), 1U);
    EXPECT_THAT(Calls().Names(), IsEmpty());
    EXPECT_EQ(Fake().ProcessListeners(), 1U);
}

TEST_F(StreamMenuControllerTest, AllocatesNothingInTheSteadyTick) {
    const auto main = MakeMenu(3);
    const auto child = MakeMenu(2);
    controller->SetMainMenu(AddToBar(bar), main.get());
    controller->SetResolveMenu(child.get());
    controller->SetNdiItem(AddRow(*main));
    controller->SetScreenShareItem(AddRow(*main));
    Fake().FireProcesses({{0, 1}});
    Open(*main);
    Open(*child);
    const auto tick = [&] {
        controller->ApplyRunningEntries(controller->GetRunningEntries());
        bar.Render(Renderer(), {0, Testing::kToolbarTop});
        controller->UpdateCaptureStates();
        controller->Render(Renderer(), Testing::kViewHeight, Testing::kToolbarHeight);
        SDL_RenderPresent(Renderer());
    };
    for (int frame = 0; frame < 4; ++frame) tick();
    ASSERT_TRUE(child->visible);
    ASSERT_EQ(main->GetItems().size(), 6U);
    AllocationCounter::Start();
    for (int frame = 0; frame < 10; ++frame) tick();
    EXPECT_EQ(AllocationCounter::Stop(), 0U) << AllocationCounter::Bytes() << " bytes";
}

}  // namespace
}  // namespace Corvanta::UI
