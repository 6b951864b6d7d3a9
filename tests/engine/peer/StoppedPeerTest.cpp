// A connection with a process that stands still for a while.
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "engine/peer/PeerConnection.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/peer/PeerPair.h"

namespace Corvanta::Engine {
namespace {

// The other end (see PeerProcess.cpp).
class PeerProcess final {
public:
    // Gets each line that the process writes, on a thread of this object's.
    explicit PeerProcess(std::function<void(const std::string&)> onLine) {
        std::array<int, 2> ends{-1, -1};
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0);
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDIN_FILENO);
        ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        std::string program = CORVANTA_PEER_PROCESS;
        const std::array<char*, 2> arguments{program.data(), nullptr};
        EXPECT_EQ(::posix_spawn(&process, program.c_str(), &actions, nullptr, arguments.data(), environ), 0);
        ::posix_spawn_file_actions_destroy(&actions);
        ::close(ends[1]);
        pipe = ends[0];
        reader = std::thread([this, handle = std::move(onLine)] {
            std::string held;
            std::array<char, 4096> block;
            for (ssize_t count = 0; (count = ::recv(pipe, block.data(), block.size(), 0)) > 0;) {
                held.append(block.data(), static_cast<std::size_t>(count));
                for (auto end = held.find('\n'); end != std::string::npos; end = held.find('\n')) {
                    handle(held.substr(0, end));
                    held.erase(0, end + 1);
                }
            }
        });
    }
    ~PeerProcess() {
        if (process > 0) {
            ::kill(process, SIGKILL);
            ::waitpid(process, nullptr, 0);
        }
        reader.join();
        ::close(pipe);
    }
    PeerProcess(const PeerProcess&) = delete;
    PeerProcess& operator=(const PeerProcess&) = delete;

    void Write(std::string line) const {
        line += '\n';
        EXPECT_EQ(::send(pipe, line.data(), line.size(), MSG_NOSIGNAL), static_cast<ssize_t>(line.size()));
    }
    // On return it does nothing.
    void Stop() const {
        ::kill(process, SIGSTOP);
        ::waitpid(process, nullptr, WUNTRACED);
    }
    void Continue() const { ::kill(process, SIGCONT); }

private:
    pid_t process = -1;
    // Its standard input and output.
    int pipe = -1;
    std::thread reader;
};

TEST(StoppedPeer, IsToldAsLostAndConnectedAgainWhenItGoesOn) {
    PeerEnd end;
    RunningLoop running;
    PeerProcess process([&](const std::string& line) {
        running.loop.Post([&end, line] {
            if (!end.connection) return;
            if (line.starts_with("D ")) end.connection->TakeDescription(line.substr(2));
            const auto gap = line.find(' ', 2);
            if (line.starts_with("C ") && gap != std::string::npos) {
                end.connection->TakeCandidate(static_cast<std::uint32_t>(std::stoul(line.substr(2))),
                                              line.substr(gap + 1));
            }
        });
    });
    PeerOptions options;
    options.name = "stopped";
    options.sends = options.receives = false;
    PeerEvents events;
    events.onDescription = [&](const std::string& text) { process.Write("D " + text); };
    events.onCandidate = [&](std::uint32_t line, const std::string& text) {
        process.Write("C " + std::to_string(line) + " " + text);
    };
    events.onConnected = [&] { ++end.connects; };
    events.onDisconnected = [&](const std::string&) { ++end.disconnects; };
    events.onText = [&](const std::string& text) {
        const std::lock_guard lock(end.mutex);
        end.texts.push_back(text);
    };
    running.Do([&] {
        end.connection = std::make_shared<PeerConnection>(running.loop, options, events, nullptr);
        EXPECT_TRUE(end.connection->Start());
    });
    const auto answers = [&](const std::string& text) {
        return Eventually([&] {
            running.Do([&] { static_cast<void>(end.connection->SendText(text)); });
            const auto heard = end.Texts();
            return !heard.empty() && heard.back() == text;
        });
    };
    EXPECT_TRUE(answers("first"));
    EXPECT_EQ(end.connects, 1);

    process.Stop();
    const auto stopped = std::chrono::steady_clock::now();
    EXPECT_TRUE(Eventually([&] { return end.disconnects == 1; }));
    std::printf(
        "Told after %.0f ms\n",
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - stopped).count());
    running.Do([&] { end.connection->Restart(); });
    // What it was sent meanwhile is only of use once it goes on, long after it has lost the connection too.
    process.Continue();
    EXPECT_TRUE(answers("second"));
    EXPECT_GE(end.connects, 2);
    running.Do([&] {
        end.connection->Close();
        end.connection.reset();
    });
}

}  // namespace
}  // namespace Corvanta::Engine
