// Sibling library Corvanta.GraphQLClient: the signed-in user and the recording sessions of the service. Every
// function may be called on any thread. The getters answer from memory; the mutations are sent in the
// background.
//
// Reconciled forms: the stored token is a std::string by value, the three profile getters return client
// string objects, and the mutations take zero-terminated texts.
#pragma once

#include <string>

#include "platform/Api.h"

namespace Corvanta {

// A text that the client owns. Released with GraphQLClient_CStringDealloc, never deleted by the caller.
class GraphQLClientString {
public:
    // Zero-terminated UTF-8, never null, valid until the object is released.
    [[nodiscard]] virtual const char* c_str() const = 0;

protected:
    virtual ~GraphQLClientString() = default;
};

}  // namespace Corvanta

extern "C" {

// The token of the stored session; empty when nobody is signed in. A secret: never logged.
CORVANTA_PLATFORM_API std::string GraphQLClient_GetStoredToken();

// Facts about the signed-in user, empty when nobody is. Never null; the caller releases each.
CORVANTA_PLATFORM_API Corvanta::GraphQLClientString* GraphQLClient_GetProfileId();
CORVANTA_PLATFORM_API Corvanta::GraphQLClientString* GraphQLClient_GetEmail();
CORVANTA_PLATFORM_API Corvanta::GraphQLClientString* GraphQLClient_GetDisplayName();

// Releases a string of the client. Null is ignored.
CORVANTA_PLATFORM_API void GraphQLClient_CStringDealloc(Corvanta::GraphQLClientString* string);

// Files a recording session. `startTime` is UTC as "2024-03-01T12:34:56Z"; what `flag` means is the service's
// matter. Texts are copied. A failure is logged by the client.
CORVANTA_PLATFORM_API void GraphQLClient_CreateSessionMutation(const char* roomId, const char* sessionName,
                                                               const char* profileId, bool flag,
                                                               const char* startTime,
                                                               const char* recordingId);

// Closes the room's current recording session.
CORVANTA_PLATFORM_API void GraphQLClient_StopCurrentRecordingMutation(const char* roomId);
}
