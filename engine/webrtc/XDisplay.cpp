#include "engine/webrtc/XDisplay.h"

namespace Corvanta::Engine {

XDisplay::XDisplay() {
    int number = 0;
    connection.reset(xcb_connect(nullptr, &number));
    if (!IsThere()) return;
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection.get()));
    for (; number > 0 && screens.rem > 1; --number) xcb_screen_next(&screens);
    screen = screens.data;
}

bool XDisplay::IsThere() const {
    return xcb_connection_has_error(connection.get()) == 0;
}

xcb_atom_t XDisplay::Atom(const std::string& name) const {
    const auto request =
        xcb_intern_atom(connection.get(), 1, static_cast<uint16_t>(name.size()), name.c_str());
    const XAnswer<xcb_intern_atom_reply_t> answer(xcb_intern_atom_reply(connection.get(), request, nullptr));
    return answer ? answer->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

}  // namespace Corvanta::Engine
