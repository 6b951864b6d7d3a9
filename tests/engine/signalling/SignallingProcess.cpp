// A member of a room in a process of its own, for tests that kill or stop it. It is given the folder in which
// rooms lie, and then does what it reads, one command a line:
//
//   join ROOM NAME      enters
//   send ID TEXT        sends the text to the member
//   flood ID BYTES      sends about that much to it, as fast as the hub takes it
//   leave               leaves
//
// It writes what it is told, one event a line: kind, id and text with tabs between.
#include <signal.h>
#include <sys/prctl.h>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

#include "engine/common/EngineLoop.h"
#include "engine/signalling/HubClient.h"

namespace {

using namespace Corvanta::Engine;

constexpr std::size_t kFloodPiece = 10'000;

void Tell(const std::string& kind, const std::string& id, const std::string& text) {
    // Long payloads are told by their length.
    constexpr std::size_t kLongest = 200;
    std::cout << kind << '\t' << id << '\t'
              << (text.size() > kLongest ? std::to_string(text.size()) + " bytes" : text) << std::endl;
}

HubClientEvents Told() {
    return {
        .onEntered =
            [](const std::string& ownId, const std::vector<RoomMember>& members) {
                std::string ids;
                for (const RoomMember& member : members) ids += member.id + ' ';
                Tell("entered", ownId, ids);
            },
        .onMemberJoined =
            [](const RoomMember& member, Initiator initiator) {
                Tell("joined", member.id, (initiator == Initiator::Us ? "us " : "them ") + member.name);
            },
        .onMemberLeft = [](const std::string& memberId,
                           bool orderly) { Tell("left", memberId, orderly ? "in order" : ""); },
        .onMessage = [](const std::string& fromId,
                        const std::string& payload) { Tell("message", fromId, payload); },
        .onHubLost = [] { Tell("lost", {}, {}); },
        .onHubBack = [] { Tell("back", {}, {}); },
        .onFailed = [](const std::string& line) { Tell("failed", {}, line); },
    };
}

void Flood(EngineLoop& loop, HubClient& client, const std::string& id, std::size_t bytes) {
    while (bytes > 0 && client.Send(id, std::string(std::min(bytes, kFloodPiece), 'x')))
        bytes -= std::min(bytes, kFloodPiece);
    if (bytes > 0)
        loop.PostAfter(std::chrono::milliseconds(5),
                       [&loop, &client, id, bytes] { Flood(loop, client, id, bytes); });
}

void Obey(EngineLoop& loop, HubClient& client, const std::filesystem::path& product,
          const std::string& line) {
    std::istringstream words(line);
    std::string command;
    std::string first;
    std::string second;
    words >> command >> first >> second;
    if (command == "join") client.Join(first, second, product);
    if (command == "leave") client.Leave();
    if (command == "send") static_cast<void>(client.Send(first, second));
    if (command == "flood") Flood(loop, client, first, std::strtoul(second.c_str(), nullptr, 10));
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "usage: " << arguments[0] << " FOLDER\n";
        return 2;
    }
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    EngineLoop loop;
    std::unique_ptr<HubClient> client;
    loop.Start([&] {
        client = std::make_unique<HubClient>(loop.Context(), Told());
        loop.Run();
        client.reset();
    });
    std::string line;
    while (std::getline(std::cin, line)) loop.Post([&, line] { Obey(loop, *client, arguments[1], line); });
    loop.Quit();
    loop.Join();
    return 0;
}
