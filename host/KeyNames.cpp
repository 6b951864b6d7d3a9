#include "host/KeyNames.h"

#include <QtCore/qnamespace.h>

#include <map>

namespace Corvanta::Host {
namespace {

const std::map<int, const char*> kNames = {
    {Qt::Key_Shift, "LeftShift"},   {Qt::Key_Control, "LeftCtrl"},
    {Qt::Key_Alt, "LeftAlt"},       {Qt::Key_Meta, "Command"},
    {Qt::Key_Space, "Space"},       {Qt::Key_Backspace, "Back"},
    {Qt::Key_CapsLock, "Capital"},  {Qt::Key_Tab, "Tab"},
    {Qt::Key_Return, "Return"},     {Qt::Key_Enter, "Return"},
    {Qt::Key_Escape, "Escape"},     {Qt::Key_PageUp, "PageUp"},
    {Qt::Key_PageDown, "PageDown"}, {Qt::Key_Left, "Left"},
    {Qt::Key_Right, "Right"},       {Qt::Key_Up, "Up"},
    {Qt::Key_Down, "Down"},         {Qt::Key_Delete, "Delete"},
    {Qt::Key_QuoteLeft, "Oem3"},    {Qt::Key_Minus, "OemMinus"},
    {Qt::Key_Equal, "OemPlus"},     {Qt::Key_BracketLeft, "OemOpenBrackets"},
    {Qt::Key_BracketRight, "Oem6"}, {Qt::Key_Backslash, "Oem5"},
    {Qt::Key_Semicolon, "Oem1"},    {Qt::Key_Apostrophe, "OemQuotes"},
    {Qt::Key_Slash, "OemQuestion"}, {Qt::Key_Period, "OemPeriod"},
    {Qt::Key_Comma, "OemComma"},
};

}  // namespace

std::string KeyNameOf(int qtKey) {
    if (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9) return {'D', static_cast<char>(qtKey)};
    if (qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z) return {static_cast<char>(qtKey)};
    const auto found = kNames.find(qtKey);
    return found == kNames.end() ? std::string{} : found->second;
}

}  // namespace Corvanta::Host
