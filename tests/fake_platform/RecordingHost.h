// A host whose functions write their calls down, as "Host_OnMainVideoChanged" and so on.
#pragma once

#include "platform/HostCallbacks.h"
#include "tests/fake_platform/CallLog.h"

namespace Corvanta::Testing {

[[nodiscard]] inline HostCallbacks RecordingHost() {
    HostCallbacks callbacks{};
    callbacks.OnMicrophoneChanged = [](bool on) { Calls().Record("Host_OnMicrophoneChanged", on); };
    callbacks.OnPushToTalkConfigured = [] { Calls().Record("Host_OnPushToTalkConfigured"); };
    callbacks.OnCameraToggled = [](bool on) { Calls().Record("Host_OnCameraToggled", on); };
    callbacks.OnSpeakerToggled = [](bool on) { Calls().Record("Host_OnSpeakerToggled", on); };
    callbacks.ShowAudioMixer = [](bool open) { Calls().Record("Host_ShowAudioMixer", open); };
    callbacks.StartScreenShare = [] { Calls().Record("Host_StartScreenShare"); };
    callbacks.ShowOptions = [](bool open) { Calls().Record("Host_ShowOptions", open); };
    callbacks.SetFullscreen = [](bool on) { Calls().Record("Host_SetFullscreen", on); };
    callbacks.ShowDrawTool = [](bool on) { Calls().Record("Host_ShowDrawTool", on); };
    callbacks.RequestRecording = [](bool start) { Calls().Record("Host_RequestRecording", start); };
    callbacks.DetachWall = [] { Calls().Record("Host_DetachWall"); };
    callbacks.AttachWall = [] { Calls().Record("Host_AttachWall"); };
    callbacks.OpenAudioMixer = [](const char* id, const char* name, float volume, int32_t reserved0,
                                  int32_t reserved1) {
        Calls().Record("Host_OpenAudioMixer", id, name, volume, reserved0, reserved1);
    };
    callbacks.LeaveRoom = [] { Calls().Record("Host_LeaveRoom"); };
    callbacks.HideStreamInfo = [](const char* id) { Calls().Record("Host_HideStreamInfo", id); };
    callbacks.OnStillExported = [](const char* path) { Calls().Record("Host_OnStillExported", path); };
    callbacks.SetCursor = [](int32_t cursor) { Calls().Record("Host_SetCursor", cursor); };
    callbacks.ReportHistoryState = [](bool canUndo, bool canRedo) {
        Calls().Record("Host_ReportHistoryState", canUndo, canRedo);
    };
    callbacks.StartNativeStream = [](int32_t type) { Calls().Record("Host_StartNativeStream", type); };
    callbacks.StartApplicationStream = [](int32_t application, int32_t type, int32_t processId) {
        Calls().Record("Host_StartApplicationStream", application, type, processId);
    };
    callbacks.StartMediaSiloStream = [] { Calls().Record("Host_StartMediaSiloStream"); };
    callbacks.RemoveParticipant = [](const char* id, const char* name) {
        Calls().Record("Host_RemoveParticipant", id, name);
    };
    callbacks.ShowStreamInfo = [](const char* id, float right, float bottom) {
        Calls().Record("Host_ShowStreamInfo", id, right, bottom);
    };
    callbacks.OnMainVideoChanged = [] { Calls().Record("Host_OnMainVideoChanged"); };
    return callbacks;
}

}  // namespace Corvanta::Testing
