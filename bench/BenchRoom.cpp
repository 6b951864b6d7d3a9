#include "bench/BenchRoom.h"

#include <stdexcept>

#include "interface/SDLinterface.h"
#include "tests/fake_platform/CallLog.h"
#include "tests/fake_platform/FakePlatform.h"

namespace Corvanta::Bench {
namespace {

constexpr const char* kParticipant = "participant";

}  // namespace

void StartRoom(const Testing::XWindow& window, int width, int height) {
    Testing::Fake().Reset();
    // Its list would grow with every tick.
    Testing::Calls().SetRecording(false);
    SDLinterface_GlobalInit();
    SDLinterface_SetRoomWindow(window.Handle(), width, height);
    if (EnterRoom(nullptr, nullptr, "session", "room", false, true, false, nullptr, false) == -1) {
        throw std::runtime_error("The room could not be entered");
    }
    // The bar would slide away some seconds later, in the middle of a measurement. Drawing tools send it
    // away.
    SDLinterface_VideoRoomSetDrawToolEnabled(true);
}

FrameCallback& OfferParticipant(const char* streamId) {
    FrameCallback* const sink = Testing::Fake().OfferRemoteSource(streamId);
    if (sink == nullptr) throw std::runtime_error("The room refused a participant");
    return *sink;
}

void EndRoom() {
    SDLinterface_GlobalQuit();
    Testing::Fake().Reset();
}

BenchRoom::BenchRoom(int width, int height, const Testing::FrameSpec& spec) : window_(width, height) {
    StartRoom(window_, width, height);
    feed_.emplace(OfferParticipant(kParticipant), spec);
    SDLinterface_VideoRoomUpdateActiveSpeaker(kParticipant);
    BringFrame();
    SDL_WPFVideoRoomCheckInputAndRender();
}

BenchRoom::~BenchRoom() {
    EndRoom();
}

void BenchRoom::BringFrame() {
    if (!feed_->Deliver()) throw std::runtime_error("The main video refused a frame");
    feed_->AwaitReady();
}

}  // namespace Corvanta::Bench
