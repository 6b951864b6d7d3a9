// The room's notes, which everybody in the room writes together. What the person types goes to the room a
// second later; what others write meanwhile is merged into the text, and what is being typed is never lost by
// it: where both have changed the same lines, the others' come first and the person's below. Main thread
// only.
#pragma once

#include <QTimer>
#include <QWidget>

#include <string>

class QLabel;
class QPlainTextEdit;

namespace Corvanta::Host {

class NotesPage final : public QWidget {
public:
    explicit NotesPage(QWidget* parent);
    // Keeps what is not kept yet, if the room is still open. The application's end comes before that, and is
    // heeded.
    ~NotesPage() override;
    NotesPage(const NotesPage&) = delete;
    NotesPage& operator=(const NotesPage&) = delete;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    // What the person has typed goes to the room.
    void Keep();
    // What the room has comes here.
    void Take();
    void Look();
    [[nodiscard]] std::string Typed() const;
    // Changes no more than what differs: cursor, place and the steps back stay.
    void Show(const std::string& text);

    // Children of this page.
    QPlainTextEdit* text_ = nullptr;
    QLabel* problem_ = nullptr;
    QTimer keepTimer_;
    QTimer lookTimer_;
    // What the room had when the person began to type.
    std::string base_;
    bool isTooLong_ = false;
    // How often the room could not be reached, one look after the other.
    int lostLooks_ = 0;
};

}  // namespace Corvanta::Host
