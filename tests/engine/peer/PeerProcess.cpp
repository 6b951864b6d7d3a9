// One end of a connection in a process of its own, for tests that stop it. It answers, hands every text back,
// and asks for another connection when it loses one. Its standard input and output carry one line for each
// description ("D", its text) and each candidate ("C", the media line, its text).
#include <signal.h>
#include <sys/prctl.h>

#include <iostream>
#include <memory>
#include <string>

#include "engine/common/EngineLoop.h"
#include "engine/peer/PeerConnection.h"

using namespace Corvanta::Engine;

int main() {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    EngineLoop loop;
    std::shared_ptr<PeerConnection> connection;
    PeerOptions options;
    options.name = "test";
    options.role = PeerOptions::Role::Answerer;
    options.sends = options.receives = false;
    PeerEvents events;
    events.onDescription = [](const std::string& text) { std::cout << "D " << text << std::endl; };
    events.onCandidate = [](std::uint32_t line, const std::string& text) {
        std::cout << "C " << line << ' ' << text << std::endl;
    };
    events.onDisconnected = [&](const std::string&) { connection->Restart(); };
    events.onText = [&](const std::string& text) { static_cast<void>(connection->SendText(text)); };
    connection = std::make_shared<PeerConnection>(loop, options, events, nullptr);
    loop.Start([&] { loop.Run(); });
    loop.Post([&] { connection->Start(); });
    std::string line;
    while (std::getline(std::cin, line)) {
        loop.Post([&connection, line] {
            if (line.starts_with("D ")) connection->TakeDescription(line.substr(2));
            const auto gap = line.find(' ', 2);
            if (line.starts_with("C ") && gap != std::string::npos) {
                connection->TakeCandidate(static_cast<std::uint32_t>(std::stoul(line.substr(2))),
                                          line.substr(gap + 1));
            }
        });
    }
    loop.Post([&] { connection->Close(); });
    loop.Quit();
    loop.Join();
    return 0;
}
