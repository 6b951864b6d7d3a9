#include "tests/engine/mesh/TunLink.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <linux/if_tun.h>
#include <net/if.h>
#include <netinet/in.h>
#include <poll.h>
#include <sched.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <fstream>
#include <random>

#include "tests/engine/Eventually.h"

namespace Corvanta::Engine {

namespace {

// A socket through which devices are configured.
class Control final {
public:
    Control() : socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {}
    ~Control() {
        if (socket >= 0) ::close(socket);
    }
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    [[nodiscard]] bool SetAddress(const std::string& name, unsigned long request,
                                  const std::string& address) const {
        ifreq wanted = RequestFor(name);
        sockaddr_in socketAddress{};
        socketAddress.sin_family = AF_INET;
        ::inet_pton(AF_INET, address.c_str(), &socketAddress.sin_addr);
        std::memcpy(&wanted.ifr_addr, &socketAddress, sizeof socketAddress);
        return ::ioctl(socket, request, &wanted) == 0;
    }
    [[nodiscard]] bool SetUp(const std::string& name) const {
        ifreq wanted = RequestFor(name);
        if (::ioctl(socket, SIOCGIFFLAGS, &wanted) != 0) return false;
        wanted.ifr_flags = static_cast<short>(wanted.ifr_flags | IFF_UP);
        return ::ioctl(socket, SIOCSIFFLAGS, &wanted) == 0;
    }

private:
    [[nodiscard]] static ifreq RequestFor(const std::string& name) {
        ifreq request{};
        std::strncpy(request.ifr_name, name.c_str(), IFNAMSIZ - 1);
        return request;
    }

    const int socket;
};

}  // namespace

bool EnterEmptyNetwork() {
    const uid_t user = ::geteuid();
    const gid_t group = ::getegid();
    if (user == 0) return ::unshare(CLONE_NEWNET) == 0;
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) return false;
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
    std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
    return true;
}

int MakeTun(const std::string& name) {
    const int device = ::open("/dev/net/tun", O_RDWR | O_CLOEXEC | O_NONBLOCK);
    if (device < 0) return -1;
    ifreq request{};
    std::strncpy(request.ifr_name, name.c_str(), IFNAMSIZ - 1);
    request.ifr_flags = IFF_TUN | IFF_NO_PI;
    if (::ioctl(device, TUNSETIFF, &request) == 0) return device;
    ::close(device);
    return -1;
}

bool BringUp(const std::string& name, const std::string& address) {
    const Control control;
    return Eventually([&] { return control.SetAddress(name, SIOCSIFADDR, address); }) &&
           control.SetAddress(name, SIOCSIFNETMASK, "255.255.255.0") && control.SetUp(name) &&
           control.SetUp("lo");
}

bool HandOver(const std::string& name, int process) {
    std::array<std::string, 7> words{"ip", "link", "set", name, "netns", std::to_string(process), {}};
    std::array<char*, words.size()> pointers{};
    for (std::size_t index = 0; index + 1 < words.size(); ++index) pointers[index] = words[index].data();
    pid_t child = -1;
    if (::posix_spawnp(&child, "ip", nullptr, nullptr, pointers.data(), environ) != 0) return false;
    int status = 0;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TunRelay::TunRelay(int oneTun, int otherTun) : one(oneTun), other(otherTun) {
    thread = std::thread([this] { Run(); });
}

TunRelay::~TunRelay() {
    isEnding = true;
    thread.join();
    ::close(one);
    ::close(other);
}

void TunRelay::Run() {
    // The same packets of the same traffic are lost each time.
    std::mt19937 random;
    std::array<char, 65536> packet;
    while (!isEnding) {
        std::array<pollfd, 2> ends{pollfd{one, POLLIN, 0}, pollfd{other, POLLIN, 0}};
        ::poll(ends.data(), ends.size(), 50);
        for (std::size_t from = 0; from < ends.size(); ++from) {
            if ((ends[from].revents & POLLIN) == 0) continue;
            const ssize_t size = ::read(ends[from].fd, packet.data(), packet.size());
            if (size <= 0 || isCut) continue;
            const unsigned oneOf = lostOneOf;
            if (oneOf != 0 && random() % oneOf == 0) continue;
            if (::write(ends[1 - from].fd, packet.data(), static_cast<std::size_t>(size)) == size) ++carried;
        }
    }
}

}  // namespace Corvanta::Engine
