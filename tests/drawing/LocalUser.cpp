#include "tests/drawing/LocalUser.h"

#include <atomic>

#include "ui/Clock.h"

namespace Corvanta::Testing {

namespace {

// Read by whatever thread makes a shape.
std::atomic<int64_t> nowNs{0};

SDL_Event Event(Uint32 type) {
    SDL_Event event{};
    event.type = type;
    return event;
}

SDL_Event ButtonEvent(Uint32 type, int button) {
    SDL_Event event = Event(type);
    event.button.button = static_cast<Uint8>(button);
    // A button's own place is not what counts.
    event.button.x = 7;
    event.button.y = 7;
    return event;
}

SDL_Event KeyEvent(Uint32 type, int keycode) {
    SDL_Event event = Event(type);
    event.key.keysym.sym = keycode;
    return event;
}

}  // namespace

HandClock::HandClock() {
    nowNs = 1000000000;
    UI::SetClock([] { return nowNs.load(); });
}

HandClock::~HandClock() {
    UI::SetClock(nullptr);
}

void HandClock::Turn(int milliseconds) {
    nowNs += int64_t{milliseconds} * 1000000;
}

DrawToolState ToolState(uint32_t tool) {
    DrawToolState state{};
    state.enabled = true;
    state.selectedTool = tool;
    state.complexSelectedShape = DrawToolRectangle;
    state.pencilStrokeWidth = 10;
    state.shapeStrokeWidth = 20;
    static std::string family = "Arial";
    state.fontFamilyName = family.data();
    state.fontSize = 32;
    state.primaryColor = 0xE85C41FF;
    state.secondaryColor = 0xFFFFFFFF;
    state.eraserStrokeWidth = 10;
    return state;
}

SDL_Event Motion(SDL_Point position) {
    SDL_Event event = Event(SDL_MOUSEMOTION);
    event.motion.x = position.x;
    event.motion.y = position.y;
    return event;
}

SDL_Event ButtonDown(int button) {
    return ButtonEvent(SDL_MOUSEBUTTONDOWN, button);
}

SDL_Event ButtonUp(int button) {
    return ButtonEvent(SDL_MOUSEBUTTONUP, button);
}

SDL_Event KeyDown(int keycode) {
    return KeyEvent(SDL_KEYDOWN, keycode);
}

SDL_Event KeyUp(int keycode) {
    return KeyEvent(SDL_KEYUP, keycode);
}

LocalUserTest::LocalUserTest() {
    canvas.SetFrameSize(1280, 720);
    manager.AttachCanvas("stream", &canvas);
    surface.canvas = &canvas;
    Choose(DrawToolPencil);
    Forget();
}

void LocalUserTest::MoveTo(SDL_Point point) {
    HandClock::Turn(30);
    Dispatch(Motion({surface.area.x + point.x / 2, surface.area.y + point.y / 2}));
}

void LocalUserTest::PressAt(SDL_Point point) {
    MoveTo(point);
    Dispatch(ButtonDown());
}

void LocalUserTest::Drag(SDL_Point from, SDL_Point to) {
    PressAt(from);
    MoveTo(to);
    Release();
}

std::shared_ptr<Drawing::Shape> LocalUserTest::DrawRectangle() {
    Choose(DrawToolRectangle);
    const int left = 20 * ++drawnRectangles_;
    PressAt({left, 20});
    MoveTo({left + 10, 40});
    std::shared_ptr<Drawing::Shape> shape = Current();
    Release();
    return shape;
}

void LocalUserTest::Type(int keycode) {
    Dispatch(KeyDown(keycode));
    Dispatch(KeyUp(keycode));
}

Drawing::TextBox& LocalUserTest::OpenText() {
    Choose(DrawToolText);
    PressAt({200, 200});
    Release();
    // Layers have twice the canvas's resolution.
    Text().drawnRect = {400, 400, 160, 80};
    return Text();
}

std::vector<std::string> LocalUserTest::SentTexts() {
    std::vector<std::string> texts;
    for (const Call& call : Fake().CallsOf("MediaManager_SendDatachannelMessage")) {
        texts.push_back(call.arguments.at(0));
    }
    return texts;
}

std::vector<nlohmann::json> LocalUserTest::Sent() {
    std::vector<nlohmann::json> messages;
    for (const std::string& text : SentTexts()) messages.push_back(nlohmann::json::parse(text));
    return messages;
}

std::vector<std::string> LocalUserTest::IdsOf(const nlohmann::json& message) {
    std::vector<std::string> ids;
    for (const nlohmann::json& shape : message.at("message").at("shapes")) {
        ids.push_back(shape.at("controlId").get<std::string>());
    }
    return ids;
}

std::vector<std::string> LocalUserTest::IdsOf(const std::vector<std::shared_ptr<Drawing::Shape>>& shapes) {
    std::vector<std::string> ids;
    ids.reserve(shapes.size());
    for (const auto& shape : shapes) ids.push_back(shape->controlId);
    return ids;
}

void LocalUserTest::Forget() {
    Fake().ClearCalls();
    surface.reports.clear();
}

}  // namespace Corvanta::Testing
