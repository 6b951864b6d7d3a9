// One native surface: an SDL window made from a handle that the host owns, and one renderer on it. Host
// thread, but for the atomic flags. width and height may also change from the event watch, which SDL runs on
// the thread that raises the event: the host's.
#pragma once

#include <SDL.h>

#include <atomic>

namespace Corvanta::UI {

class AbstractView {
public:
    // id: 0 for room and recording views, -1 for others. Only kept.
    explicit AbstractView(int id) : windowId_(id) {}

    virtual void Render() = 0;
    virtual void OnResized(int /*width*/, int /*height*/) {}
    // scale: the window scale.
    virtual void OnContentScaleChanged(float /*scale*/) {}
    virtual void OnRenderTargetChanged() {}

    // Makes window and renderer on the handle; width and height in logical pixels. 1 on success, 0 if already
    // initialised (nothing changes), -1 on failure: the size is stored and CleanupWindow takes what was made.
    int Init(void* nativeHandle, int width, int height);
    // Destroys renderer and window; safe when nothing was made. Init may run again afterwards.
    void CleanupWindow();

    // Sides beyond a million, and scales beyond 64, count as that.
    void Resize(int width, int height);
    void SetViewport(int width, int height);
    // Pixels of the window to a logical pixel; a factor that is not above 0 is ignored.
    void SetContentScaleFactor(float factor);
    // Factor on the view's own control sizes.
    void SetWindowScale(float scale);

    // White of SDR content in nits; 0 where it is not known.
    [[nodiscard]] float GetSDRBrightness() const;
    // Applies the rounded value and keeps the truncated one in the configuration. Nothing without a renderer.
    void SetSDRBrightness(float nits);

    // Always null: there is no child window.
    [[nodiscard]] void* GetNativeView() const { return nullptr; }

    [[nodiscard]] float GetScale() const { return scale_; }
    [[nodiscard]] int GetWindowId() const { return windowId_; }
    [[nodiscard]] SDL_Window* GetWindow() const { return window_; }
    [[nodiscard]] SDL_Renderer* GetRenderer() const { return renderer_; }
    [[nodiscard]] int GetWidth() const { return width_; }
    [[nodiscard]] int GetHeight() const { return height_; }
    [[nodiscard]] float GetAspectRatio() const { return aspectRatio_; }
    [[nodiscard]] bool IsInitialised() const { return initialised_.load(); }
    // Asked once before each drawing: false when there is no window, or none that can still be drawn on
    // because the host has destroyed it. Host thread.
    [[nodiscard]] bool CanDraw() const;

    // SDL's id of the window for events; -1 without a window.
    [[nodiscard]] int GetSdlWindowId() const;

    AbstractView(const AbstractView&) = delete;
    AbstractView& operator=(const AbstractView&) = delete;

protected:
    // Views are owned as their own class, so nobody destroys through this base.
    ~AbstractView();

    // A size change happened. Subclasses that draw only on change read and clear it.
    std::atomic<bool> dirty_{false};

private:
    static int SDLCALL WindowEventWatch(void* view, SDL_Event* event);
    [[nodiscard]] SDL_Renderer* SelectRenderer() const;
    void ApplySDRBrightness();

    float scale_ = 1.0F;
    int windowId_;
    SDL_Window* window_ = nullptr;
    SDL_Renderer* renderer_ = nullptr;
    std::atomic<bool> initialised_{false};
    int width_ = 0;
    int height_ = 0;
    // As of Init; Resize leaves it.
    float aspectRatio_ = 0.0F;
};

}  // namespace Corvanta::UI
