// The panel at the right of the room: chat, notes, the people in the room, and how the person stands in it.
// Main thread only.
#pragma once

#include <QTimer>
#include <QWidget>

#include <functional>
#include <optional>
#include <set>
#include <string>

#include "host/PeopleList.h"
#include "host/RoomState.h"

class QLabel;
class QTabWidget;

namespace Corvanta::Host {

class SidePanel final : public QWidget {
public:
    // What the person may ask for here.
    struct Wishes {
        std::function<void()> close;
        std::function<void()> openSettings;
        PeopleList::OnRemove remove;
        // Something has happened that the person does not see: somebody has come while the panel was hidden,
        // or has written while the chat was not open.
        std::function<void()> tellNews;
    };

    SidePanel(QWidget* parent, Wishes wishes);

    // pushToTalkKey: by the library's name; empty: none.
    void SetState(const RoomState& state, const std::string& pushToTalkKey);
    // The keyboard goes to the page that is open.
    void FocusPage();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void Look();
    void OnChatLine();
    // Marks the tab of the chat, or takes the mark away.
    void MarkChat(bool isUnread);

    const Wishes wishes_;
    // Children of this panel.
    QTabWidget* pages_ = nullptr;
    PeopleList* people_ = nullptr;
    QLabel* state_ = nullptr;
    QTimer timer_;
    // Who was there when last looked; nothing before the first look.
    std::optional<std::set<std::string>> known_;
};

}  // namespace Corvanta::Host
