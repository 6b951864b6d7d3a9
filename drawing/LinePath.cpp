#include "drawing/LinePath.h"

#include <utility>

#include "drawing/Brush.h"
#include "drawing/LayerTarget.h"
#include "drawing/PathTracer.h"
#include "ui/Clock.h"
#include "ui/HdrSdl.h"

namespace Corvanta::Drawing {
namespace {

constexpr int64_t kNsPerTick = 100;
constexpr int64_t kTicksPerMs = 10000;
constexpr int64_t kPointIntervalMs = 20;

[[nodiscard]] SDL_Texture* MakeStrokeTexture(SDL_Renderer* renderer, SDL_Point size) {
    SDL_Texture* const texture =
        SDL_CreateTexture(renderer, SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_TARGET, size.x, size.y);
    if (texture == nullptr) return nullptr;
    SDL_SetTextureBlendMode(texture, SDL_BLENDMODE_BLEND);
    UI::HdrSdl::SetTextureColorSpace(texture, UI::HdrSdl::ReadTraits(renderer).colorSpace);
    return texture;
}

// Whether it was made anew, or could not be made; a texture of that size stays. A new one is to be cleared.
[[nodiscard]] bool Prepare(SDL_Renderer* renderer, SDL_Point size, SDL_Texture*& texture) {
    if (texture != nullptr) {
        SDL_Point present{0, 0};
        SDL_QueryTexture(texture, nullptr, nullptr, &present.x, &present.y);
        if (present.x == size.x && present.y == size.y) return false;
        SDL_DestroyTexture(texture);
    }
    texture = MakeStrokeTexture(renderer, size);
    return true;
}

void Clear(SDL_Renderer* renderer) {
    SDL_SetRenderDrawColor(renderer, 0, 0, 0, 0);
    SDL_RenderClear(renderer);
}

void Release(std::map<SDL_Renderer*, SDL_Texture*>& textures, SDL_Renderer* renderer) {
    const auto found = textures.find(renderer);
    if (found == textures.end()) return;
    SDL_DestroyTexture(found->second);
    textures.erase(found);
}

[[nodiscard]] SDL_Rect UnionOf(const SDL_Rect& a, const SDL_Rect& b) {
    SDL_Rect both;
    SDL_UnionRect(&a, &b, &both);
    return both;
}

// Both sides of a copy, which is pixel to pixel.
void Copy(SDL_Renderer* renderer, SDL_Texture* texture, const SDL_Rect& box) {
    if (SDL_RectEmpty(&box) == SDL_FALSE) SDL_RenderCopy(renderer, texture, &box, &box);
}

}  // namespace

LinePath::LinePath(const LinePath& other)
    : normalizedStrokeWidth(other.normalizedStrokeWidth),
      normalized(other.normalized),
      points(other.points),
      normalizedPoints(other.normalizedPoints),
      color(other.color),
      lastPointTime(other.lastPointTime) {
    strokeWidth = other.strokeWidth;
    controlId = other.controlId;
}

LinePath::~LinePath() {
    for (const auto& [renderer, texture] : strokeTextures) SDL_DestroyTexture(texture);
    for (const auto& [renderer, texture] : tailTextures) SDL_DestroyTexture(texture);
}

void LinePath::Render(SDL_Renderer* renderer) {
    if (normalizedPoints.empty()) return;
    SDL_Rect viewport;
    SDL_RenderGetViewport(renderer, &viewport);
    SDL_BlendMode blendMode = SDL_BLENDMODE_NONE;
    SDL_GetRenderDrawBlendMode(renderer, &blendMode);
    const PathTracer tracer(normalizedPoints, normalizedStrokeWidth, viewport);
    // Lines of a single pixel are SDL's, which draws them differently where they are cut at an edge.
    if (IsFinished(renderer) && (color.a == SDL_ALPHA_OPAQUE || tracer.Thickness() != 1)) {
        RenderFinished(renderer, tracer);
    } else {
        RenderGrowing(renderer, tracer, {viewport.w, viewport.h});
    }
    SDL_SetRenderDrawBlendMode(renderer, blendMode);
}

bool LinePath::IsSolid(SDL_Renderer* renderer) const {
    SDL_Rect viewport;
    SDL_RenderGetViewport(renderer, &viewport);
    return IsFinished(renderer) && color.a == SDL_ALPHA_OPAQUE && !normalizedPoints.empty() &&
           PathTracer(normalizedPoints, normalizedStrokeWidth, viewport).Thickness() != 1;
}

bool LinePath::IsFinished(SDL_Renderer* renderer) const {
    return !controlId.empty() && !strokeTextures.contains(renderer);
}

void LinePath::RenderFinished(SDL_Renderer* renderer, const PathTracer& tracer) const {
    const SDL_Rect box = tracer.BoxOfAll();
    if (SDL_RectEmpty(&box) == SDL_TRUE) return;
    Brush brush(box);
    if (color.a == SDL_ALPHA_OPAQUE) {
        tracer.TraceAll(brush);
        SDL_SetRenderDrawBlendMode(renderer, SDL_BLENDMODE_NONE);
        brush.Draw(renderer, color.ToSdl());
        return;
    }
    tracer.TraceCurve(brush, 0, {});
    SDL_Texture* const texture = MakeStrokeTexture(renderer, {box.w, box.h});
    if (texture == nullptr) {
        // As even, if not to the last bit the same.
        SDL_SetRenderDrawBlendMode(renderer, SDL_BLENDMODE_BLEND);
        brush.Draw(renderer, color.ToSdl());
        return;
    }
    bool isDrawn = false;
    {
        const LayerTarget target(renderer, texture);
        isDrawn = target.IsSet();
        if (isDrawn) {
            Clear(renderer);
            SDL_SetRenderDrawBlendMode(renderer, SDL_BLENDMODE_NONE);
            brush.Draw(renderer, color.ToSdl(), {-box.x, -box.y});
        }
    }
    if (isDrawn) SDL_RenderCopy(renderer, texture, nullptr, &box);
    SDL_DestroyTexture(texture);
}

void LinePath::RenderGrowing(SDL_Renderer* renderer, const PathTracer& tracer, SDL_Point size) {
    SDL_Texture*& stroke = strokeTextures[renderer];
    const bool isNew = Prepare(renderer, size, stroke);
    if (isNew) {
        drawnIndex = 0;
        painted_[renderer].stroke = {0, 0, 0, 0};
    }
    const bool hasTail = color.a == SDL_ALPHA_OPAQUE;
    const bool hasNewPoints = drawnIndex == 0 || drawnIndex + 1 < normalizedPoints.size();
    if (stroke != nullptr && hasNewPoints && !DrawCurve(renderer, tracer, stroke)) {
        SDL_DestroyTexture(stroke);
        stroke = nullptr;
    }
    if (stroke == nullptr) {
        strokeTextures.erase(renderer);
        return;
    }
    if (hasTail) {
        SDL_Texture*& tail = tailTextures[renderer];
        const bool isNewTail = Prepare(renderer, size, tail);
        if (tail != nullptr && (isNewTail || hasNewPoints) && !DrawTail(renderer, tracer, tail)) {
            SDL_DestroyTexture(tail);
            tail = nullptr;
        }
        if (tail == nullptr) tailTextures.erase(renderer);
    }
    const Painted& painted = painted_[renderer];
    Copy(renderer, stroke, painted.stroke);
    const auto tail = tailTextures.find(renderer);
    if (tail != tailTextures.end()) Copy(renderer, tail->second, painted.tail);
}

bool LinePath::DrawCurve(SDL_Renderer* renderer, const PathTracer& tracer, SDL_Texture* texture) {
    const LayerTarget target(renderer, texture);
    if (!target.IsSet()) return false;
    if (drawnIndex == 0) Clear(renderer);
    const SDL_Rect box = tracer.BoxFrom(drawnIndex, {penX, penY});
    Brush brush(box);
    const Point pen = tracer.TraceCurve(brush, drawnIndex, {penX, penY});
    penX = pen.first;
    penY = pen.second;
    drawnIndex = normalizedPoints.size() - 1;
    SDL_SetRenderDrawBlendMode(renderer, SDL_BLENDMODE_NONE);
    brush.Draw(renderer, color.ToSdl());
    SDL_Rect& painted = painted_[renderer].stroke;
    painted = UnionOf(painted, box);
    return true;
}

bool LinePath::DrawTail(SDL_Renderer* renderer, const PathTracer& tracer, SDL_Texture* texture) {
    const LayerTarget target(renderer, texture);
    if (!target.IsSet()) return false;
    Clear(renderer);
    const SDL_Rect box = tracer.BoxFrom(normalizedPoints.size() - 1, {penX, penY});
    Brush brush(box);
    tracer.TraceTail(brush, {penX, penY});
    SDL_SetRenderDrawBlendMode(renderer, SDL_BLENDMODE_NONE);
    brush.Draw(renderer, color.ToSdl());
    painted_[renderer].tail = box;
    return true;
}

void LinePath::Normalize(double canvasWidth, double canvasHeight) {
    if (normalized) return;
    // Room is made by the vector, in leaps: exact room for each point would move all the others every time.
    for (size_t i = normalizedPoints.size(); i < points.size(); ++i)
        normalizedPoints.emplace_back(points[i].first / canvasWidth, points[i].second / canvasHeight);
    normalizedStrokeWidth = strokeWidth / canvasWidth;
    normalized = true;
}

void LinePath::SetStart(double x, double y) {
    points.emplace_back(x, y);
    normalized = false;
    lastPointTime = UI::NowNs() / kNsPerTick;
}

void LinePath::SetEnd(double x, double y) {
    const int64_t now = UI::NowNs() / kNsPerTick;
    if ((now - lastPointTime) / kTicksPerMs <= kPointIntervalMs) return;
    points.emplace_back(x, y);
    normalized = false;
    lastPointTime = now;
}

void LinePath::ReleaseTextures(SDL_Renderer* renderer) {
    Release(strokeTextures, renderer);
    Release(tailTextures, renderer);
    painted_.erase(renderer);
}

void LinePath::ForgetTextures(SDL_Renderer* renderer) {
    strokeTextures.erase(renderer);
    tailTextures.erase(renderer);
    painted_.erase(renderer);
}

}  // namespace Corvanta::Drawing
