// An overlay of a tile that shows ten facts about its participant's connection and machine. The own tile's
// panel reads them here and reports them every five seconds, shown or not; a remote tile's asks for that
// participant's last report every three seconds while it is shown. Render thread, but for OnConnectionStats.
#pragma once

#include <SDL.h>

#include <memory>
#include <string>

#include "ui/GraphicElementInterface.h"
#include "ui/VideoScrollbar.h"

namespace Corvanta::Connectivity {

class ConnectionStats;

class ThumbnailConnectivityPanel final : public UI::GraphicElementInterface {
public:
    // Hidden at first. A local panel starts its first report at once. sessionName and profileId name the room
    // and the local user in the reports.
    ThumbnailConnectivityPanel(bool isLocal, std::string streamId, std::string sessionName,
                               std::string profileId);
    // Waits for a request that is under way.
    ~ThumbnailConnectivityPanel() override;

    // Once a drawing of the tile, also while hidden. area: the tile, in logical pixels.
    void Update(SDL_Renderer* renderer, const SDL_Rect* area, int fontSize);
    void Render(SDL_Renderer* renderer, SDL_Point topLeft) override;
    // The close button alone takes clicks.
    bool OnClick() override;
    void OnHover(const SDL_Point& mouse) override;
    // A press on the scrollbar starts to drag it: true.
    bool ScrollbarClick();
    [[nodiscard]] UI::VideoScrollbar& GetScrollbar();
    // The pictures and texts come back with the next Render, on whatever renderer.
    void ReleaseTextures();

    // A request is under way, for which the destructor would wait.
    [[nodiscard]] bool IsBusy() const;

    // The figures that WebRTC reports of the local user's connection go here. Shared with its callback, which
    // may outlive the panel.
    [[nodiscard]] std::shared_ptr<ConnectionStats> GetConnectionStats() const;

private:
    class Content;
    std::unique_ptr<Content> content_;
};

}  // namespace Corvanta::Connectivity
