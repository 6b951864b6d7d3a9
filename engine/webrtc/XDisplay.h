// Owners for a connection to the X display of the process and for what it answers. One thread at a time.
//
// The protocol's own library is used because it hands an error to whoever asked: with Xlib an error, such as
// that of a window that has just closed, ends the whole process unless a handler of the process is replaced.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

namespace Corvanta::Engine {

struct XReleaser {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

struct XAnswerReleaser {
    void operator()(void* answer) const { std::free(answer); }
};

template <class Answer>
using XAnswer = std::unique_ptr<Answer, XAnswerReleaser>;

class XDisplay final {
public:
    // Connects to the display that the environment names.
    XDisplay();

    // False when there is no display, or it has gone.
    [[nodiscard]] bool IsThere() const;
    [[nodiscard]] xcb_connection_t* Get() const { return connection.get(); }
    [[nodiscard]] xcb_window_t Root() const { return screen->root; }
    [[nodiscard]] const xcb_setup_t& Setup() const { return *xcb_get_setup(connection.get()); }
    // The number of a name that the display knows; XCB_ATOM_NONE for others.
    [[nodiscard]] xcb_atom_t Atom(const std::string& name) const;

private:
    std::unique_ptr<xcb_connection_t, XReleaser> connection;
    const xcb_screen_t* screen = nullptr;
};

}  // namespace Corvanta::Engine
