// A display of the program's own, for machines that have none: an Xvfb child process that lives as long as
// this object. Made and destroyed on the main thread, before and after everything that talks to the display.
#pragma once

#include <memory>
#include <string>
#include <variant>

#include <sys/types.h>

#include "host/Failure.h"

namespace Corvanta::Host {

class PrivateDisplay final {
public:
    // Starts Xvfb with one screen of this size in pixels, on a display number of its own choice, and waits
    // until it answers.
    [[nodiscard]] static std::variant<std::unique_ptr<PrivateDisplay>, Failure> Start(int width, int height);

    ~PrivateDisplay();
    PrivateDisplay(const PrivateDisplay&) = delete;
    PrivateDisplay& operator=(const PrivateDisplay&) = delete;

    // The value for DISPLAY, such as ":7".
    [[nodiscard]] const std::string& Name() const { return name_; }

private:
    PrivateDisplay(pid_t server, std::string name);

    pid_t server_;
    std::string name_;
};

// Whether the display that DISPLAY names can be reached.
[[nodiscard]] bool DisplayAnswers();

}  // namespace Corvanta::Host
