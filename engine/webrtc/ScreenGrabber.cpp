#include "engine/webrtc/ScreenGrabber.h"

#include <sys/ipc.h>
#include <sys/shm.h>
#include <xcb/composite.h>
#include <xcb/shm.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <cstring>

namespace Corvanta::Engine {

namespace {

constexpr uint32_t kAllPlanes = ~0U;
constexpr std::size_t kPixelBytes = 4;

bool Succeeded(const XDisplay& display, xcb_void_cookie_t request) {
    return XAnswer<xcb_generic_error_t>(xcb_request_check(display.Get(), request)) == nullptr;
}

// The display leaves the fourth byte undefined.
void CopyOpaque(uint8_t* target, std::size_t targetStride, const uint8_t* source, int width, int height) {
    const std::size_t row = static_cast<std::size_t>(width) * kPixelBytes;
    for (int y = 0; y < height; ++y) {
        for (std::size_t x = 0; x < row; x += kPixelBytes) {
            uint32_t pixel = 0;
            std::memcpy(&pixel, source + x, kPixelBytes);
            pixel |= 0xFF000000U;
            std::memcpy(target + x, &pixel, kPixelBytes);
        }
        source += row;
        target += targetStride;
    }
}

}  // namespace

ScreenGrabber::ScreenGrabber(std::uint32_t capturedWindow) : window(capturedWindow) {
    if (!display.IsThere()) return;
    xcb_connection_t* const connection = display.Get();
    const auto has = [&](xcb_extension_t& extension) {
        const auto* const data = xcb_get_extension_data(connection, &extension);
        return data != nullptr && data->present != 0;
    };
    hasSharedMemory = has(xcb_shm_id);
    // Each extension wants to be told which version its user knows.
    if (has(xcb_xfixes_id)) {
        hasPointer = XAnswer<xcb_xfixes_query_version_reply_t>(xcb_xfixes_query_version_reply(
                         connection, xcb_xfixes_query_version(connection, 4, 0), nullptr)) != nullptr;
    }
    if (window == 0 || !has(xcb_composite_id)) return;
    const XAnswer<xcb_composite_query_version_reply_t> version(xcb_composite_query_version_reply(
        connection, xcb_composite_query_version(connection, 0, 4), nullptr));
    // Gives the window a picture of its own behind the screen's. It ends with the connection.
    hasComposition = version && Succeeded(display, xcb_composite_redirect_window_checked(
                                                       connection, window, XCB_COMPOSITE_REDIRECT_AUTOMATIC));
}

ScreenGrabber::~ScreenGrabber() {
    ReleaseSharedMemory();
}

std::optional<std::string> ScreenGrabber::Problem() const {
    if (!display.IsThere()) return "There is no X display whose screen could be shared";
    const XAnswer<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(
        display.Get(), xcb_get_geometry(display.Get(), window == 0 ? display.Root() : window), nullptr));
    if (!geometry) return "The window is no longer there";
    if (geometry->depth != 24 && geometry->depth != 32) {
        return "Only a display with 8 bits a colour can be shared, this one has " +
               std::to_string(geometry->depth) + " a pixel";
    }
    if (display.Setup().image_byte_order != XCB_IMAGE_ORDER_LSB_FIRST) {
        return "The display's order of bytes is not supported";
    }
    return std::nullopt;
}

ScreenGrabber::Look ScreenGrabber::Check() {
    last = {};
    if (!display.IsThere()) return last;
    xcb_connection_t* const connection = display.Get();
    const xcb_window_t target = window == 0 ? display.Root() : window;
    const auto attributesRequest = xcb_get_window_attributes(connection, target);
    const auto geometryRequest = xcb_get_geometry(connection, target);
    const XAnswer<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(connection, attributesRequest, nullptr));
    const XAnswer<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection, geometryRequest, nullptr));
    if (!attributes || !geometry) return last;
    depth = geometry->depth;
    borderWidth = geometry->border_width;
    last.width = geometry->width;
    last.height = geometry->height;
    last.state = attributes->map_state == XCB_MAP_STATE_VIEWABLE ? State::Visible : State::Hidden;
    return last;
}

bool ScreenGrabber::Take(uint8_t* target, std::size_t stride) {
    xcb_connection_t* const connection = display.Get();
    xcb_drawable_t source = window == 0 ? display.Root() : window;
    xcb_pixmap_t own = XCB_PIXMAP_NONE;
    // Named anew for each picture, since the window gets another one whenever it is shown or sized.
    if (hasComposition) {
        const xcb_pixmap_t name = xcb_generate_id(connection);
        if (Succeeded(display, xcb_composite_name_window_pixmap_checked(connection, window, name))) {
            own = name;
            source = name;
        }
    }
    const int inset = own != XCB_PIXMAP_NONE ? borderWidth : 0;
    const std::size_t size =
        static_cast<std::size_t>(last.width) * static_cast<std::size_t>(last.height) * kPixelBytes;
    const bool isTaken = EnsureSharedMemory(size) ? TakeShared(source, inset, inset, target, stride)
                                                  : TakeCopied(source, inset, inset, target, stride);
    if (own != XCB_PIXMAP_NONE) xcb_free_pixmap(connection, own);
    if (isTaken && hasPointer) DrawPointer(target, stride);
    return isTaken;
}

bool ScreenGrabber::EnsureSharedMemory(std::size_t size) {
    if (!hasSharedMemory || size <= shared.size) return hasSharedMemory;
    ReleaseSharedMemory();
    const int id = ::shmget(IPC_PRIVATE, size, IPC_CREAT | 0600);
    if (id < 0) return hasSharedMemory = false;
    void* const memory = ::shmat(id, nullptr, 0);
    const bool isMapped = memory != reinterpret_cast<void*>(-1);  // NOLINT(performance-no-int-to-ptr)
    const uint32_t segment = xcb_generate_id(display.Get());
    // A display on another machine cannot reach this one's memory.
    hasSharedMemory = isMapped && Succeeded(display, xcb_shm_attach_checked(display.Get(), segment,
                                                                            static_cast<uint32_t>(id), 0));
    // It goes as soon as nobody uses it.
    ::shmctl(id, IPC_RMID, nullptr);
    if (!hasSharedMemory) {
        if (isMapped) ::shmdt(memory);
        return false;
    }
    shared = {.size = size, .segment = segment, .memory = memory};
    return true;
}

void ScreenGrabber::ReleaseSharedMemory() {
    if (shared.memory == nullptr) return;
    if (display.IsThere()) xcb_shm_detach(display.Get(), shared.segment);
    ::shmdt(shared.memory);
    shared = {};
}

bool ScreenGrabber::TakeShared(xcb_drawable_t source, int x, int y, uint8_t* target, std::size_t stride) {
    const auto request =
        xcb_shm_get_image(display.Get(), source, static_cast<int16_t>(x), static_cast<int16_t>(y),
                          static_cast<uint16_t>(last.width), static_cast<uint16_t>(last.height), kAllPlanes,
                          XCB_IMAGE_FORMAT_Z_PIXMAP, shared.segment, 0);
    // An error arrives in place of the answer.
    const XAnswer<xcb_shm_get_image_reply_t> answer(xcb_shm_get_image_reply(display.Get(), request, nullptr));
    if (!answer) return false;
    CopyOpaque(target, stride, static_cast<const uint8_t*>(shared.memory), last.width, last.height);
    return true;
}

bool ScreenGrabber::TakeCopied(xcb_drawable_t source, int x, int y, uint8_t* target,
                               std::size_t stride) const {
    const auto request = xcb_get_image(
        display.Get(), XCB_IMAGE_FORMAT_Z_PIXMAP, source, static_cast<int16_t>(x), static_cast<int16_t>(y),
        static_cast<uint16_t>(last.width), static_cast<uint16_t>(last.height), kAllPlanes);
    const XAnswer<xcb_get_image_reply_t> answer(xcb_get_image_reply(display.Get(), request, nullptr));
    if (!answer) return false;
    const std::size_t size =
        static_cast<std::size_t>(last.width) * static_cast<std::size_t>(last.height) * kPixelBytes;
    if (static_cast<std::size_t>(xcb_get_image_data_length(answer.get())) < size) return false;
    CopyOpaque(target, stride, xcb_get_image_data(answer.get()), last.width, last.height);
    return true;
}

void ScreenGrabber::DrawPointer(uint8_t* target, std::size_t stride) const {
    xcb_connection_t* const connection = display.Get();
    const auto pointerRequest = xcb_xfixes_get_cursor_image(connection);
    int originX = 0;
    int originY = 0;
    if (window != 0) {
        const XAnswer<xcb_translate_coordinates_reply_t> origin(xcb_translate_coordinates_reply(
            connection, xcb_translate_coordinates(connection, window, display.Root(), 0, 0), nullptr));
        if (origin) {
            originX = origin->dst_x;
            originY = origin->dst_y;
        }
    }
    const XAnswer<xcb_xfixes_get_cursor_image_reply_t> pointer(
        xcb_xfixes_get_cursor_image_reply(connection, pointerRequest, nullptr));
    if (!pointer) return;
    const uint32_t* const pixels = xcb_xfixes_get_cursor_image_cursor_image(pointer.get());
    const int left = pointer->x - pointer->xhot - originX;
    const int top = pointer->y - pointer->yhot - originY;
    for (int y = std::max(0, -top); y < pointer->height && top + y < last.height; ++y) {
        for (int x = std::max(0, -left); x < pointer->width && left + x < last.width; ++x) {
            // Its colours are multiplied by the alpha in the top byte.
            const uint32_t pixel = pixels[y * pointer->width + x];
            const uint32_t rest = 255U - (pixel >> 24U);
            uint8_t* const place = target + static_cast<std::size_t>(top + y) * stride +
                                   static_cast<std::size_t>(left + x) * kPixelBytes;
            for (unsigned channel = 0; channel < 3; ++channel) {
                const uint32_t own = pixel >> (8U * channel) & 0xFFU;
                place[channel] =
                    static_cast<uint8_t>(std::min(255U, own + (place[channel] * rest + 127U) / 255U));
            }
        }
    }
}

}  // namespace Corvanta::Engine
