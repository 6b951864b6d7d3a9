// White space as the wire's texts know it, whatever the host's locale. Any thread.
#pragma once

namespace Corvanta::Drawing {

// Blank, tab, line feed, vertical tab, form feed, carriage return.
[[nodiscard]] constexpr bool IsAsciiSpace(char character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

}  // namespace Corvanta::Drawing
