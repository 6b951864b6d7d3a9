#include "bench/BenchRoom.h"

#include <chrono>
#include <stdexcept>
#include <thread>
#include <utility>

#include "interface/SDLinterface.h"
#include "tests/fake_platform/CallLog.h"
#include "tests/fake_platform/FakePlatform.h"

namespace Corvanta::Bench {
namespace {

constexpr const char* kParticipant = "participant";
constexpr std::chrono::seconds kLongestWait{10};

}  // namespace

BenchRoom::BenchRoom(int width, int height, const Testing::FrameSpec& spec)
    : window_(width, height), frames_{Testing::MakeFrame(spec), Testing::MakeFrame(spec)} {
    Testing::Fake().Reset();
    // Its list would grow with every tick.
    Testing::Calls().SetRecording(false);
    SDLinterface_GlobalInit();
    SDLinterface_SetRoomWindow(window_.Handle(), width, height);
    if (EnterRoom(nullptr, nullptr, "session", "room", false, true, false, nullptr, false) == -1) {
        throw std::runtime_error("The room could not be entered");
    }
    sink_ = Testing::Fake().OfferRemoteSource(kParticipant);
    if (sink_ == nullptr) throw std::runtime_error("The room refused the participant");
    SDLinterface_VideoRoomUpdateActiveSpeaker(kParticipant);
    BringFrame();
    SDL_WPFVideoRoomCheckInputAndRender();
}

BenchRoom::~BenchRoom() {
    SDLinterface_GlobalQuit();
    Testing::Fake().Reset();
}

void BenchRoom::BringFrame() {
    const auto& frame = frames_[next_];
    next_ = 1 - next_;
    const auto& previous = frames_[next_];
    (*sink_)(frame);
    const auto end = std::chrono::steady_clock::now() + kLongestWait;
    // The tile owns the new frame beside us, and has let go of the one before.
    while (frame.use_count() != 2 || previous.use_count() != 1) {
        if (std::chrono::steady_clock::now() > end) throw std::runtime_error("A frame was not taken up");
        std::this_thread::yield();
    }
}

}  // namespace Corvanta::Bench
