// Which speaker and which microphone the settings choose among what the machine has. Any thread; the answers
// come from memory but for the first, which has the machine's devices looked up.
#pragma once

#include <gst/gst.h>

#include "engine/Engine.h"
#include "engine/webrtc/GstSupport.h"

namespace Corvanta::Engine {

// Whether nobody would hear anything: the setting says so, the run is a silent one, or there is no device.
[[nodiscard]] bool SpeakerIsNone();
// Whether the user has chosen to have no microphone. On a machine without one the test tone stands for it.
[[nodiscard]] bool MicrophoneIsNone();

// A new element that plays on the chosen device; the machine's default one where the chosen is not there, and
// one that plays into nothing where SpeakerIsNone. Null, and a log line, when GStreamer lacks it.
[[nodiscard]] GstOwned<GstElement> MakeSpeaker();
[[nodiscard]] GstOwned<GstElement> MakeSilentSpeaker();
// A new element that captures from the chosen device, or makes the test tone; null where MicrophoneIsNone.
[[nodiscard]] GstOwned<GstElement> MakeMicrophone();

}  // namespace Corvanta::Engine
