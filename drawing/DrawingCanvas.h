// The drawing over one video tile: a transparent layer for each participant who has made a mark on the
// stream, each mark drawn into its layer once, the layers laid over the video on every frame, and the shape
// that the local user is drawing. It can be thrown away at any time and rebuilt from its source.
//
// AddShape, AddShapes, ReplaceShapes, ClearParticipant, ClearAll, Source, SetSource and LeaveSource: any
// thread, and they touch no renderer. Everything else: render thread. The lock is taken inside a tile's and a
// source's.
#pragma once

#include <SDL.h>

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <unordered_set>

#include "drawing/CanvasGeometry.h"
#include "drawing/Shape.h"
#include "drawing/ShapeIdentity.h"
#include "ui/LockOrder.h"

namespace Corvanta::Drawing {

class DrawingSource;

class DrawingCanvas {
public:
    struct ParticipantResources {
        // The layer must be cleared before the next mark.
        bool needsClear = false;
        // In the layer already, and waiting to be drawn; oldest first.
        std::deque<std::shared_ptr<Shape>> drawnShapes;
        std::deque<std::shared_ptr<Shape>> pendingShapes;
        // All that are in the two. Asking it keeps a burst of shapes from being compared each with each.
        std::unordered_set<const Shape*, HashOfId, SameId> ids;
        // The layer; null until a mark needs it, and again some time after the last one has gone.
        SDL_Texture* texture = nullptr;
        // How often the canvas has been drawn since then.
        uint32_t drawingsWithoutMarks = 0;
    };

    DrawingCanvas() = default;
    // Its source forgets it. Textures are not destroyed here: ReleaseResources comes first.
    virtual ~DrawingCanvas();
    DrawingCanvas(const DrawingCanvas&) = delete;
    DrawingCanvas& operator=(const DrawingCanvas&) = delete;

    // A shape whose controlId the participant's layer has already is left out.
    void AddShape(const std::string& participantId, const std::shared_ptr<Shape>& shape);
    // The same with several, and with several in the place of all that are there; oldest first. Each is one
    // step: no frame shows a part of it.
    void AddShapes(const std::string& participantId, std::span<const std::shared_ptr<Shape>> shapes);
    void ReplaceShapes(const std::string& participantId, std::span<const std::shared_ptr<Shape>> shapes);
    void ClearParticipant(const std::string& participantId);
    void ClearAll();

    // Size in pixels of the stream's frames; nothing for a size that is not positive. Touches no texture.
    void SetFrameSize(int width, int height);
    // Follows a change of the frame size: layers are made anew and all marks drawn again, at the same
    // fractions of the picture. Layers stay where their own size does. Next to nothing for the size it has.
    void Resize(SDL_Renderer* renderer, int width, int height);
    // Draws what is new into the layers, then layers and preview over what the tile has just drawn.
    // sourceRect: the part of the video that the tile shows, empty for all of it.
    void Render(SDL_Renderer* renderer, const SDL_Rect& sourceRect, const SDL_Rect& destinationRect);
    // The renderer has lost what was drawn into its textures: all marks and the preview are drawn again.
    void DrawAgain();
    // The tile goes to that renderer; the old one is still alive.
    void MoveToRenderer(SDL_Renderer* renderer);
    // The tile drops its graphics, and all shapes leave the canvas.
    void ReleaseResources(SDL_Renderer* renderer);

    // The shape that the local user is drawing; null ends it.
    void SetPreview(std::shared_ptr<Shape> shape);
    // Ends it if it is that shape.
    void EndPreview(const Shape& shape);

    // Null while it is attached to none, or its source has gone.
    [[nodiscard]] std::shared_ptr<DrawingSource> Source() const;
    // For the source alone. Returns the one that it had.
    std::shared_ptr<DrawingSource> SetSource(const std::shared_ptr<DrawingSource>& newSource);
    // For the source alone: the canvas is no longer attached to it. Nothing when it is attached to another.
    void LeaveSource(const DrawingSource& oldSource);

    // The reference size in canvas units and the size of a layer in pixels; 0 before there is a frame size.
    [[nodiscard]] double CanvasWidth() const;
    [[nodiscard]] double CanvasHeight() const;
    [[nodiscard]] int TextureWidth() const;
    [[nodiscard]] int TextureHeight() const;

private:
    // Their callers hold mutex_.
    void TakeFrameSize(int width, int height);
    void TakeRenderer(SDL_Renderer* renderer);
    void ForgetRenderer();
    void KeepLayerSize();
    [[nodiscard]] SDL_Texture* MakeLayer() const;
    // Brings the layer up to date. Whether there is something in it to be shown.
    [[nodiscard]] bool UpdateLayer(ParticipantResources& resources) const;
    // The first of them, or all that begin it where those are solid strokes. Returns how many.
    [[nodiscard]] size_t DrawNext(const std::deque<std::shared_ptr<Shape>>& pending) const;
    void DrawShape(Shape& shape) const;
    // Whether there is something in its texture to be shown.
    [[nodiscard]] bool DrawPreview();
    // The layers have taken over a finished shape, and one that was thrown away needs nothing more.
    void ReleaseFormerPreview();
    void ErasePreview(const std::string& localUserId);
    void ReleaseTexturesOf(Shape& shape, SDL_Renderer* renderer) const;
    void DropPreview(SDL_Renderer* renderer);

    mutable UI::OrderedMutex<std::mutex, UI::LockRank::Canvas> mutex_;
    // guards: all below but preview_
    // In the order in which layers lie over each other.
    std::map<std::string, ParticipantResources> participants_;
    std::weak_ptr<DrawingSource> source_;
    CanvasSize canvasSize_;
    SDL_Point textureSize_{0, 0};
    SDL_Point frameSize_{0, 0};
    // On which the textures are, and their size.
    SDL_Renderer* renderer_ = nullptr;
    SDL_Point layerSize_{0, 0};
    // The renderer's longest side of a texture; 0 when it does not say.
    int maxSide_ = 0;
    SDL_Texture* previewTexture_ = nullptr;
    // The shape that the texture shows. It holds textures of its own, which must not outlive the renderer.
    std::shared_ptr<Shape> drawnPreview_;
    // Render thread.
    std::shared_ptr<Shape> preview_;
};

}  // namespace Corvanta::Drawing
