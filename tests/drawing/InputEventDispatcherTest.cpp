#include "drawing/InputEventDispatcher.h"

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/drawing/LocalUser.h"

namespace Corvanta::Drawing {
namespace {

using Testing::ButtonDown;
using Testing::ButtonUp;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Testing::KeyDown;
using Testing::KeyUp;
using Testing::Motion;

class Listener final : public InputEventListener {
public:
    void OnMouseDown(const SDL_Point& position) override { Note("down", position); }
    void OnMouseUp(const SDL_Point& position) override { Note("up", position); }
    void OnMouseMove(const SDL_Point& position) override { Note("move", position); }
    void OnKeyDown(int keycode) override { heard.push_back("key down " + std::to_string(keycode)); }
    void OnKeyUp(int keycode) override {
        heard.push_back("key up " + std::to_string(keycode));
        if (onKeyUp) onKeyUp();
    }

    std::vector<std::string> heard;
    std::function<void()> onKeyUp;

private:
    void Note(std::string what, const SDL_Point& position) {
        what += ' ';
        what += std::to_string(position.x);
        what += ' ';
        what += std::to_string(position.y);
        heard.push_back(std::move(what));
    }
};

TEST(InputEventDispatcher, PassesKeysAndPointerToEveryListener) {
    InputEventDispatcher dispatcher;
    Listener first;
    Listener second;
    dispatcher.Add(&first);
    dispatcher.Add(&second);
    dispatcher.Dispatch(Motion({30, 40}));
    dispatcher.Dispatch(ButtonDown());
    dispatcher.Dispatch(ButtonUp());
    dispatcher.Dispatch(KeyDown(97));
    dispatcher.Dispatch(KeyUp(98));
    EXPECT_THAT(first.heard, ElementsAre("move 30 40", "down 30 40", "up 30 40", "key down 97", "key up 98"));
    EXPECT_EQ(second.heard, first.heard);
}

TEST(InputEventDispatcher, TakesAnyButtonAtThePlaceOfTheLastMotion) {
    InputEventDispatcher dispatcher;
    Listener listener;
    dispatcher.Add(&listener);
    dispatcher.Dispatch(ButtonDown(SDL_BUTTON_RIGHT));
    dispatcher.Dispatch(Motion({5, 6}));
    dispatcher.Dispatch(ButtonUp(SDL_BUTTON_MIDDLE));
    EXPECT_THAT(listener.heard, ElementsAre("down 0 0", "move 5 6", "up 5 6"));
}

TEST(InputEventDispatcher, PassesOverThePointersDeparture) {
    InputEventDispatcher dispatcher;
    Listener listener;
    dispatcher.Add(&listener);
    dispatcher.Dispatch(Motion({5, 6}));
    dispatcher.Dispatch(Motion({-1, -1}));
    dispatcher.Dispatch(ButtonUp());
    dispatcher.Dispatch(Motion({-1, 3}));
    EXPECT_THAT(listener.heard, ElementsAre("move 5 6", "up 5 6", "move -1 3"));
}

TEST(InputEventDispatcher, KeepsOtherEventsToItself) {
    InputEventDispatcher dispatcher;
    Listener listener;
    dispatcher.Add(&listener);
    for (const Uint32 type : {SDL_MOUSEWHEEL, SDL_WINDOWEVENT, SDL_TEXTINPUT, SDL_QUIT}) {
        SDL_Event event{};
        event.type = type;
        dispatcher.Dispatch(event);
    }
    EXPECT_THAT(listener.heard, IsEmpty());
}

TEST(InputEventDispatcher, TellsNobodyWhoHasLeft) {
    InputEventDispatcher dispatcher;
    Listener listener;
    dispatcher.Add(&listener);
    dispatcher.Remove(&listener);
    dispatcher.Dispatch(KeyDown(97));
    EXPECT_THAT(listener.heard, IsEmpty());
}

TEST(InputEventDispatcher, LetsAListenerRemoveAllOfThemMeanwhile) {
    InputEventDispatcher dispatcher;
    Listener listeners[2];
    for (Listener& listener : listeners) {
        dispatcher.Add(&listener);
        listener.onKeyUp = [&] {
            for (Listener& other : listeners) dispatcher.Remove(&other);
        };
    }
    dispatcher.Dispatch(KeyUp(97));
    EXPECT_EQ(listeners[0].heard.size() + listeners[1].heard.size(), 1U);
    EXPECT_TRUE(dispatcher.listeners.empty());
}

}  // namespace
}  // namespace Corvanta::Drawing
