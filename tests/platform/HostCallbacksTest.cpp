#include "platform/HostCallbacks.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>

#include "platform/DrawToolState.h"
#include "platform/RecordingHostFunctions.h"
#include "platform/SDLAdditions.h"

namespace {

constexpr size_t Index(size_t offset) {
    return offset / sizeof(void (*)());
}

TEST(HostCallbacks, HasThirtyOneEntriesInTheOrderThatTheHostBindsTo) {
    const std::array<size_t, CORVANTA_HOST_CALLBACK_COUNT> offsets{
        offsetof(HostCallbacks, OnMicrophoneChanged),
        offsetof(HostCallbacks, OnPushToTalkConfigured),
        offsetof(HostCallbacks, OnCameraToggled),
        offsetof(HostCallbacks, OnSpeakerToggled),
        offsetof(HostCallbacks, ShowAudioMixer),
        offsetof(HostCallbacks, StartScreenShare),
        offsetof(HostCallbacks, ShowOptions),
        offsetof(HostCallbacks, SetFullscreen),
        offsetof(HostCallbacks, ShowDrawTool),
        offsetof(HostCallbacks, RequestRecording),
        offsetof(HostCallbacks, DetachWall),
        offsetof(HostCallbacks, AttachWall),
        offsetof(HostCallbacks, OpenAudioMixer),
        offsetof(HostCallbacks, LeaveRoom),
        offsetof(HostCallbacks, HideStreamInfo),
        offsetof(HostCallbacks, OnStillExported),
        offsetof(HostCallbacks, reserved16),
        offsetof(HostCallbacks, reserved17),
        offsetof(HostCallbacks, reserved18),
        offsetof(HostCallbacks, SetCursor),
        offsetof(HostCallbacks, reserved20),
        offsetof(HostCallbacks, reserved21),
        offsetof(HostCallbacks, reserved22),
        offsetof(HostCallbacks, ReportHistoryState),
        offsetof(HostCallbacks, reserved24),
        offsetof(HostCallbacks, StartNativeStream),
        offsetof(HostCallbacks, StartApplicationStream),
        offsetof(HostCallbacks, StartMediaSiloStream),
        offsetof(HostCallbacks, RemoveParticipant),
        offsetof(HostCallbacks, ShowStreamInfo),
        offsetof(HostCallbacks, OnMainVideoChanged)};
    for (size_t i = 0; i < offsets.size(); ++i) {
        EXPECT_EQ(Index(offsets[i]), i);
    }
    EXPECT_EQ(sizeof(HostCallbacks), 31 * sizeof(void (*)()));
}

TEST(RecordingHostFunctions, IsAPairOfPointers) {
    EXPECT_EQ(sizeof(RecordingHostFunctions), 2 * sizeof(void (*)()));
}

TEST(DrawToolState, IsLaidOutInNaturalAlignment) {
    EXPECT_EQ(offsetof(DrawToolState, selectedTool), 4U);
    EXPECT_EQ(offsetof(DrawToolState, complexSelectedShape), 8U);
    EXPECT_EQ(offsetof(DrawToolState, pencilStrokeWidth), 16U);
    EXPECT_EQ(offsetof(DrawToolState, eraserStrokeWidth) + sizeof(double), sizeof(DrawToolState));
}

TEST(SDLAdditions, NamePlanarFormatsByTheirFourLetters) {
    EXPECT_EQ(Corvanta::kPixelFormatI422, 0x32323449U);
    EXPECT_EQ(Corvanta::kPixelFormatI444, 0x34343449U);
    EXPECT_EQ(Corvanta::kPixelFormatI010, 0x30313049U);
    EXPECT_EQ(Corvanta::kPixelFormatI210, 0x30313249U);
    EXPECT_EQ(Corvanta::kPixelFormatI410, 0x30313449U);
}

TEST(SDLAdditions, PutLuminancesBeforeLightLevels) {
    using Corvanta::RenderHDRMetadata;
    EXPECT_EQ(sizeof(RenderHDRMetadata), 12 * sizeof(float));
    EXPECT_EQ(offsetof(RenderHDRMetadata, whiteY), 7 * sizeof(float));
    EXPECT_EQ(offsetof(RenderHDRMetadata, maxMasteringLuminanceNits), 8 * sizeof(float));
    EXPECT_EQ(offsetof(RenderHDRMetadata, minMasteringLuminanceNits), 9 * sizeof(float));
    EXPECT_EQ(offsetof(RenderHDRMetadata, maxContentLightLevelNits), 10 * sizeof(float));
    EXPECT_EQ(offsetof(RenderHDRMetadata, maxFrameAverageLightLevelNits), 11 * sizeof(float));
}

}  // namespace
