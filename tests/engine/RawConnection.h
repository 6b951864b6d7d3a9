// Both ends of a Unix socket without any protocol, for tests that send what no decent program sends. One
// thread each.
#pragma once

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <string>

namespace Corvanta::Engine {

inline sockaddr_un UnixAddress(const std::filesystem::path& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof(address.sun_path) - 1);
    return address;
}

class RawConnection final {
public:
    explicit RawConnection(const std::filesystem::path& path)
        : RawConnection(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        const sockaddr_un address = UnixAddress(path);
        isOpen = ::connect(file, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
    }
    // A connection that was accepted.
    explicit RawConnection(int accepted) : file(accepted), isOpen(accepted >= 0) {
        const timeval patience{.tv_sec = 5, .tv_usec = 0};
        ::setsockopt(file, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof(patience));
        ::setsockopt(file, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof(patience));
    }
    ~RawConnection() { ::close(file); }
    RawConnection(const RawConnection&) = delete;
    RawConnection& operator=(const RawConnection&) = delete;

    [[nodiscard]] bool IsOpen() const { return isOpen; }

    // False once the other end takes no more.
    bool Send(const std::string& bytes) const {
        std::size_t sent = 0;
        while (sent < bytes.size()) {
            const ssize_t count = ::send(file, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
            if (count <= 0) return false;
            sent += static_cast<std::size_t>(count);
        }
        return true;
    }
    // What came; empty when the other end has closed, or said nothing for long.
    [[nodiscard]] std::string Receive() const {
        std::array<char, 4096> block;
        const ssize_t count = ::recv(file, block.data(), block.size(), 0);
        return count > 0 ? std::string(block.data(), static_cast<std::size_t>(count)) : std::string();
    }

private:
    int file;
    bool isOpen = false;
};

class RawListener final {
public:
    explicit RawListener(const std::filesystem::path& path)
        : file(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        const sockaddr_un address = UnixAddress(path);
        isListening = ::bind(file, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0 &&
                      ::listen(file, 16) == 0;
    }
    ~RawListener() { ::close(file); }
    RawListener(const RawListener&) = delete;
    RawListener& operator=(const RawListener&) = delete;

    [[nodiscard]] bool IsListening() const { return isListening; }
    // Waits for somebody.
    [[nodiscard]] int Accept() const { return ::accept4(file, nullptr, nullptr, SOCK_CLOEXEC); }
    // Nobody is waited for any more.
    void Close() const { ::shutdown(file, SHUT_RDWR); }

private:
    int file;
    bool isListening = false;
};

}  // namespace Corvanta::Engine
