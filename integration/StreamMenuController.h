// Holds the entries of the stream menu: shows those of applications that run, lights those whose stream is
// being captured, and places the menus that they open. Buttons and menus are borrowed: Clear comes before
// they go. Render thread only; what the process monitor tells on its own thread is asked for in each frame.
#pragma once

#include <SDL.h>

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>

#include "integration/ProcessMonitorListenerSDL.h"
#include "ui/Menu.h"
#include "ui/ToggleButton.h"

namespace Corvanta::UI {

class StreamMenuController final {
public:
    // Subscribes to the process monitor. When that fails, no application ever runs.
    StreamMenuController();
    ~StreamMenuController();
    StreamMenuController(const StreamMenuController&) = delete;
    StreamMenuController& operator=(const StreamMenuController&) = delete;

    // Ends the subscription, waiting for a report in progress; the second call does nothing.
    void Unsubscribe();
    // Forgets all buttons, menus and the toolbar's refresh.
    void Clear();

    // Entries of the two applications. They show only while their application runs.
    void SetResolveEntry(ToggleButton* entry) { SetEntry(resolve_, entry); }
    void SetFlameEntry(ToggleButton* entry) { SetEntry(flame_, entry); }
    // The menus that these entries open.
    void SetResolveMenu(Menu* menu) { resolve_.menu = menu; }
    void SetFlameMenu(Menu* menu) { flame_.menu = menu; }

    void SetNdiItem(ToggleButton* item) { ndiItem_ = item; }
    void SetDeckLinkItem(ToggleButton* item) { deckLinkItem_ = item; }
    void SetFileItem(ToggleButton* item) { fileItem_ = item; }
    void SetDeviceItem(ToggleButton* item) { deviceItem_ = item; }
    void SetScreenShareItem(ToggleButton* item) { screenShareItem_ = item; }
    void SetUrlItem(ToggleButton* item) { urlItem_ = item; }
    void SetMediaSiloItem(ToggleButton* item) { mediaSiloItem_ = item; }
    void SetElgatoItem(ToggleButton* item) { elgatoItem_ = item; }

    // The menu that holds all entries, and its button in the bar. Without them the entries stand in the bar.
    void SetMainMenu(ToggleButton* button, Menu* menu);
    // Called when a menu closes because its entry has gone: the bar may show its tooltips again.
    void SetToolbarRefresh(std::function<void()> refresh) { toolbarRefresh_ = std::move(refresh); }

    // Which entries show, as of the monitor's last report. The map lives as long as the controller.
    [[nodiscard]] const std::map<ToggleButton*, bool>& GetRunningEntries();
    // Appends the wanted entries to the main menu, in the order of their applications, and takes the others
    // out.
    void ApplyRunningEntries(const std::map<ToggleButton*, bool>& entries);
    // Lights each item whose stream is being captured, and the main button with any of them. A click lights
    // none: the media engine alone tells.
    void UpdateCaptureStates();
    // Id of the application's process, -1 when it is not running.
    [[nodiscard]] int IsProcessRunning(int application) const;

    // Draws the open menus over what the frame has drawn: the main menu on the toolbar, right-aligned with
    // its button, and each application's menu at the left of its entry, or without a main menu above it. A
    // menu whose entry does not show closes. Lengths in logical pixels.
    void Render(SDL_Renderer* renderer, int viewHeight, int toolbarHeight);

private:
    struct Application {
        int32_t number;
        ToggleButton* entry = nullptr;
        Menu* menu = nullptr;
    };

    void SetEntry(Application& application, ToggleButton* entry);
    [[nodiscard]] bool IsShown(const ToggleButton* entry) const;
    // False when there is no place for a menu of that entry.
    [[nodiscard]] bool PlaceMenu(const Application& application, int toolbarTop, SDL_Point& topLeft) const;
    void CloseMenu(Menu& menu);

    ToggleButton* mainButton_ = nullptr;
    Menu* mainMenu_ = nullptr;
    Application resolve_;
    Application flame_;
    ToggleButton* ndiItem_ = nullptr;
    ToggleButton* deckLinkItem_ = nullptr;
    ToggleButton* fileItem_ = nullptr;
    ToggleButton* deviceItem_ = nullptr;
    ToggleButton* screenShareItem_ = nullptr;
    ToggleButton* urlItem_ = nullptr;
    ToggleButton* mediaSiloItem_ = nullptr;
    ToggleButton* elgatoItem_ = nullptr;
    // The monitored entries with their applications' numbers, and whether these run.
    std::map<ToggleButton*, int32_t> monitoredEntries_;
    std::map<ToggleButton*, bool> runningEntries_;
    std::function<void()> toolbarRefresh_;
    const std::shared_ptr<Integrations::ProcessMonitorListenerSDL> monitorListener_;
    bool subscribed_ = true;
};

}  // namespace Corvanta::UI
