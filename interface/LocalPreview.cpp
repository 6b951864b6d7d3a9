// The own camera's picture in a window of its own. It belongs to no room: it outlives the room it was opened
// in, and shows the camera of whichever room is there.
#include <algorithm>
#include <memory>
#include <string>

#include "interface/ProcessState.h"
#include "interface/SDLinterface.h"
#include "interface/TickState.h"
#include "platform/MediaManager.h"
#include "video/SingleVideoView.h"

namespace Corvanta::Interface {
namespace {

constexpr int kNoRoomView = -1;

class LocalPreview final {
public:
    explicit LocalPreview(Video::PictureFit fit) : view_(kNoRoomView, fit) {}
    ~LocalPreview() {
        Follow({});
        std::erase(gExtraViews, &view_);
        view_.Shutdown();
    }
    LocalPreview(const LocalPreview&) = delete;
    LocalPreview& operator=(const LocalPreview&) = delete;

    // False when there is no window to draw on.
    [[nodiscard]] bool Open(void* nativeHandle, int width, int height) {
        if (view_.Init(nativeHandle, width, height) != 1) return false;
        view_.CreateLocalFrame();
        // Its tile is one of the own camera too, but shows no figures.
        if (const auto room = CurrentView()) room->RenewConnectionStats();
        gExtraViews.push_back(&view_);
        // Until the first picture comes the window is black, not whatever was in that memory.
        view_.Resize(width, height);
        FollowCamera();
        return true;
    }

    void Tick() {
        FollowCamera();
        view_.Render();
    }

private:
    // The camera may start, stop or become another device at any time.
    void FollowCamera() {
        const auto room = CurrentView();
        Follow(room != nullptr ? room->GetLocalStreamId() : std::string{});
    }

    void Follow(const std::string& sourceId) {
        if (sourceId == sourceId_) return;
        FrameCallback* const sink = view_.GetFrameSink().get();
        // The media manager only borrows the sink, and on return calls it no more.
        if (!sourceId_.empty()) MediaManager_UnregisterCallback(sourceId_, sink);
        if (!sourceId.empty()) MediaManager_RegisterCallback(sourceId, sink);
        sourceId_ = sourceId;
    }

    Video::SingleVideoView view_;
    // Where the sink is registered; empty for nowhere.
    std::string sourceId_;
};

// Never destroyed: a host that ends without quitting may have taken the window system down already.
std::unique_ptr<LocalPreview>& gLocalPreview = *new std::unique_ptr<LocalPreview>;

}  // namespace
}  // namespace Corvanta::Interface

using namespace Corvanta;
using namespace Corvanta::Interface;

int SDLinterface_OpenLocalPreview(void* nativeHandle, int width, int height, bool fit) {
    const HostScope host;
    SDLinterface_CloseLocalPreview();
    auto preview = std::make_unique<LocalPreview>(fit ? Video::PictureFit::Whole : Video::PictureFit::Filled);
    if (!preview->Open(nativeHandle, width, height)) return -1;
    gLocalPreview = std::move(preview);
    return 1;
}

void SDLinterface_TickLocalPreview(void) {
    const HostScope host;
    if (gLocalPreview != nullptr) gLocalPreview->Tick();
}

void SDLinterface_CloseLocalPreview(void) {
    const HostScope host;
    gLocalPreview.reset();
}
