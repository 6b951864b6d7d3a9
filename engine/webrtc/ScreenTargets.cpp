#include "engine/webrtc/ScreenTargets.h"

#include <glib.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

#include "engine/Engine.h"
#include "engine/webrtc/GstSupport.h"
#include "engine/webrtc/XDisplay.h"

namespace Corvanta::Engine {

namespace {

constexpr const char* kWholeScreen = "Whole screen";
// Of a title, and of a list of windows, in units of four bytes.
constexpr uint32_t kLongestProperty = 4096;
// Smaller ones are no windows to a person, but a toolkit's helpers.
constexpr uint16_t kSmallestSide = 16;

class Property final {
public:
    Property(const XDisplay& display, xcb_window_t window, xcb_atom_t name) {
        if (name == XCB_ATOM_NONE) return;
        const auto request =
            xcb_get_property(display.Get(), 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, kLongestProperty);
        answer.reset(xcb_get_property_reply(display.Get(), request, nullptr));
    }

    [[nodiscard]] std::string_view Text() const {
        if (!answer || answer->format != 8) return {};
        const auto* const text = static_cast<const char*>(xcb_get_property_value(answer.get()));
        return {text, static_cast<std::size_t>(xcb_get_property_value_length(answer.get()))};
    }
    [[nodiscard]] std::vector<uint32_t> Numbers() const {
        if (!answer || answer->format != 32) return {};
        std::vector<uint32_t> numbers(static_cast<std::size_t>(xcb_get_property_value_length(answer.get())) /
                                      sizeof(uint32_t));
        if (!numbers.empty()) {
            std::memcpy(numbers.data(), xcb_get_property_value(answer.get()),
                        numbers.size() * sizeof(uint32_t));
        }
        return numbers;
    }

private:
    XAnswer<xcb_get_property_reply_t> answer;
};

std::string TitleOf(const XDisplay& display, xcb_window_t window) {
    const Property name(display, window, display.Atom("_NET_WM_NAME"));
    const Property oldName(display, window, XCB_ATOM_WM_NAME);
    const std::string_view text = name.Text().empty() ? oldName.Text() : name.Text();
    if (text.empty()) return "Window " + std::to_string(window);
    const auto length = static_cast<gssize>(text.size());
    if (g_utf8_validate(text.data(), length, nullptr) != FALSE) return std::string(text);
    // The older property's encoding, in which every text is one.
    return TakeText(g_convert(text.data(), length, "UTF-8", "ISO-8859-1", nullptr, nullptr, nullptr));
}

bool IsSharable(const XDisplay& display, xcb_window_t window) {
    const auto attributesRequest = xcb_get_window_attributes(display.Get(), window);
    const auto geometryRequest = xcb_get_geometry(display.Get(), window);
    const XAnswer<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(display.Get(), attributesRequest, nullptr));
    const XAnswer<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(display.Get(), geometryRequest, nullptr));
    return attributes && geometry && attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT &&
           attributes->map_state == XCB_MAP_STATE_VIEWABLE && attributes->override_redirect == 0 &&
           std::min(geometry->width, geometry->height) >= kSmallestSide;
}

// As the window manager lists them, minimised ones too; without one, what is to be seen.
std::vector<xcb_window_t> Windows(const XDisplay& display) {
    const Property managed(display, display.Root(), display.Atom("_NET_CLIENT_LIST"));
    std::vector<xcb_window_t> windows = managed.Numbers();
    if (!windows.empty()) return windows;
    const XAnswer<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(display.Get(), xcb_query_tree(display.Get(), display.Root()), nullptr));
    if (!tree) return windows;
    const xcb_window_t* const children = xcb_query_tree_children(tree.get());
    for (int index = 0; index < xcb_query_tree_children_length(tree.get()); ++index) {
        if (IsSharable(display, children[index])) windows.push_back(children[index]);
    }
    return windows;
}

}  // namespace

std::vector<ScreenTarget> ListScreenTargets() {
    const XDisplay display;
    std::vector<ScreenTarget> targets;
    if (!display.IsThere()) return targets;
    targets.push_back({.window = 0, .title = kWholeScreen, .processId = -1});
    const xcb_atom_t processName = display.Atom("_NET_WM_PID");
    for (const xcb_window_t window : Windows(display)) {
        const std::vector<uint32_t> numbers = Property(display, window, processName).Numbers();
        const std::int32_t processId = numbers.empty() ? -1 : static_cast<std::int32_t>(numbers.front());
        // Sharing the room's own window would show the room in itself.
        if (processId == ::getpid()) continue;
        targets.push_back({.window = window, .title = TitleOf(display, window), .processId = processId});
    }
    return targets;
}

std::optional<std::string> FindScreenTitle(std::uint32_t window) {
    const XDisplay display;
    if (!display.IsThere()) return std::nullopt;
    if (window == 0) return kWholeScreen;
    const XAnswer<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(display.Get(), xcb_get_geometry(display.Get(), window), nullptr));
    if (!geometry) return std::nullopt;
    return TitleOf(display, window);
}

}  // namespace Corvanta::Engine
