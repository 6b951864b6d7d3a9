// The screen and single windows that the local user shares, on a display of the tests' own.
#include <gtest/gtest.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "engine/Engine.h"
#include "platform/Connections.h"
#include "platform/MediaManager.h"
#include "platform/WebRTC.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/SharingVisitor.h"
#include "tests/fake_platform/VirtualDisplay.h"

namespace Corvanta::Engine {
namespace {

constexpr uint32_t kRed = 0xC03020;
constexpr uint32_t kBlue = 0x2040B0;

// A window of one colour.
class PaintedWindow final {
public:
    PaintedWindow(int x, int y, int width, int height, uint32_t color)
        : connection(xcb_connect(nullptr, nullptr)) {
        const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
        id = xcb_generate_id(connection);
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, id, screen->root, static_cast<int16_t>(x),
                          static_cast<int16_t>(y), static_cast<uint16_t>(width),
                          static_cast<uint16_t>(height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          screen->root_visual, XCB_CW_BACK_PIXEL, &color);
        Show();
    }
    ~PaintedWindow() { xcb_disconnect(connection); }
    PaintedWindow(const PaintedWindow&) = delete;
    PaintedWindow& operator=(const PaintedWindow&) = delete;

    void Show() {
        xcb_map_window(connection, id);
        Sync();
    }
    void Hide() {
        xcb_unmap_window(connection, id);
        Sync();
    }
    void Resize(uint32_t width, uint32_t height) {
        const std::vector<uint32_t> size{width, height};
        xcb_configure_window(connection, id, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size.data());
        Sync();
    }
    void Paint(uint32_t color) {
        xcb_change_window_attributes(connection, id, XCB_CW_BACK_PIXEL, &color);
        xcb_clear_area(connection, 0, id, 0, 0, 0, 0);
        Sync();
    }
    void Close() {
        xcb_destroy_window(connection, id);
        Sync();
    }
    void SetTitle(const std::string& title) {
        SetProperty("_NET_WM_NAME", Atom("UTF8_STRING"), 8, title.data(), title.size());
    }
    void SetProcess(uint32_t process) { SetProperty("_NET_WM_PID", XCB_ATOM_CARDINAL, 32, &process, 1); }

    xcb_window_t id = 0;

private:
    [[nodiscard]] xcb_atom_t Atom(const std::string& name) const {
        xcb_intern_atom_reply_t* const answer = xcb_intern_atom_reply(
            connection, xcb_intern_atom(connection, 0, static_cast<uint16_t>(name.size()), name.c_str()),
            nullptr);
        const xcb_atom_t atom = answer->atom;
        std::free(answer);
        return atom;
    }
    void SetProperty(const std::string& name, xcb_atom_t type, uint8_t format, const void* data,
                     std::size_t count) {
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id, Atom(name), type, format,
                            static_cast<uint32_t>(count), data);
        Sync();
    }
    // Returns when the display has carried out what was asked.
    void Sync() const {
        std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    }

    xcb_connection_t* connection;
};

class ScreenSharing : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(Testing::EnsureDisplay());
        visitor.Enter();
    }

    [[nodiscard]] static std::optional<std::string> Share(const PaintedWindow& window) {
        return ShareStream(StreamType::Screenshare, std::to_string(window.id));
    }
    [[nodiscard]] bool Shows(const std::string& id, int width, int height, uint32_t color) const {
        return visitor.WaitForFrame(id, [&](const VideoFrameBuffer& frame) {
            return frame.GetWidth() == width && frame.GetHeight() == height &&
                   PixelAt(frame, 1, 1) == color && PixelAt(frame, width - 1, height - 1) == color;
        });
    }

    SharingVisitor visitor;
};

TEST_F(ScreenSharing, ListsTheWholeScreenThenTheWindows) {
    PaintedWindow first(0, 0, 200, 100, kRed);
    first.SetTitle("Zeichnung – größer");
    first.SetProcess(4711);
    const PaintedWindow second(300, 0, 200, 100, kBlue);
    PaintedWindow own(600, 0, 200, 100, kBlue);
    own.SetProcess(static_cast<uint32_t>(::getpid()));
    PaintedWindow hidden(600, 200, 200, 100, kBlue);
    hidden.Hide();
    const auto targets = ListScreenTargets();
    ASSERT_EQ(targets.size(), 3U);
    EXPECT_EQ(targets[0].window, 0U);
    EXPECT_FALSE(targets[0].title.empty());
    EXPECT_EQ(targets[0].processId, -1);
    EXPECT_EQ(targets[1].window, first.id);
    EXPECT_EQ(targets[1].title, "Zeichnung – größer");
    EXPECT_EQ(targets[1].processId, 4711);
    EXPECT_EQ(targets[2].window, second.id);
    EXPECT_NE(targets[2].title.find(std::to_string(second.id)), std::string::npos) << "it has no other name";
    EXPECT_EQ(targets[2].processId, -1);
}

TEST_F(ScreenSharing, ShowsAWindowAsItIs) {
    PaintedWindow window(50, 60, 321, 203, kRed);
    window.SetTitle("Red");
    ASSERT_EQ(Share(window), std::nullopt);
    EXPECT_TRUE(WebRTC_IsScreenShareCapturing());
    EXPECT_EQ(Connections_GetLocalUserStreamID(StreamType::Screenshare), "local-screen");
    EXPECT_EQ(Connections_GetLocalDisplayName(StreamType::Screenshare), "Red");
    ASSERT_TRUE(Shows("screen-0", 321, 203, kRed));
    const auto frame = visitor.LastFrame("screen-0");
    EXPECT_EQ(frame->GetType(), VideoFrameBufferType::RGB);
    EXPECT_EQ(frame->GetColorSpace().GetRange(), ColorRange::Full);
    EXPECT_EQ(dynamic_cast<const RGBFrameBuffer&>(*frame).GetBuffer()[3], 255);
    window.Paint(kBlue);
    EXPECT_TRUE(Shows("screen-0", 321, 203, kBlue));
    EXPECT_EQ(visitor.Events(), std::vector<std::string>{"add 1 screen-0"});
}

TEST_F(ScreenSharing, ComesAtFifteenPicturesASecond) {
    const PaintedWindow window(0, 0, 320, 200, kRed);
    ASSERT_EQ(Share(window), std::nullopt);
    ASSERT_TRUE(visitor.GetsMore("screen-0", 1));
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(visitor.GetsMore("screen-0", 15));
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    EXPECT_GT(elapsed.count(), 0.85);
}

TEST_F(ScreenSharing, FollowsTheWindowsSize) {
    PaintedWindow window(0, 0, 320, 200, kRed);
    ASSERT_EQ(Share(window), std::nullopt);
    ASSERT_TRUE(Shows("screen-0", 320, 200, kRed));
    for (const auto& [width, height] : {std::pair{500, 333}, std::pair{17, 19}, std::pair{640, 480}}) {
        window.Resize(static_cast<uint32_t>(width), static_cast<uint32_t>(height));
        EXPECT_TRUE(Shows("screen-0", width, height, kRed)) << width;
    }
    EXPECT_EQ(visitor.Events(), std::vector<std::string>{"add 1 screen-0"});
}

TEST_F(ScreenSharing, ShowsAWindowThatIsCoveredAndReachesOverTheEdge) {
    const PaintedWindow window(-40, -30, 320, 200, kRed);
    const PaintedWindow cover(0, 0, 600, 400, kBlue);
    ASSERT_EQ(Share(window), std::nullopt);
    EXPECT_TRUE(Shows("screen-0", 320, 200, kRed));
}

TEST_F(ScreenSharing, GoesOnWhenAMinimisedWindowIsBack) {
    PaintedWindow window(0, 0, 320, 200, kRed);
    ASSERT_EQ(Share(window), std::nullopt);
    ASSERT_TRUE(Shows("screen-0", 320, 200, kRed));
    window.Hide();
    std::this_thread::sleep_for(std::chrono::milliseconds(250));
    EXPECT_TRUE(WebRTC_IsScreenShareCapturing());
    window.Show();
    window.Paint(kBlue);
    EXPECT_TRUE(Shows("screen-0", 320, 200, kBlue));
}

TEST_F(ScreenSharing, EndsWhenTheWindowCloses) {
    PaintedWindow window(0, 0, 320, 200, kRed);
    ASSERT_EQ(Share(window), std::nullopt);
    ASSERT_TRUE(visitor.GetsMore("screen-0"));
    window.Close();
    EXPECT_TRUE(visitor.WaitForEvent("remove screen-0"));
    EXPECT_EQ(visitor.Events(),
              (std::vector<std::string>{"add 1 screen-0", "window closed", "remove screen-0"}));
    EXPECT_FALSE(WebRTC_IsScreenShareCapturing());
    EXPECT_TRUE(SharedStreams().empty());
}

TEST_F(ScreenSharing, ShowsTheWholeScreen) {
    const PaintedWindow window(100, 100, 320, 200, kRed);
    ASSERT_EQ(ShareStream(StreamType::Screenshare, ""), std::nullopt);
    EXPECT_TRUE(visitor.WaitForFrame("screen-0", [](const VideoFrameBuffer& frame) {
        return frame.GetWidth() > 600 && PixelAt(frame, 101, 101) == kRed;
    }));
    StopSharing(StreamType::Screenshare);
    EXPECT_TRUE(visitor.WaitForEvent("remove screen-0"));
    ASSERT_EQ(ShareStream(StreamType::Screenshare, "0"), std::nullopt);
    EXPECT_TRUE(visitor.GetsMore("screen-1"));
}

TEST_F(ScreenSharing, ShowsThePointer) {
    PaintedWindow window(0, 0, 320, 200, kRed);
    // The display's own pointer stands in the middle of the screen.
    ASSERT_EQ(ShareStream(StreamType::Screenshare, "0"), std::nullopt);
    ASSERT_TRUE(visitor.GetsMore("screen-0"));
    const auto frame = visitor.LastFrame("screen-0");
    const int width = frame->GetWidth();
    const int height = frame->GetHeight();
    bool differs = false;
    for (int y = height / 2 - 12; y < height / 2 + 12; ++y) {
        for (int x = width / 2 - 12; x < width / 2 + 12; ++x) {
            differs = differs || PixelAt(*frame, x, y) != PixelAt(*frame, width - 2, height - 2);
        }
    }
    EXPECT_TRUE(differs);
}

TEST_F(ScreenSharing, IsRefusedForWhatIsNoWindow) {
    for (const std::string source : {"12x", "abc", "-1", "99999999999999999999", "33554431"}) {
        const auto problem = ShareStream(StreamType::Screenshare, source);
        ASSERT_TRUE(problem) << source;
        EXPECT_EQ(problem->find('\n'), std::string::npos);
    }
    EXPECT_FALSE(WebRTC_IsScreenShareCapturing());
}

TEST_F(ScreenSharing, IsRefusedWithoutADisplay) {
    const std::string display = std::getenv("DISPLAY");
    ::setenv("DISPLAY", ":4294", 1);
    const auto problem = ShareStream(StreamType::Screenshare, "0");
    const auto targets = ListScreenTargets();
    ::setenv("DISPLAY", display.c_str(), 1);
    ASSERT_TRUE(problem);
    EXPECT_NE(problem->find("display"), std::string::npos) << *problem;
    EXPECT_TRUE(targets.empty());
    EXPECT_TRUE(SharedStreams().empty());
}

TEST_F(ScreenSharing, StopsAtOnceWhileTheWindowIsHidden) {
    PaintedWindow window(0, 0, 320, 200, kRed);
    ASSERT_EQ(Share(window), std::nullopt);
    ASSERT_TRUE(visitor.GetsMore("screen-0"));
    window.Hide();
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    StopSharing(StreamType::Screenshare);
    EXPECT_TRUE(visitor.WaitForEvent("remove screen-0"));
}

}  // namespace
}  // namespace Corvanta::Engine
