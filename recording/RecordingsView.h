// The view in which a recorded room is played back: its streams come as remote tracks. Threads as for the
// live room.
#pragma once

#include <string>
#include <vector>

#include "platform/RecordingHostFunctions.h"
#include "room/VideoRoomView.h"

namespace Corvanta::Recording {

class RecordingsView final : public Room::VideoRoomView {
public:
    explicit RecordingsView(int id);

    // Starts the view on the host's window; the result is AbstractView's. hostFunctions is copied.
    int Init(void* nativeHandle, int width, int height, const RecordingHostFunctions& hostFunctions);

    // The recording is connected under this index. duration in milliseconds, truncated to whole ones.
    void InitPlayback(int connectionIndex, const std::string& title, double durationMs);
    void Shutdown() override;

    // The recording ends, or starts anew: nothing that was drawn in it stays. Any thread.
    void Reset();
    // A status of the connection library. Any thread.
    void OnPlaybackStatus(int status);
    // Only these streams have a picture at the present position. Any thread.
    void OnActiveStreams(const std::vector<std::string>& streamIds);

    std::shared_ptr<FrameCallback> AddRemoteVideoSource(const std::string& streamId) override;
    // The pointer keeps its shape over a recording.
    void SetCursor(int cursor, int layer) override;

    [[nodiscard]] int GetPlaybackIndex() const { return connectionIndex_; }
    [[nodiscard]] const std::string& GetTitle() const { return title_; }
    [[nodiscard]] int64_t GetDurationMs() const { return durationMs_; }
    // Tiles that were active in the last OnActiveStreams. Any thread.
    [[nodiscard]] int GetActiveStreamCount() const;

private:
    RecordingHostFunctions hostFunctions_{};
    int connectionIndex_ = -1;
    std::string title_;
    int64_t durationMs_ = 0;
    // Guarded by remoteLock_.
    int activeStreamCount_ = 0;
};

}  // namespace Corvanta::Recording
