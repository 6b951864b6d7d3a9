// Names of this floor for headers that only point at them.
#pragma once

namespace Corvanta::Room {

class VideoAdaptation;
class VideoRoomView;

}  // namespace Corvanta::Room
