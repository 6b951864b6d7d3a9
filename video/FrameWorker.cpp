#include "video/FrameWorker.h"

#include <chrono>

#include "platform/Logger.h"
#include "video/DisplayColor.h"
#include "video/FrameCheck.h"
#include "video/FrameConverter.h"
#include "video/FrameIntake.h"

namespace Corvanta::Video {
namespace {

// The longest time that a stopped stream's worker sleeps before it looks whether it is still wanted.
constexpr std::chrono::milliseconds kWait{100};

}  // namespace

std::optional<UI::PlaneLayout> PlaneLayoutOf(const VideoFrameBuffer& frame) {
    const VideoFrameBufferType type = frame.GetType();
    const bool narrow = type >= VideoFrameBufferType::YUV420 && type <= VideoFrameBufferType::YUV444;
    const bool wide = type >= VideoFrameBufferType::YUV420_16 && type <= VideoFrameBufferType::YUV444_16;
    if (!narrow && !wide) return std::nullopt;
    const PlanarYUVFrameBuffer* planes =
        narrow ? static_cast<const PlanarYUVFrameBuffer*>(dynamic_cast<const YUVFrameBuffer*>(&frame))
               : dynamic_cast<const YUV16FrameBuffer*>(&frame);
    if (planes == nullptr) return std::nullopt;
    return UI::PlaneLayout{wide, planes->GetSubsamplingMode(), frame.GetColorSpace().GetMatrix(),
                           frame.GetColorSpace().GetRange()};
}

FrameWorker::FrameWorker(FrameIntake& intake, FrameWorkerClient& client)
    : intake_(intake),
      client_(client),
      transformer_(WebRTC_GetFrameTransformerInstance()),
      thread_(&FrameWorker::Run, this) {}

FrameWorker::~FrameWorker() {
    Stop();
    WebRTC_DeleteFrameTransformerInstance(transformer_);
}

void FrameWorker::Stop() {
    if (!thread_.joinable()) return;
    RequestStop();
    thread_.join();
}

void FrameWorker::RequestStop() {
    running_.store(false);
    intake_.Close();
}

void FrameWorker::Run() {
    Work();
    ended_.store(true);
}

void FrameWorker::Work() {
    while (running_.load()) {
        const std::optional<Frame> taken = intake_.Take(kWait);
        if (!running_.load()) return;
        if (taken.has_value()) {
            const FrameDefect defect = CheckFrame(**taken);
            if (IsUnsafeToRead(defect)) {
                LOG(3, "Dropped a video frame: %s", Describe(defect));
                continue;
            }
            PrepareAndInstall(*taken, client_.OnFrameTaken(*taken));
        } else if (const auto again = client_.TakeFrameToPrepareAgain()) {
            PrepareAndInstall(again->first, again->second);
        }
    }
}

void FrameWorker::PrepareAndInstall(const Frame& source, UI::DisplayTraits display) {
    bool installed = false;
    while (!installed && running_.load() && Prepare(source, display)) {
        const std::optional<UI::DisplayTraits> changed = client_.Install(prepared_, display);
        installed = !changed.has_value();
        display = changed.value_or(display);
    }
    prepared_.frame.reset();
    if (!installed) client_.OnFrameGivenUp();
}

bool FrameWorker::Prepare(const Frame& source, const UI::DisplayTraits& display) {
    prepared_.frame = source;
    prepared_.packed = false;
    // No texture will show it, so its colours do not matter.
    if (CheckFrame(*source) != FrameDefect::None) return true;
    const ColorSpace& colorSpace = source->GetColorSpace();
    if (!IsShownUnconverted(colorSpace, display.colorSpace)) {
        prepared_.frame =
            WebRTC_ConvertFrame(transformer_, source, source->GetWidth(), source->GetHeight(),
                                source->GetType(), ConversionTarget(colorSpace, display.colorSpace));
        if (prepared_.frame == nullptr) {
            LOG(3, "Dropped a video frame: its colours could not be converted");
            return false;
        }
        if (const FrameDefect defect = CheckFrame(*prepared_.frame); IsUnsafeToRead(defect)) {
            LOG(3, "Dropped a converted video frame: %s", Describe(defect));
            return false;
        }
    }
    const VideoFrameBuffer& frame = *prepared_.frame;
    const std::optional<UI::PlaneLayout> layout = PlaneLayoutOf(frame);
    if (!layout.has_value() || CheckFrame(frame) != FrameDefect::None) return true;
    if (UI::HdrSdl::ShowsPlanes(display, *layout)) return true;
    const auto width = static_cast<size_t>(frame.GetWidth());
    prepared_.raster.pixels.resize(width * static_cast<size_t>(frame.GetHeight()));
    ConvertToArgb(static_cast<const PlanarYUVFrameBuffer&>(frame), prepared_.raster.pixels.data(),
                  width * sizeof(uint32_t));
    prepared_.packed = true;
    return true;
}

}  // namespace Corvanta::Video
