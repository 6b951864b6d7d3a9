#include "host/KeyNames.h"

#include <QtCore/qnamespace.h>

#include <map>

namespace Corvanta::Host {
namespace {

const std::map<int, const char*> kNames = {
    {Qt::Key_Shift, "LeftShift"},
    {Qt::Key_Control, "LeftCtrl"},
    {Qt::Key_Alt, "LeftAlt"},
    {Qt::Key_Meta, "Command"},
    {Qt::Key_Space, "Space"},
    {Qt::Key_Backspace, "Back"},
    {Qt::Key_CapsLock, "Capital"},
    {Qt::Key_Tab, "Tab"},
    {Qt::Key_Return, "Return"},
    {Qt::Key_Enter, "Return"},
    {Qt::Key_Escape, "Escape"},
    {Qt::Key_PageUp, "PageUp"},
    {Qt::Key_PageDown, "PageDown"},
    {Qt::Key_Left, "Left"},
    {Qt::Key_Right, "Right"},
    {Qt::Key_Up, "Up"},
    {Qt::Key_Down, "Down"},
    {Qt::Key_Delete, "Delete"},
    {Qt::Key_QuoteLeft, "Oem3"},
    {Qt::Key_Minus, "OemMinus"},
    {Qt::Key_Equal, "OemPlus"},
    {Qt::Key_BracketLeft, "OemOpenBrackets"},
    {Qt::Key_BracketRight, "Oem6"},
    {Qt::Key_Backslash, "Oem5"},
    {Qt::Key_Semicolon, "Oem1"},
    {Qt::Key_Apostrophe, "OemQuotes"},
    {Qt::Key_Slash, "OemQuestion"},
    {Qt::Key_Period, "OemPeriod"},
    {Qt::Key_Comma, "OemComma"},
    // What Shift makes of a key names the same key.
    {Qt::Key_Exclam, "D1"},
    {Qt::Key_At, "D2"},
    {Qt::Key_NumberSign, "D3"},
    {Qt::Key_Dollar, "D4"},
    {Qt::Key_Percent, "D5"},
    {Qt::Key_AsciiCircum, "D6"},
    {Qt::Key_Ampersand, "D7"},
    {Qt::Key_Asterisk, "D8"},
    {Qt::Key_ParenLeft, "D9"},
    {Qt::Key_ParenRight, "D0"},
    {Qt::Key_AsciiTilde, "Oem3"},
    {Qt::Key_Underscore, "OemMinus"},
    {Qt::Key_Plus, "OemPlus"},
    {Qt::Key_BraceLeft, "OemOpenBrackets"},
    {Qt::Key_BraceRight, "Oem6"},
    {Qt::Key_Bar, "Oem5"},
    {Qt::Key_Colon, "Oem1"},
    {Qt::Key_QuoteDbl, "OemQuotes"},
    {Qt::Key_Question, "OemQuestion"},
    {Qt::Key_Greater, "OemPeriod"},
    {Qt::Key_Less, "OemComma"},
    {Qt::Key_Backtab, "Tab"},
};

}  // namespace

std::string KeyNameOf(int qtKey) {
    if (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9) return {'D', static_cast<char>(qtKey)};
    if (qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z) return {static_cast<char>(qtKey)};
    const auto found = kNames.find(qtKey);
    return found == kNames.end() ? std::string{} : found->second;
}

}  // namespace Corvanta::Host
