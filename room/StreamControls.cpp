// The toolbar's buttons that start and stop every kind of shared stream. Starting runs in the host and may
// show dialogs, so it is left to the action thread; whether a stream runs is the media engine's word alone.
#include <optional>
#include <utility>

#include "room/RoomToolbar.h"
#include "room/VideoRoomView.h"

namespace Corvanta::Room {

UI::ToggleButton* RoomToolbar::AddStreamButton(const char* iconName, const char* label,
                                               const char* idleTooltip, const char* activeTooltip,
                                               std::function<void()> onToggledOn,
                                               std::function<void()> onToggledOff) {
    return AddToggle(UI::BarGroup::Right, {iconName, iconName, idleTooltip, activeTooltip},
                     std::move(onToggledOn), std::move(onToggledOff), label);
}

UI::ToggleButton* RoomToolbar::AddNativeStreamButton(const char* iconName, const char* label,
                                                     const char* idleTooltip, const char* activeTooltip,
                                                     StreamType type) {
    const auto start = [this, type] {
        RunOnActionThread([function = hostCallbacks_.StartNativeStream, type] {
            if (function != nullptr) function(static_cast<int32_t>(type));
        });
    };
    // An address stays the main video until the host has stopped it.
    const auto forget = [this, type] {
        view_.ForgetOwnStream(type == StreamType::URL ? std::optional(type) : std::nullopt);
    };
    return AddStreamButton(iconName, label, idleTooltip, activeTooltip, start, forget);
}

void RoomToolbar::BuildStreamControls() {
    const auto nothing = [] {};
    const auto onActionThread = [this](void (*HostCallbacks::*function)()) {
        return [this, call = hostCallbacks_.*function] {
            RunOnActionThread([call] {
                if (call != nullptr) call();
            });
        };
    };
    processListener_.SetScreenShareItem(
        AddStreamButton("icons/screenshare.png", "Screen", "Screenshare", "Stop screenshare",
                        onActionThread(&HostCallbacks::StartScreenShare), nothing));
    processListener_.SetDeviceItem(AddNativeStreamButton("icons/device-native-stream.png", "Other",
                                                         "Stream other devices", "Stop other device stream",
                                                         StreamType::Device));
    processListener_.SetFileItem(AddNativeStreamButton("icons/file-native-stream.png", "Files",
                                                       "Stream files", "Stop file stream", StreamType::File));
    processListener_.SetUrlItem(AddNativeStreamButton(
        "icons/url-stream.png", "URL (beta)", "Stream URL (beta)", "Stop URL stream", StreamType::URL));
    processListener_.SetNdiItem(AddNativeStreamButton("icons/ndi-stream.png", "NDI®", " Stream NDI®",
                                                      " Stop NDI® stream", StreamType::NDI));
    processListener_.SetDeckLinkItem(AddNativeStreamButton(
        "icons/decklink-stream.png", "DeckLink", "Stream DeckLink", "Stop DeckLink", StreamType::DeckLink));
    BuildStreamMenus();
    processListener_.SetMediaSiloItem(AddStreamButton(
        "icons/media-silo-stream.png", "MediaSilo", "Stream MediaSilo file", "Stop MediaSilo stream",
        onActionThread(&HostCallbacks::StartMediaSiloStream), nothing));
    processListener_.SetElgatoItem(AddNativeStreamButton("icons/elgato.png", "Elgato", "Stream Elgato",
                                                         "Stop Elgato stream", StreamType::Elgato));
}

void RoomToolbar::BuildStreamMenus() {
    const auto nothing = [] {};
    UI::ToggleButton* const davinci = AddToggle(
        UI::BarGroup::Right,
        {"icons/davinci-no-arrow.png", "icons/davinci.png", "DaVinci Resolve", "DaVinci Resolve"},
        [this] { ToggleMenu(*davinciMenu_); }, nothing, "DaVinci Resolve");
    UI::ToggleButton* const flame = AddStreamButton(
        "icons/flame-stream.png", "Autodesk Flame", "Autodesk Flame", "Autodesk Flame",
        [this] { ToggleMenu(*flameMenu_); }, nothing);

    davinciMenu_ = MakeMenu(davinci);
    AddApplicationItem(*davinciMenu_, "icons/decklink-stream.png", "Stream with DeckLink",
                       HostApplicationDaVinciResolve, StreamType::DeckLink);
    AddApplicationItem(*davinciMenu_, "icons/screenshare.png", "Stream with screenshare",
                       HostApplicationDaVinciResolve, StreamType::Screenshare);
    flameMenu_ = MakeMenu(flame);
    AddApplicationItem(*flameMenu_, "icons/decklink-stream.png", "Stream with DeckLink",
                       HostApplicationAutodeskFlame, StreamType::DeckLink);
    AddApplicationItem(*flameMenu_, "icons/ndi-stream.png", "Stream with NDI®", HostApplicationAutodeskFlame,
                       StreamType::NDI);
    AddApplicationItem(*flameMenu_, "icons/screenshare.png", "Stream with screenshare",
                       HostApplicationAutodeskFlame, StreamType::Screenshare);

    processListener_.SetResolveEntry(davinci);
    processListener_.SetFlameEntry(flame);
    processListener_.SetResolveMenu(davinciMenu_.get());
    processListener_.SetFlameMenu(flameMenu_.get());
}

void RoomToolbar::AddApplicationItem(UI::Menu& menu, const char* iconName, const char* label,
                                     HostApplication application, StreamType type) {
    menu.AddButton(iconName, label, [this, application, type] {
        const int processId = processListener_.IsProcessRunning(application);
        RunOnActionThread([function = hostCallbacks_.StartApplicationStream, application, type, processId] {
            if (function != nullptr) function(application, static_cast<int32_t>(type), processId);
        });
    });
}

}  // namespace Corvanta::Room
