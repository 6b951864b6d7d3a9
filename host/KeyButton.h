// A button that shows a key and takes another one: pressed, it waits for the next key. Main thread only.
#pragma once

#include <QPushButton>

#include <functional>
#include <string>

namespace Corvanta::Host {

class KeyButton final : public QPushButton {
public:
    // onKey: a key was chosen, by the library's name.
    KeyButton(QWidget* parent, std::function<void(const std::string&)> onKey);

    // Empty: none.
    void SetKey(const std::string& key);

protected:
    bool event(QEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void SetWaiting(bool waiting);
    void Take(int qtKey);

    const std::function<void(const std::string&)> onKey_;
    std::string key_;
    bool waiting_ = false;
};

}  // namespace Corvanta::Host
