// GLib's types of the network, known before threads ask for them. Any thread.
#pragma once

namespace Corvanta::Engine {

// Registers the types of addresses and of HTTP on this thread; nothing after the first time. GLib registers a
// type when it is asked for first, and two threads that do so at once may wait for each other for ever: one
// adds an interface to the addresses while the other initializes a class that asks for them.
void EnsureNetworkTypes();

}  // namespace Corvanta::Engine
