#include "host/ShownName.h"

namespace Corvanta::Host {
namespace {

bool TurnsTextRound(QChar letter) {
    const char16_t code = letter.unicode();
    return (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

bool BreaksTheLine(QChar letter) {
    return letter.category() == QChar::Other_Control || letter.category() == QChar::Separator_Line ||
           letter.category() == QChar::Separator_Paragraph;
}

}  // namespace

QString ShownName(const std::string& name) {
    QString shown = QString::fromStdString(name);
    for (QChar& letter : shown) {
        if (BreaksTheLine(letter) || TurnsTextRound(letter)) letter = QChar::Space;
    }
    return shown.simplified();
}

}  // namespace Corvanta::Host
