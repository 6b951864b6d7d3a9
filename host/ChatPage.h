// The lines that the person has written in this room, and a field for the next. Main thread only.
#pragma once

#include <QWidget>

class QLineEdit;
class QListWidget;

namespace Corvanta::Host {

class ChatPage final : public QWidget {
public:
    explicit ChatPage(QWidget* parent);

private:
    void Send();

    // Children of this page.
    QListWidget* lines_ = nullptr;
    QLineEdit* field_ = nullptr;
};

}  // namespace Corvanta::Host
