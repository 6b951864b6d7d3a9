// Bytes in, whole lines out. One thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace Corvanta::Engine {

class LineBuffer final {
public:
    // A line with its line feed may have that many bytes.
    explicit LineBuffer(std::size_t longestLine);

    void Add(std::string_view bytes);
    // The next line, without its line feed.
    [[nodiscard]] std::optional<std::string> Next();
    // Whether the next line is longer than allowed, complete or not. Nothing more comes out then.
    [[nodiscard]] bool IsTooLong() const { return isTooLong; }

private:
    const std::size_t limit;
    std::string held;
    // Where the next line begins, and up to where no line feed was found.
    std::size_t begin = 0;
    std::size_t searched = 0;
    bool isTooLong = false;
};

}  // namespace Corvanta::Engine
