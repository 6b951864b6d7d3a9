#include "tests/engine/signalling/SignallingProcessHandle.h"

namespace Corvanta::Engine {

SignallingProcess::SignallingProcess(const std::filesystem::path& product)
    : process(CORVANTA_SIGNALLING_PROCESS, {product.string()},
              [this](const std::string& line) { OnLine(line); }) {}

bool SignallingProcess::Enters(const std::string& name) const {
    std::string line = "join room ";
    line += name;
    Command(line);
    return events.Hears("entered");
}

void SignallingProcess::OnLine(const std::string& line) {
    const auto first = line.find('\t');
    const auto second = line.find('\t', first + 1);
    if (second == std::string::npos) return;
    events.Add({line.substr(0, first), line.substr(first + 1, second - first - 1), line.substr(second + 1)});
}

}  // namespace Corvanta::Engine
