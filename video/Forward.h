// Names of this floor for headers that only point at them.
#pragma once

namespace Corvanta::Video {

class FrameIntake;
class FrameWorker;
class TilePicture;
class VideoFrame;
class VideoThumbnails;

}  // namespace Corvanta::Video
