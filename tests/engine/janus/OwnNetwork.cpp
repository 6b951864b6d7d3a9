#include "tests/engine/janus/OwnNetwork.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <ifaddrs.h>
#include <linux/if_tun.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <fstream>

namespace Corvanta::Engine {

namespace {

constexpr const char* kAddress = "10.97.0.1";

void SetAddress(ifreq& request, const char* address) {
    sockaddr_in socketAddress{};
    socketAddress.sin_family = AF_INET;
    inet_pton(AF_INET, address, &socketAddress.sin_addr);
    std::memcpy(&request.ifr_addr, &socketAddress, sizeof socketAddress);
}

bool BringUp(int control, const char* name) {
    ifreq request{};
    std::strncpy(request.ifr_name, name, IFNAMSIZ - 1);
    if (ioctl(control, SIOCGIFFLAGS, &request) != 0) return false;
    request.ifr_flags = static_cast<short>(request.ifr_flags | IFF_UP);
    return ioctl(control, SIOCSIFFLAGS, &request) == 0;
}

// The device stays as long as the process does.
bool MakeDevice(int control) {
    const int device = open("/dev/net/tun", O_RDWR | O_CLOEXEC);
    if (device < 0) return false;
    ifreq request{};
    std::strncpy(request.ifr_name, "rooms0", IFNAMSIZ - 1);
    request.ifr_flags = IFF_TUN | IFF_NO_PI;
    if (ioctl(device, TUNSETIFF, &request) != 0) return false;
    SetAddress(request, kAddress);
    if (ioctl(control, SIOCSIFADDR, &request) != 0) return false;
    return BringUp(control, "rooms0") && BringUp(control, "lo");
}

bool Enter() {
    const uid_t user = geteuid();
    const gid_t group = getegid();
    if (user == 0) {
        if (unshare(CLONE_NEWNET) != 0) return false;
    } else {
        if (unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) return false;
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
        std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
    }
    const int control = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const bool isMade = control >= 0 && MakeDevice(control);
    if (control >= 0) close(control);
    return isMade;
}

}  // namespace

void EnterOwnNetwork() {
    // There may be no way back out of it, so somebody else tries first.
    const pid_t child = fork();
    if (child == 0) _exit(Enter() ? 0 : 1);
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child) return;
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0) Enter();
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
