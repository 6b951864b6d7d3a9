// What the controls cost: a bar with 12 buttons and an open menu at rest against their own SDL calls made
// bare, and the making of one label against SDL_ttf and an upload. Argument: --rounds N.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "bench/Medians.h"
#include "bench/SdlReplay.h"
#include "tests/fake_platform/AllocationCounter.h"
#include "ui/Button.h"
#include "ui/ButtonBar.h"
#include "ui/FontManager.h"
#include "ui/Menu.h"
#include "ui/TextTexture.h"

namespace Corvanta::Bench {
namespace {

using Testing::AllocationCounter;

constexpr int kWidth = 1280;
constexpr int kHeight = 720;
constexpr int kDefaultRounds = 2000;
constexpr int kWarmUpTicks = 50;
constexpr double kTickGoal = 1.15;
constexpr double kLabelGoal = 1.3;
constexpr int kFontSize = 14;
// 24 characters each, so that every making changes the text.
constexpr const char* kLabels[] = {"Review with the client 1", "Review with the client 2"};

// A picture in memory, as the software renderer draws it.
class Canvas final {
public:
    Canvas()
        : surface_(SDL_CreateRGBSurfaceWithFormat(0, kWidth, kHeight, 32, SDL_PIXELFORMAT_ARGB8888)),
          renderer_(SDL_CreateSoftwareRenderer(surface_)) {}
    ~Canvas() {
        SDL_DestroyRenderer(renderer_);
        SDL_FreeSurface(surface_);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    [[nodiscard]] SDL_Renderer* Renderer() const { return renderer_; }

private:
    SDL_Surface* surface_;
    SDL_Renderer* renderer_;
};

class Controls final {
public:
    explicit Controls(SDL_Renderer* renderer)
        : renderer_(renderer),
          bar_(renderer, kWidth, 100, "A room's name of some length", true),
          menu_(renderer, UI::MenuDirection::FromBelow, 300, 0xFF424242) {
        bar_.SetAlwaysVisible(true, UI::ButtonBar::Remember::No);
        for (int i = 0; i < 4; ++i) {
            for (const UI::BarGroup group : {UI::BarGroup::Left, UI::BarGroup::Centre, UI::BarGroup::Right}) {
                bar_.AddButton(
                    "icons/spotlight.png", "Label", [] {}, group, UI::ButtonStyle::FillAndOutline,
                    "A tooltip");
            }
        }
        for (int i = 0; i < 12; ++i) {
            menu_.AddButton("icons/spotlight.png", "Row " + std::to_string(i), [] {});
        }
        menu_.SetScrollable(true);
        menu_.SetVisible(true);
    }

    void Tick() {
        SDL_SetRenderDrawColor(renderer_, 0, 0, 0, 255);
        SDL_RenderClear(renderer_);
        bar_.Render(renderer_, {0, kHeight - 100});
        menu_.Render(renderer_, {900, 300});
        const SDL_Point pointer{950, 330};
        bar_.OnHover(pointer);
        menu_.OnHover(pointer);
        SDL_RenderPresent(renderer_);
    }

private:
    SDL_Renderer* renderer_;
    UI::ButtonBar bar_;
    UI::Menu menu_;
};

void MeasureTick(SDL_Renderer* renderer, int rounds) {
    Controls controls(renderer);
    for (int i = 0; i < kWarmUpTicks; ++i) {
        controls.Tick();
        SDL_Delay(10);
    }
    SdlReplay replay;
    replay.Record();
    controls.Tick();
    replay.Stop();
    AllocationCounter::Start();
    controls.Tick();
    const size_t allocations = AllocationCounter::Stop();
    std::vector<Nanoseconds> ticks;
    std::vector<Nanoseconds> replays;
    for (int round = 0; round < rounds; ++round) {
        const auto tick = [&] { ticks.push_back(TimeOf([&] { controls.Tick(); })); };
        const auto bare = [&] { replays.push_back(TimeOf([&] { replay.Run(); })); };
        // Neither always comes first.
        if (round % 2 == 0) {
            tick();
            bare();
        } else {
            bare();
            tick();
        }
    }
    std::printf("Bar and menu: %zu SDL calls, %zu allocations\n", replay.GetCallCount(), allocations);
    PrintRatio("Tick over replay, a bar of 12 buttons and an open menu", MedianOf(ticks), MedianOf(replays),
               kTickGoal);
}

void DrawBare(SDL_Renderer* renderer, TTF_Font* font, const char* text) {
    SDL_Surface* const surface = TTF_RenderUTF8_Blended(font, text, {255, 255, 255, 255});
    SDL_Texture* const texture = SDL_CreateTextureFromSurface(renderer, surface);
    const SDL_Rect area{10, 10, surface->w, surface->h};
    SDL_FreeSurface(surface);
    SDL_RenderCopy(renderer, texture, nullptr, &area);
    SDL_RenderPresent(renderer);
    SDL_DestroyTexture(texture);
}

void MeasureLabel(SDL_Renderer* renderer, int rounds) {
    TTF_Font* const font = UI::FontManager::Instance().GetFont(UI::FontRegular, kFontSize);
    if (font == nullptr) throw std::runtime_error("the regular font is not there");
    UI::TextTexture label;
    label.SetFontName(UI::FontRegular);
    label.SetFontSize(kFontSize);
    std::vector<Nanoseconds> ours;
    std::vector<Nanoseconds> bare;
    for (int round = 0; round < rounds; ++round) {
        const std::string text = kLabels[round % 2];
        ours.push_back(TimeOf([&] {
            label.SetText(text);
            label.RenderAt(renderer, {10, 10});
            SDL_RenderPresent(renderer);
        }));
        bare.push_back(TimeOf([&] { DrawBare(renderer, font, text.c_str()); }));
    }
    PrintRatio("Making a label of 24 characters over SDL_ttf and an upload", MedianOf(ours), MedianOf(bare),
               kLabelGoal);
}

void Run(const std::vector<std::string_view>& arguments) {
    const bool hasRounds = arguments.size() > 1 && arguments[0] == "--rounds";
    const int rounds = hasRounds ? std::atoi(arguments[1].data()) : kDefaultRounds;
    const Canvas canvas;
    if (canvas.Renderer() == nullptr) throw std::runtime_error(SDL_GetError());
    MeasureTick(canvas.Renderer(), rounds);
    MeasureLabel(canvas.Renderer(), rounds);
}

}  // namespace
}  // namespace Corvanta::Bench

int main(int argumentCount, char** arguments) {
    if (TTF_Init() != 0) return 1;
    try {
        Corvanta::Bench::Run({arguments + 1, arguments + argumentCount});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_controls: %s\n", error.what());
        return 1;
    }
    return 0;
}
