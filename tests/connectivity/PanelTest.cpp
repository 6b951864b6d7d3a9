#include "tests/connectivity/PanelTest.h"

#include <chrono>
#include <thread>

#include "ui/Clock.h"

namespace Corvanta::Testing {
namespace {

constexpr int64_t kSomeTimeNs = 7'000'123'456;
constexpr int64_t kRefreshMs = 3001;

}  // namespace

PanelTest::PanelTest() {
    nowNs_ = kSomeTimeNs;
    UI::SetClock([] { return nowNs_; });
    Clear();
    Calls().Clear();
}

PanelTest::~PanelTest() {
    panel_.reset();
    UI::SetClock(nullptr);
}

Connectivity::ThumbnailConnectivityPanel& PanelTest::MakeLocal() {
    panel_ = std::make_unique<Connectivity::ThumbnailConnectivityPanel>(true, "me", "session", "profile");
    return *panel_;
}

Connectivity::ThumbnailConnectivityPanel& PanelTest::MakeRemote() {
    panel_ = std::make_unique<Connectivity::ThumbnailConnectivityPanel>(false, "you", "session", "profile");
    return *panel_;
}

void PanelTest::Update(const SDL_Rect& area, int fontSize) {
    panel_->Update(Renderer(), &area, fontSize);
}

std::map<std::string, std::string> PanelTest::Shown() {
    panel_->ReleaseTextures();
    const size_t before = RasterisedTexts().size();
    panel_->rect.w = kArea.w;
    panel_->rect.h = kArea.h;
    panel_->Render(Renderer(), {kArea.x, kArea.y});
    const std::vector<std::string> texts = RasterisedTexts();
    std::map<std::string, std::string> shown;
    for (size_t index = before; index + 1 < texts.size(); index += 2) shown[texts[index]] = texts[index + 1];
    return shown;
}

void PanelTest::TakeAnswer() {
    WaitUntilIdle();
    const size_t requests = Calls().Count(kReceiveCall);
    ASSERT_GT(requests, 0U);
    TurnMs(kRefreshMs);
    Update();
    WaitForRequests(requests + 1);
}

void PanelTest::WaitForSends(size_t count) {
    ASSERT_TRUE(Calls().WaitFor(kSendCall, count));
}

void PanelTest::WaitForRequests(size_t count) {
    ASSERT_TRUE(Calls().WaitFor(kReceiveCall, count));
}

void PanelTest::WaitUntilIdle() const {
    ASSERT_TRUE(Eventually([&] { return !panel_->IsBusy(); }));
}

bool Eventually(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

void Barrier::Pass() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return isOpen_; });
}

void Barrier::Open() {
    const std::lock_guard lock(mutex_);
    isOpen_ = true;
    changed_.notify_all();
}

}  // namespace Corvanta::Testing
