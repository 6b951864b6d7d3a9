// A person of a room on this machine (see PersonProcess.h); its place is the folder in which rooms lie.
#include "engine/mesh/MeshTransport.h"
#include "tests/engine/mesh/PersonProcess.h"

int main(int count, char** words) {
    using namespace Corvanta::Engine;
    return RunPerson(count, words, [](const PersonProcess& process) {
        const MeshOptions options{.room = process.room,
                                  .name = process.name,
                                  .folder = process.place,
                                  .loopbackOnly = !process.hasNetwork};
        return [options](EngineLoop& loop, const std::shared_ptr<SoundMixer>& mixer) {
            return std::make_unique<MeshTransport>(loop, mixer, options);
        };
    });
}
