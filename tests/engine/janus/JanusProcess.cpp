// A member of a room on a server (see PersonProcess.h); its place is the server's address.
#include "engine/janus/JanusTransport.h"
#include "tests/engine/mesh/PersonProcess.h"

int main(int count, char** words) {
    using namespace Corvanta::Engine;
    return RunPerson(count, words, [](const PersonProcess& process) {
        const JanusOptions options{
            .server = {.address = process.place, .certificateAuthority = {}, .token = {}},
            .room = process.room,
            .name = process.name};
        return [options](EngineLoop& loop, const std::shared_ptr<SoundMixer>& mixer) {
            return std::make_unique<JanusTransport>(loop, mixer, options);
        };
    });
}
