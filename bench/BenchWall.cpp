#include "bench/BenchWall.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>

#include "bench/BenchRoom.h"
#include "bench/SdlReplay.h"
#include "bench/Turns.h"
#include "interface/SDLinterface.h"
#include "tests/fake_platform/FakePlatform.h"

namespace Corvanta::Bench {
namespace {

constexpr int kRoomWindow = 0;
constexpr int kWallWindow = 1;
// The layout button's middle in the room's window.
constexpr float kButtonX = 54.0F / BenchWall::kWidth;
constexpr float kButtonY = 670.0F / BenchWall::kHeight;
constexpr int kWarmUpTicks = 8;
constexpr std::chrono::milliseconds kSlideTime{400};
// Sixteen buttons, most with a label, a title, and three rows of a menu.
constexpr size_t kLeastCallsOfControls = 60;
// Of a tile in a column or a strip.
constexpr int kTileWidth = 213;
constexpr int kTileHeight = 160;
const Testing::FrameSpec kSmall{.width = 640, .height = 360, .type = VideoFrameBufferType::YUV420};
const Testing::FrameSpec kLarge{.width = 1920, .height = 1080, .type = VideoFrameBufferType::YUV420};

std::string ParticipantName(int index) {
    std::string name = "participant ";
    name += std::to_string(index);
    return name;
}

// The sink of the main video, which is a second tile of its participant beside the one on the wall.
FrameCallback& FindMainSink(const std::string& streamId) {
    for (const auto& [id, sink] : Testing::Fake().RegisteredSinks()) {
        if (id == streamId) return *sink;
    }
    throw std::runtime_error("The detached wall left the room without a main video");
}

// How far the thumb of the scrollbar can go.
int ThumbTravel(int viewport, int content) {
    const double thumb = static_cast<double>(viewport) * viewport / content;
    return viewport - static_cast<int>(thumb);
}

}  // namespace

BenchWall::BenchWall(int participants, WallLayout layout)
    : roomWindow_(kWidth, kHeight), wallWindow_(kWidth, kHeight), layout_(layout) {
    StartRoom(roomWindow_, kWidth, kHeight);
    feeds_.reserve(static_cast<size_t>(participants));
    for (int i = 0; i < participants; ++i) {
        feeds_.emplace_back(OfferParticipant(ParticipantName(i).c_str()), kSmall);
    }
    if (SDLinterface_CreateDetachedView(wallWindow_.Handle(), kWidth, kHeight) != 1) {
        throw std::runtime_error("The wall could not be detached");
    }
    SDLinterface_SetDetachedLayout(static_cast<int>(layout));
    const std::string main = ParticipantName(0);
    SDLinterface_VideoRoomUpdateActiveSpeaker(main);
    // Nothing is hovered.
    SDLinterface_PushMouseMoveEvent(kWallWindow, -1.0F, -1.0F);
    Tick();
    mainFeed_.emplace(FindMainSink(main), kLarge);
    taken_.reserve(feeds_.size() + 1);
    WarmUp();
}

BenchWall::~BenchWall() {
    EndRoom();
}

void BenchWall::OpenMenu() {
    const size_t before = RecordingOf([this] { Tick(); }).GetCallCount();
    SDLinterface_VideoRoomSetDrawToolEnabled(false);
    SDLinterface_PushMouseMoveEvent(kRoomWindow, kButtonX, kButtonY);
    WarmUp();
    SDLinterface_PushMouseButtonDownEvent(kRoomWindow);
    SDLinterface_PushMouseButtonUpEvent(kRoomWindow);
    // The bar slides in.
    std::this_thread::sleep_for(kSlideTime);
    WarmUp();
    const size_t after = RecordingOf([this] { Tick(); }).GetCallCount();
    if (after < before + kLeastCallsOfControls) throw std::runtime_error("The bar's menu did not open");
}

void BenchWall::Tick() {
    SDL_WPFVideoRoomCheckInputAndRender();
    SDLinterface_TickDetachedView();
}

void BenchWall::BringFrames() {
    taken_.clear();
    isLastFed_ = false;
    for (FrameFeed& feed : feeds_) {
        if (!feed.Deliver()) continue;
        taken_.push_back(&feed);
        isLastFed_ = &feed == &feeds_.back();
    }
    fedTiles_ = taken_.size();
    if (mainFeed_->Deliver()) taken_.push_back(&*mainFeed_);
    for (const FrameFeed* feed : taken_) feed->AwaitReady();
}

void BenchWall::WarmUp() {
    for (int i = 0; i < kWarmUpTicks; ++i) Refresh();
}

void BenchWall::Refresh() {
    BringFrames();
    Tick();
}

void BenchWall::ScrollOn(int steps) {
    const int count = static_cast<int>(feeds_.size());
    const int travel = layout_ == WallLayout::Strip ? ThumbTravel(kWidth, count * kTileWidth)
                                                    : ThumbTravel(kHeight, count * kTileHeight);
    // The wheel goes the other way than the thumb, and steps beyond the end are cut off.
    const int step = (travel + steps - 1) / steps;
    SDLinterface_PushScrollWheelEvent(kWallWindow, 0, -step);
    WarmUp();
}

}  // namespace Corvanta::Bench
