// What has been written in this room, by the person and by the others, and a field for the next line. Main
// thread only.
#pragma once

#include <QWidget>

#include <chrono>
#include <functional>

#include "engine/Engine.h"

class QLabel;
class QLineEdit;
class QListWidget;

namespace Corvanta::Host {

class ChatPage final : public QWidget {
public:
    // onLine: somebody else has written, and the line is shown.
    ChatPage(QWidget* parent, std::function<void()> onLine);
    ~ChatPage() override;

    void Add(const Engine::ChatLine& line);

private:
    void Send();
    void AddRow(const QString& name, std::chrono::system_clock::time_point time, const QString& text);

    const std::function<void()> onLine_;
    // Children of this page.
    QListWidget* lines_ = nullptr;
    QLineEdit* field_ = nullptr;
    QLabel* problem_ = nullptr;
};

}  // namespace Corvanta::Host
