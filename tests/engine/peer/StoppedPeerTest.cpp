// A connection with a process that stands still for a while.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <string>

#include "engine/peer/PeerConnection.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/LineProcess.h"
#include "tests/engine/peer/PeerPair.h"

namespace Corvanta::Engine {
namespace {

TEST(StoppedPeer, IsToldAsLostAndConnectedAgainWhenItGoesOn) {
    PeerEnd end;
    RunningLoop running;
    // The other end (see PeerProcess.cpp).
    LineProcess process(CORVANTA_PEER_PROCESS, {}, [&](const std::string& line) {
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
    events.onDescription = [&](const std::string& text) { process.Say("D " + text); };
    events.onCandidate = [&](std::uint32_t line, const std::string& text) {
        process.Say("C " + std::to_string(line) + " " + text);
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
