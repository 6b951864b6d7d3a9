#include "host/NotesPage.h"

#include <chrono>
#include <string>

#include "engine/Engine.h"

namespace Corvanta::Host {
namespace {

constexpr const char* kNotes = "Room.Notes";
// Not at every letter.
constexpr std::chrono::milliseconds kKeepAfter{1000};

}  // namespace

NotesPage::NotesPage(QWidget* parent) : QPlainTextEdit(parent) {
    setPlaceholderText(QStringLiteral("Notes of your own"));
    setTabChangesFocus(true);
    setPlainText(QString::fromStdString(Engine::ReadSetting(kNotes)));
    timer_.setSingleShot(true);
    timer_.callOnTimeout([this] { Keep(); });
    QObject::connect(this, &QPlainTextEdit::textChanged, this, [this] { timer_.start(kKeepAfter); });
}

NotesPage::~NotesPage() {
    if (timer_.isActive()) Keep();
}

void NotesPage::Keep() {
    timer_.stop();
    Engine::WriteSetting(kNotes, toPlainText().toStdString());
}

}  // namespace Corvanta::Host
