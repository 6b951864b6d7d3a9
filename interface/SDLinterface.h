/* The C face of the library: everything that a host may call. All names are undecorated; the mixed prefixes
   and spellings are part of the interface that hosts bind to.

   Unless a function says otherwise, call it on the thread that called SDLinterface_GlobalInit. Failures are
   results: -1 for an integer, false or null for a query; with no current view a command does nothing. Nothing
   is drawn and no input is looked at except inside a tick. Functions whose types need C++ are declared for
   C++ only. */
#pragma once

#include "platform/DrawToolState.h"
#include "platform/HostCallbacks.h"
#include "platform/RecordingHostFunctions.h"

#ifdef __cplusplus
#include <string>
#include <vector>

#include "platform/Connections.h"
#include "platform/MediaManager.h"
#include "platform/VideoFrameBuffer.h"
extern "C" {
#else
#include <stdbool.h>
#endif

#if defined(_WIN32)
#define CORVANTA_EXPORT __declspec(dllexport)
#else
#define CORVANTA_EXPORT __attribute__((visibility("default")))
#endif

/* ---- Life of the library ---- */

/* Starts SDL, text and the media libraries and registers the media callbacks. Call once before entering a
   room; SDLinterface_RecordingViewInit calls it itself. Every step's failure is ignored: a missing video
   subsystem shows itself as a view that cannot make its window. */
CORVANTA_EXPORT void SDLinterface_GlobalInit(void);

/* Takes the network and media layers down, then the view, then SDL. Asked for by a function of the
   host that the room calls, it runs when the room has returned from its work. An int thrown by a sibling
   library ends the remaining steps and is logged. SDLinterface_GlobalInit may start a new life afterwards. */
CORVANTA_EXPORT void SDLinterface_GlobalQuit(void);

/* The same as SDLinterface_GlobalQuit. */
CORVANTA_EXPORT void SDLinterface_VideoRoomQuit(void);

/* ---- Room and recording entry ---- */

/* The window that the next EnterRoom draws on: a native handle (X11 window id or HWND, cast to a pointer) and
   its size in logical pixels. The host keeps owning the window and must keep it until the room has ended. */
CORVANTA_EXPORT void SDLinterface_SetRoomWindow(void* nativeHandle, int width, int height);

/* The host's functions for the next EnterRoom; copied, so the record may go. Null stands for no functions. */
CORVANTA_EXPORT void SDLinterface_SetHostCallbacks(const HostCallbacks* callbacks);

/* Connects and makes the room's view on the window of SDLinterface_SetRoomWindow. The opaque arguments and
   flagD go to the connection as they are, flagB and flagC to the view. Texts are UTF-8 and copied; null
   counts as empty. Returns the connection index, -1 on failure: then there is no room, unless the connection
   itself failed, which leaves an earlier room as it was. */
CORVANTA_EXPORT int EnterRoom(void* connectionArg0, void* connectionArg1, const char* sessionName,
                              const char* roomName, bool flagB, bool isHost, bool flagC, void* connectionArg7,
                              bool flagD);

/* Told when the connection breaks: whether it will be tried again, and whether this side ended it. On the
   signalling layer's thread. Null ends it; on return no call of the old function is in progress elsewhere. */
CORVANTA_EXPORT void SDLinterface_VideoRoomSetConnectionDroppedCallback(void (*callback)(bool willRetry,
                                                                                         bool endedHere));

/* Starts the library and makes a view for playing a recording. functions is copied; null stands for none.
   Returns the view's initialisation: 1 on success, -1 on failure (the view is current all the same). */
CORVANTA_EXPORT int SDLinterface_RecordingViewInit(void* nativeHandle, int width, int height,
                                                   const RecordingHostFunctions* functions);

/* Connects the view of SDLinterface_RecordingViewInit. durationMs is the recording's length in milliseconds.
   statusCallback hears each playback status; it may be null. Returns the connection index, -1 on failure. */
CORVANTA_EXPORT int SDLinterface_ConnectToRecording(void* connectionArg0, void* connectionArg1,
                                                    const char* title, double durationMs,
                                                    void (*statusCallback)(int status));

/* Resets the recordings view and ends the connection. Returns what the connection library answers. */
CORVANTA_EXPORT int SDLinterface_DisconnectFromRecording(int connectionIndex);

/* ---- Tick ---- */

/* One tick: timers, the active speaker once a second, one pass over the input and one drawing. */
CORVANTA_EXPORT void SDL_VideoRoomCheckInputAndRender(void);

/* One tick for a host's render loop: a room that has ended, before or during the tick, is shut down. */
CORVANTA_EXPORT void SDL_WPFVideoRoomCheckInputAndRender(void);

/* One look at the thread's message queue, so that the operating system sees the thread as responsive. Nothing
   is removed. Returns 1 if a message waits, else 0. */
CORVANTA_EXPORT int SDLinterface_WindowsFlushEvents(void);

/* The connection index of the last entry; -1 after a failed one. */
CORVANTA_EXPORT int SDL_GetCurrentConnectionIndex(void);
CORVANTA_EXPORT void SDL_SetVideoRoomConection(int connectionIndex);

/* ---- Input. Pushed on SDL's queue and looked at by the next tick; window: 0 the room's, 1 the detached
 * wall's, 2 the last extra view's. ---- */

/* The pointer, as fractions of the view from 0 to 1 across and down. (-1, -1) says that it left the window.
   Nothing without a view. */
CORVANTA_EXPORT void SDLinterface_PushMouseMoveEvent(int window, float x, float y);
/* The one logical button. A click hits what the tick before saw under the pointer. */
CORVANTA_EXPORT void SDLinterface_PushMouseButtonDownEvent(int window);
CORVANTA_EXPORT void SDLinterface_PushMouseButtonUpEvent(int window);
/* Steps of the wheel, in the host's own direction. */
CORVANTA_EXPORT void SDLinterface_PushScrollWheelEvent(int window, int x, int y);
CORVANTA_EXPORT void SDLinterface_PushWindowMovedEvent(int window, int x, int y);
/* A key by its name, such as "Space", "LeftCtrl" or "a"; an unknown name is dropped. */
CORVANTA_EXPORT void SDLinterface_PushKeyDownEvent(int window, const char* keyName);
CORVANTA_EXPORT void SDLinterface_PushKeyUpEvent(int window, const char* keyName);
/* Lets SDL itself report keys and text, or not; keys that are pushed pass all the same. Switching off also
   discards those that wait. Returns the state that text editing had before. */
CORVANTA_EXPORT int SDLinterface_TextInputEnabled(bool enabled);
/* While disabled, no window event reaches the view: its size changes by SDLinterface_VideoRoomResize alone.
   Each call also discards every event that waits, input included. */
CORVANTA_EXPORT void SDLinterface_DisableWindowResizingEvents(bool disable);

/* ---- Window and renderer ---- */

/* The host's window has a new size, in pixels of the window. Lays out and draws at once. */
CORVANTA_EXPORT void SDLinterface_VideoRoomResize(int width, int height);

/* The part of the window that is drawn on: (0, 0, width, height). */
CORVANTA_EXPORT void SDLinterface_VideoRoomSetViewport(int width, int height);

/* How many pixels of the window make one logical pixel. Coordinates of the controls stay as they are. */
CORVANTA_EXPORT void SDLinterface_VideoRoomSetContentScaleFactor(float factor);

/* Size of the controls in a window: 0 the room's, 1 the detached wall's, 2 the last extra view's. */
CORVANTA_EXPORT void SDLinterface_UpdateWindowScale(int window, float scale);

/* White of SDR pictures on an HDR output, in nits; kept in the configuration. The query answers 0 without a
 * view. */
CORVANTA_EXPORT void SDLinterface_VideoRoomSetSDRBrightnessBoost(float nits);
CORVANTA_EXPORT float SDLinterface_VideoRoomGetSDRBrightnessBoost(void);

/* Always null: the view has no native child window of its own. */
CORVANTA_EXPORT void* SDLinterface_VideoRoomGetNativeVideoView(void);

/* Tells the room that its window is in full screen; the host's function is not called back. */
CORVANTA_EXPORT void SDLinterface_VideoRoomSetFullscreenEnabled(bool enabled);

/* ---- The bar. Without a room they do nothing. Any thread, but they wait for a drawing in progress. ---- */

/* The room's name in the bar; null is ignored. */
CORVANTA_EXPORT void SDLInterface_VideoRoomUpdateRoomName(const char* name);
/* The side panel of chat and notes has closed: its button is no longer lit, and the bar shows itself. click:
   as if the user had pressed the button, so ShowOptions is called back. */
CORVANTA_EXPORT void SDLinterface_VideoRoomUntoggleOptionsButton(bool click);
/* The audio mixer has closed. Its button is pressed if it is lit, so ShowAudioMixer is called back. */
CORVANTA_EXPORT void SDLInterface_VideoRoomUntoggleAudioMixer(void);
/* A dot on the button of the side panel: there is something new. */
CORVANTA_EXPORT void SDLInterface_VideoRoomSetShowSidebarNotification(bool shown);
/* The drawing tools came or went. While they are there the bar makes room for them. */
CORVANTA_EXPORT void SDLinterface_VideoRoomSetDrawToolEnabled(bool enabled);

/* ---- Drawing over the main video ---- */

/* Fills the record from the configuration, field by field with a default where there is no good value.
   enabled stays as it is, and the tool is the pencil. fontFamilyName must be null or come from an earlier
   call, which is released; the new one is new char[] and belongs to the caller. Always true. A null record is
   ignored. */
CORVANTA_EXPORT bool SDLinterface_LoadDrawToolState(DrawToolState* state);
/* The tool with its settings, which are kept in the configuration and hold for the next mark; an open text
   changes at once. enabled also shows or hides the room's bar, as SDLinterface_VideoRoomSetDrawToolEnabled
   does. A new room starts with drawing off: set the record again. Nothing without a room. */
CORVANTA_EXPORT void SDLinterface_SetDrawToolState(const DrawToolState* state);
/* The local user's marks on the main video; nobody else's are touched. ReportHistoryState is called back with
   what can be undone and redone. Nothing without a room or a main video. */
CORVANTA_EXPORT void SDLinterface_UndoCurrentCanvas(void);
CORVANTA_EXPORT void SDLinterface_RedoCurrentCanvas(void);
CORVANTA_EXPORT void SDLinterface_ClearCurrentCanvas(void);
/* A text is being typed over the video, so keys belong to it. */
CORVANTA_EXPORT bool SDLinterface_IsTextOpen(void);

/* ---- The wall ---- */

/* Puts the wall into a window of the host's own, which shows the tiles from then on; the room's window keeps
   the main video. A window that is there already is replaced. Returns 1 on success; -1 on failure, and then
   the wall stands in the room. Not from inside a tick: -1. */
CORVANTA_EXPORT int SDLinterface_CreateDetachedView(void* nativeHandle, int width, int height);
/* One tick of that window, beside the room's own. */
CORVANTA_EXPORT void SDLinterface_TickDetachedView(void);
/* 0 a strip, 1 a column, 2 a grid of up to 3 by 3 tiles a page. Nothing while the wall stands in the room. */
CORVANTA_EXPORT void SDLinterface_SetDetachedLayout(int mode);
/* Brings the wall back into the room. Call it before the window goes. */
CORVANTA_EXPORT void SDLinterface_LeaveDetachedLayout(void);
/* The strip in and out of the room's window. */
CORVANTA_EXPORT void SDLinterface_SlideThumbnails(bool show, bool animated);
/* Whether the host draws borders around the detached wall's window. */
CORVANTA_EXPORT void SDLInterface_SetDetachedBordersVisibility(bool visible);

/* ---- Local preview: the own camera's picture in a window of its own, window index 2 ---- */

/* Opens the preview on a host's window: a native handle and its size in pixels of the window. fit: the whole
   picture is shown between bars; else it fills the window and is cropped. It needs no room and no camera:
   black until there is a picture, and it goes on with the camera of the next room. A second call replaces the
   first preview, which is also how it takes a new size. 1 on success; -1 on failure, and then there is none.
   The host keeps owning the window and must keep it until the preview is closed. */
CORVANTA_EXPORT int SDLinterface_OpenLocalPreview(void* nativeHandle, int width, int height, bool fit);
/* One drawing if there is a new picture or size, else next to nothing. */
CORVANTA_EXPORT void SDLinterface_TickLocalPreview(void);
/* Ends the preview, as SDLinterface_GlobalQuit does. Nothing without one. */
CORVANTA_EXPORT void SDLinterface_CloseLocalPreview(void);

/* ---- Room state ---- */

/* Microphone and camera as the user wants them. The last value outlives the view: the queries answer it when
   there is none. */
CORVANTA_EXPORT void SDLinterface_VideoRoomSetMicEnabled(bool enabled);
CORVANTA_EXPORT bool SDLinterface_VideoRoomGetMicEnabled(void);
CORVANTA_EXPORT void SDLinterface_VideoRoomSetVideoEnabled(bool enabled);
CORVANTA_EXPORT bool SDLinterface_VideoRoomGetVideoEnabled(void);

/* One stream's picture on and off, for the moment. Unknown ids are ignored here and below. */
CORVANTA_EXPORT void SDLinterface_SetStreamVideoEnabled(const char* streamId, bool enabled);
/* Flips a stream's sound if its switch stands at on, where on means silent. */
CORVANTA_EXPORT void SDLinterface_SetStreamSoundToggle(const char* streamId, bool on);
/* Makes a stream the main video; with respectToggle a second call lets the active speaker decide again. */
CORVANTA_EXPORT void SDLinterface_SetStreamSpotlight(const char* streamId, bool respectToggle);

/* ---- Sound and devices. Volumes are slider positions from 0 to 1. ---- */

CORVANTA_EXPORT void SDLInterface_VideoRoomSetParticipantVolume(const char* streamId, float volume);
/* A common factor for all participants' cameras, and for all other streams. */
CORVANTA_EXPORT void SDLInterface_VideoRoomSetParticipantsVolume(float volume);
CORVANTA_EXPORT void SDLInterface_VideoRoomSetStreamsVolume(float volume);
/* Pixels, frames a second and bits a second of the own camera's picture. Needs no view; always true. */
CORVANTA_EXPORT bool SDLinterface_SetLocalCameraProperties(int width, int height, int frameRate, int bitrate);
/* Ends SDL's audio subsystem. */
CORVANTA_EXPORT void SDLInterface_AudioQuit(void);
/* Index of SDL's audio device of exactly that name, capture: among the microphones; -1 when there is none.
   Starts SDL's audio subsystem if need be. */
CORVANTA_EXPORT int SDL_GetAudioDeviceIndex(const char* name, bool capture);
/* Sound devices have changed; renegotiate: and the camera with them, by the values of the last call below.
   False without a view. */
CORVANTA_EXPORT bool SDLinterface_VideoRoomAudioDeviceUpdate(bool renegotiate);
/* The user has chosen other devices. deviceName: of the camera, zero-terminated UTF-8, or null for the
   configured one; the other values go to the media engine as they are. Waits 100 ms when the camera goes.
   False without a view. */
CORVANTA_EXPORT bool SDLinterface_VideoRoomTriggerDeviceRenegociation(void* deviceName, void* deviceArg1,
                                                                      void* deviceArg2, void* deviceArg3);
/* The host's own listener to the local connection's figures; null for nobody. There is one listener in all:
   the own camera's tile takes the place of the host's, and the reverse. */
CORVANTA_EXPORT void SDLinterface_SetConnectionStatsCallback(void (*callback)(int, double, int, double,
                                                                              double, double, double));

/* Writes the next frame of a stream as a still into the configuration's folder. False without a view or for
   an unknown stream. Any thread. */
CORVANTA_EXPORT bool SDLinterface_ExportRemoteFrame(const char* streamId);

/* Hears whether a shared file plays; null for nobody. */
CORVANTA_EXPORT void SDLinterface_SetNativeStreamPlaybackStatusCallback(void (*callback)(bool playing));

/* ---- Recording playback, called by the connection library, on its threads ---- */

CORVANTA_EXPORT void SDLinterface_OnRecordingPlaybackStatus(int status);
/* Accepted and ignored: the position comes from the view's own clock. */
CORVANTA_EXPORT void SDLinterface_OnRecordingPlaybackProgress(int position, int duration);

#ifdef __cplusplus

/* Streams that have a picture at the current position of the recording. Any thread. */
CORVANTA_EXPORT void SDLinterface_OnActiveStreams(std::vector<std::string> streamIds);

/* ---- Media callbacks. Any thread. ---- */

CORVANTA_EXPORT void SDLinterface_VideoRoomUpdateActiveSpeaker(std::string streamId);

/* A local or remote video source exists. The result takes its frames and belongs to the caller, who deletes
   it; null without a room. It may be called after the stream or the room has gone: the frame is then dropped.
 */
CORVANTA_EXPORT Corvanta::FrameCallback* SDLinterface_VideoRoomAddLocalVideoSource(Corvanta::StreamType type,
                                                                                   std::string streamId);
CORVANTA_EXPORT Corvanta::FrameCallback* SDLinterface_VideoRoomAddRemoteVideoSource(
    const std::string& streamId);
/* Source type 0 is a local source, any other value a remote one. */
CORVANTA_EXPORT Corvanta::FrameCallback* SDLinterface_VideoRoomAddStream(
    Corvanta::StreamType type, Corvanta::StreamSourceType sourceType, const std::string& streamId);

CORVANTA_EXPORT void SDLinterface_VideoRoomRemoveLocalVideoSource(std::string streamId);
CORVANTA_EXPORT void SDLinterface_VideoRoomRemoveRemoteVideoSource(std::string streamId);

/* The handlers of a new data channel, in the order in which each message goes to them. Empty without a room.
   A handler keeps the room's view alive and may be called after the room has ended. */
CORVANTA_EXPORT std::vector<std::function<void(const Corvanta::DataChannelMessage&)>>
SDLinterface_VideoRoomGetRemoteDataChannelCallbacks();

/* A connection was lost or came back; a lost one is restarted at once. */
CORVANTA_EXPORT void SDLinterface_VideoRoomOnConnectionStatusUpdate(std::string streamId, bool lost);

CORVANTA_EXPORT void SDLinterface_OnNativeStreamPlaybackStatusUpdate(const std::string& name, bool playing);

/* Feeds a further sink with a stream's frames, also one of the local user by the name under which others know
   it. The sink is borrowed until it is taken back. Nothing without a view. */
CORVANTA_EXPORT void SDLinterface_RegisterLocalStreamCallback(std::string name,
                                                              Corvanta::FrameCallback* sink);
CORVANTA_EXPORT void SDLinterface_UnregisterLocalStreamCallback(std::string name,
                                                                Corvanta::FrameCallback* sink);

/* Turns parts of a stream's subscription on and off: video, audio and data, in this order. Needs no view. */
CORVANTA_EXPORT void SDLinterface_ConfigureStream(std::string streamId, bool video, bool audio, bool data);

} /* extern "C" */
#endif
