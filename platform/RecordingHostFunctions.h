/* Functions through which the recordings view tells its host of the user's choices. C record, copied by
   SDLinterface_RecordingViewInit; both entries are called on the host's thread, inside a tick, and may be
   null. */
#pragma once

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct RecordingHostFunctions {
    /* The user opened (true) or closed (false) the chats and notes panel. */
    void (*showChatsAndNotes)(bool open);
    /* The user entered (true) or left (false) full screen. */
    void (*setFullscreen)(bool on);
} RecordingHostFunctions;

#ifdef __cplusplus
}
#endif
