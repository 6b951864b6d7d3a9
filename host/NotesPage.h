// The person's notes, kept in the settings while they are written. Main thread only.
#pragma once

#include <QPlainTextEdit>
#include <QTimer>

namespace Corvanta::Host {

class NotesPage final : public QPlainTextEdit {
public:
    explicit NotesPage(QWidget* parent);
    // Keeps what is not kept yet.
    ~NotesPage() override;
    NotesPage(const NotesPage&) = delete;
    NotesPage& operator=(const NotesPage&) = delete;

private:
    void Keep();

    QTimer timer_;
};

}  // namespace Corvanta::Host
