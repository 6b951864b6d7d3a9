#include "tests/engine/janus/OwnNetwork.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>

#include "tests/engine/mesh/TunLink.h"

namespace Corvanta::Engine {

namespace {

constexpr const char* kDevice = "rooms0";
constexpr const char* kAddress = "10.97.0.1";

}  // namespace

bool EnterOwnNetwork() {
    // The device stays as long as the process does.
    return EnterEmptyNetwork() && MakeTun(kDevice) >= 0 && BringUp(kDevice, kAddress);
}

std::string OwnAddress() {
    ifaddrs* all = nullptr;
    if (getifaddrs(&all) != 0) return {};
    std::string found;
    for (const ifaddrs* one = all; one != nullptr && found.empty(); one = one->ifa_next) {
        const bool isUp = (one->ifa_flags & IFF_UP) != 0 && (one->ifa_flags & IFF_LOOPBACK) == 0;
        if (!isUp || one->ifa_addr == nullptr || one->ifa_addr->sa_family != AF_INET) continue;
        sockaddr_in address{};
        std::memcpy(&address, one->ifa_addr, sizeof address);
        char text[INET_ADDRSTRLEN] = {};
        if (inet_ntop(AF_INET, &address.sin_addr, text, sizeof text) != nullptr) found = text;
    }
    freeifaddrs(all);
    return found;
}

int FreePort(const std::string& address) {
    const int probe = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in wanted{};
    wanted.sin_family = AF_INET;
    inet_pton(AF_INET, address.c_str(), &wanted.sin_addr);
    socklen_t size = sizeof wanted;
    int port = 0;
    if (bind(probe, reinterpret_cast<const sockaddr*>(&wanted), size) == 0 &&
        getsockname(probe, reinterpret_cast<sockaddr*>(&wanted), &size) == 0) {
        port = ntohs(wanted.sin_port);
    }
    close(probe);
    return port;
}

}  // namespace Corvanta::Engine
