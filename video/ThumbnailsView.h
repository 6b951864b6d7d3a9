// The second window of a room whose wall is detached: it draws the shared wall and passes its window's events
// to it. It has no tiles of its own. Host thread, inside the room's locks, but for QueueEvent.
#pragma once

#include <SDL.h>

#include <deque>
#include <memory>
#include <mutex>
#include <string>

#include "ui/AbstractView.h"
#include "ui/LockOrder.h"
#include "video/VideoThumbnails.h"

namespace Corvanta::Video {

class ThumbnailsView final : public UI::AbstractView {
public:
    ThumbnailsView();
    // As Stop. No other thread may be about to queue an event.
    ~ThumbnailsView();

    // One tick: the events so far, hover and scrolling, one drawing. The first drawing moves the tiles here.
    // Nothing without a wall.
    void Render() override;
    void OnResized(int /*width*/, int /*height*/) override {}
    void OnContentScaleChanged(float scale) override;

    void SetThumbnails(std::shared_ptr<VideoThumbnails> thumbnails);
    // Of the room's main video; on each drawing of the room.
    void SetMainStreamId(const std::string& streamId);
    // An event of this window, for the next tick. Any thread.
    void QueueEvent(const SDL_Event& event);
    // Lets go of the wall and destroys renderer and window. Tiles that were not moved elsewhere lose their
    // textures first.
    void Stop();

private:
    [[nodiscard]] std::shared_ptr<VideoThumbnails> GetThumbnails() const;
    [[nodiscard]] bool TakeEvent(SDL_Event& event);
    void HandleEvents(VideoThumbnails& wall);
    // False once a function that the wall called has stopped the view.
    [[nodiscard]] bool MayDraw() const;

    mutable UI::OrderedMutex<std::mutex, UI::LockRank::Leaf> viewLock_;
    // guards: thumbnails_, eventQueue_. Not held while the wall works: it calls back.
    std::shared_ptr<VideoThumbnails> thumbnails_;
    std::deque<SDL_Event> eventQueue_;

    bool tilesMoved_ = false;
    SDL_Point pointer_{-1, 0};
    SDL_Point wheel_{0, 0};
    std::string mainStreamId_;
};

}  // namespace Corvanta::Video
