// Where the operating system keeps the file of a font family. One source for each system. Any thread, one at
// a time.
#pragma once

#include <string>

namespace Corvanta::UI {

class SystemFontFiles final {
public:
    SystemFontFiles();
    ~SystemFontFiles();
    SystemFontFiles(const SystemFontFiles&) = delete;
    SystemFontFiles& operator=(const SystemFontFiles&) = delete;

    // Path of the family's first face; empty when the family is not installed. On Linux, which does not ship
    // Arial, the free family of the same widths stands in for it where it is missing, since all other missing
    // families are drawn in it. Nothing else is answered in a family's stead.
    [[nodiscard]] std::string Find(const std::string& family) const;

private:
    // What the system's own library needs between calls; null where that could not be had.
    void* first_ = nullptr;
    [[maybe_unused]] void* second_ = nullptr;
};

}  // namespace Corvanta::UI
