// The drawing over one video tile: a transparent layer for each participant who has made a mark on the
// stream, each mark drawn into its layer once, the layers laid over the video on every frame, and the shape
// that the local user is drawing. It can be thrown away at any time and rebuilt from its source.
//
// AddShape, ClearParticipant and ClearAll: any thread, and they touch no renderer. Everything else: render
// thread. The lock is taken inside a tile's and a source's.
#pragma once

#include <SDL.h>

#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "drawing/Shape.h"
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
        // The layer; null until a mark needs it.
        SDL_Texture* texture = nullptr;
    };

    DrawingCanvas() = default;
    // Its source forgets it. Textures are not destroyed here: ReleaseResources comes first.
    virtual ~DrawingCanvas();
    DrawingCanvas(const DrawingCanvas&) = delete;
    DrawingCanvas& operator=(const DrawingCanvas&) = delete;

    // A shape whose controlId the participant's layer has already is left out.
    void AddShape(const std::string& participantId, std::shared_ptr<Shape> shape);
    void ClearParticipant(const std::string& participantId);
    void ClearAll();

    // Size in pixels of the stream's frames; nothing for a size that is not positive. Touches no texture.
    void SetFrameSize(int width, int height);
    // Follows a change of the frame size: layers are made anew and all marks drawn again, at the same
    // fractions of the picture. Next to nothing for the size it has.
    void Resize(SDL_Renderer* renderer, int width, int height);
    // Draws what is new into the layers, then layers and preview over what the tile has just drawn.
    // sourceRect: the part of the video that the tile shows, empty for all of it.
    void Render(SDL_Renderer* renderer, const SDL_Rect& sourceRect, const SDL_Rect& destinationRect);
    // The tile goes to that renderer; the old one is still alive.
    void MoveToRenderer(SDL_Renderer* renderer);
    // The tile drops its graphics, and all shapes leave the canvas.
    void ReleaseResources(SDL_Renderer* renderer);

    // The shape that the local user is drawing; null ends it.
    void SetPreview(std::shared_ptr<Shape> shape);

    // Null while it is attached to none, or its source has gone.
    [[nodiscard]] std::shared_ptr<DrawingSource> Source() const;
    // For the source alone.
    void SetSource(const std::shared_ptr<DrawingSource>& newSource);

    // The reference size in canvas units and the size of a layer in pixels; 0 before there is a frame size.
    [[nodiscard]] double CanvasWidth() const;
    [[nodiscard]] double CanvasHeight() const;
    [[nodiscard]] int TextureWidth() const;
    [[nodiscard]] int TextureHeight() const;
};

}  // namespace Corvanta::Drawing
