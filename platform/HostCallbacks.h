/* Functions of the host that the room calls. A C record: the order and number of its entries are part of the
   interface that the host binds to. Any entry may be null, and each is tested before a call. Texts are
   zero-terminated UTF-8, valid for the call. Calls come on the thread of the tick; StartScreenShare,
   StartNativeStream, StartApplicationStream, StartMediaSiloStream and OnStillExported on the room's action
   thread. A command that presses a button of the bar calls that button's function on its own thread. But for
   the five the room is locked meanwhile: a function may call the library back, and must wait for no other
   thread. */
#pragma once

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

/* Numbers of StartApplicationStream's first argument. */
enum HostApplication { HostApplicationDaVinciResolve = 0, HostApplicationAutodeskFlame = 1 };

typedef struct HostCallbacks {
    /* 0: the local microphone was switched. */
    void (*OnMicrophoneChanged)(bool on);
    /* 1: the room started with a key for push-to-talk. */
    void (*OnPushToTalkConfigured)(void);
    /* 2, 3: the local camera, the room's sound was switched. */
    void (*OnCameraToggled)(bool on);
    void (*OnSpeakerToggled)(bool on);
    /* 4: open or close the audio mixer. */
    void (*ShowAudioMixer)(bool open);
    /* 5: choose a screen or window and share it. */
    void (*StartScreenShare)(void);
    /* 6: open or close the side panel of chat and notes. */
    void (*ShowOptions)(bool open);
    /* 7 */
    void (*SetFullscreen)(bool on);
    /* 8: show or hide the drawing tools. */
    void (*ShowDrawTool)(bool on);
    /* 9: start or stop recording the room. */
    void (*RequestRecording)(bool start);
    /* 10, 11: put the wall into a window of its own and back. */
    void (*DetachWall)(void);
    void (*AttachWall)(void);
    /* 12: mix the sound of one stream; volume from 0 to 1, the two numbers are always -1. */
    void (*OpenAudioMixer)(const char* streamId, const char* displayName, float volume, int32_t reserved0,
                           int32_t reserved1);
    /* 13 */
    void (*LeaveRoom)(void);
    /* 14: close the panel that ShowStreamInfo opened. */
    void (*HideStreamInfo)(const char* streamId);
    /* 15: a still picture was written to this path. */
    void (*OnStillExported)(const char* path);
    /* 16 to 18 */
    void (*reserved16)(void);
    void (*reserved17)(void);
    void (*reserved18)(void);
    /* 19: shape of the pointer, at every tick: 0 arrow, 1 hand, further ones from the drawing tools. */
    void (*SetCursor)(int32_t cursor);
    /* 20 to 22 */
    void (*reserved20)(void);
    void (*reserved21)(void);
    void (*reserved22)(void);
    /* 23: whether the drawing on the main video can be undone and redone. */
    void (*ReportHistoryState)(bool canUndo, bool canRedo);
    /* 24 */
    void (*reserved24)(void);
    /* 25: choose a source of that stream type and share it. */
    void (*StartNativeStream)(int32_t streamType);
    /* 26: share an application (HostApplication) as a stream of that type; process id -1 when it is not
     * running. */
    void (*StartApplicationStream)(int32_t application, int32_t streamType, int32_t processId);
    /* 27 */
    void (*StartMediaSiloStream)(void);
    /* 28 */
    void (*RemoveParticipant)(const char* streamId, const char* displayName);
    /* 29: open the stream's panel; the anchor in logical pixels from the right and bottom edge. */
    void (*ShowStreamInfo)(const char* streamId, float right, float bottom);
    /* 30 */
    void (*OnMainVideoChanged)(void);
} HostCallbacks;

#define CORVANTA_HOST_CALLBACK_COUNT 31

#if defined(__cplusplus)
static_assert(sizeof(HostCallbacks) == CORVANTA_HOST_CALLBACK_COUNT * sizeof(void (*)(void)));
static_assert(offsetof(HostCallbacks, StartScreenShare) == 5 * sizeof(void (*)(void)));
static_assert(offsetof(HostCallbacks, OpenAudioMixer) == 12 * sizeof(void (*)(void)));
static_assert(offsetof(HostCallbacks, OnStillExported) == 15 * sizeof(void (*)(void)));
static_assert(offsetof(HostCallbacks, SetCursor) == 19 * sizeof(void (*)(void)));
static_assert(offsetof(HostCallbacks, ReportHistoryState) == 23 * sizeof(void (*)(void)));
static_assert(offsetof(HostCallbacks, StartNativeStream) == 25 * sizeof(void (*)(void)));
static_assert(offsetof(HostCallbacks, OnMainVideoChanged) == 30 * sizeof(void (*)(void)));
#endif
