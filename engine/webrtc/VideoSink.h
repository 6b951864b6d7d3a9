// The end of a pipeline's video: hands every decoded picture on at its time, in a format that frame objects
// can show. Made and destroyed on the engine's thread; pictures come on the pipeline's streaming thread,
// which must have ended before the object goes.
#pragma once

#include <gst/app/gstappsink.h>
#include <gst/video/video.h>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "engine/webrtc/GstSupport.h"
#include "engine/webrtc/MappedPicture.h"
#include "engine/webrtc/PictureShape.h"

namespace Corvanta::Engine {

// The colour that a file's container names for its video, for where the video itself names none. Any thread.
class ContainerColor final {
public:
    void Set(const GstVideoColorimetry& description);
    [[nodiscard]] GstVideoColorimetry Get() const;

private:
    mutable std::mutex colorMutex;  // guards: color
    GstVideoColorimetry color{};
};

class VideoSink final {
public:
    using PictureCallback = std::function<void(const std::shared_ptr<const MappedPicture>&)>;

    VideoSink(std::string sourceName, std::shared_ptr<const ContainerColor> containerColor,
              PictureCallback pictureCallback);
    VideoSink(const VideoSink&) = delete;
    VideoSink& operator=(const VideoSink&) = delete;

    // A new bin with one sink pad, floating; null, and a log line, when an element is missing. `streamCaps`
    // are those of the decoded stream. `isRotated`: the stream says that its pictures are to be turned before
    // they are shown. With a shape they are made to fit it, with black bars where they are narrower or
    // flatter, and dropped or repeated to its rate. Called once for each pipeline.
    [[nodiscard]] GstElement* MakeBin(const GstCaps* streamCaps, bool isRotated,
                                      const std::optional<PictureShape>& shape = {});

    // Whether the stream has ended and every picture of it was handed on.
    [[nodiscard]] bool IsAtEnd();

    // Lets go of the elements of a pipeline that is no more.
    void Forget();

private:
    void OnSample(GstAppSink* sink);

    const std::string name;
    const std::shared_ptr<const ContainerColor> container;
    const PictureCallback callback;
    std::mutex elementMutex;  // guards: appSink
    GstOwned<GstElement> appSink;
    // Touched by the one streaming thread of the sink.
    GstOwned<GstCaps> lastCaps;
    GstVideoInfo info{};
    ColorSpace color;
    bool failureWasLogged = false;
};

}  // namespace Corvanta::Engine
