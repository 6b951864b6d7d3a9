// A network of two that a test makes: each has a namespace with one device in it, and the test carries the
// packets between the two devices, or does not.
#pragma once

#include <atomic>
#include <string>
#include <thread>

namespace Corvanta::Engine {

// Puts the process into a network without any device that is up. Before any thread is started. False where
// the system does not allow it.
[[nodiscard]] bool EnterEmptyNetwork();

// Makes a device whose packets are read from and written to what is returned, which lives as long as it; -1
// where that is impossible.
[[nodiscard]] int MakeTun(const std::string& name);
// Gives the device, when it is there, an address of a network of 24 bits and brings it up, the loopback too.
// False when that does not come about.
[[nodiscard]] bool BringUp(const std::string& name, const std::string& address);
// Gives the device to the network of that process.
[[nodiscard]] bool HandOver(const std::string& name, int process);

// Carries packets both ways while it lives.
class TunRelay final {
public:
    TunRelay(int oneTun, int otherTun);
    ~TunRelay();
    TunRelay(const TunRelay&) = delete;
    TunRelay& operator=(const TunRelay&) = delete;

    // Any thread. Nothing is carried; one packet of so many is lost, 0 for none.
    std::atomic<bool> isCut = false;
    std::atomic<unsigned> lostOneOf = 0;
    // Packets that were carried.
    std::atomic<unsigned> carried = 0;

private:
    void Run();

    const int one, other;
    std::atomic<bool> isEnding = false;
    std::thread thread;
};

}  // namespace Corvanta::Engine
