// A person of a room in a process of its own (see PersonProcess.h), and what it has told.
#pragma once

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

#include "tests/engine/Eventually.h"
#include "tests/engine/LineProcess.h"
#include "tests/engine/peer/PeerPair.h"

namespace Corvanta::Engine {

class OtherPerson final {
public:
    // `network`: a device and its address, or nothing.
    // `place`: where the program looks for rooms.
    OtherPerson(const char* program, const std::string& place, const std::string& name, Yuv color,
                const std::vector<std::string>& network = {})
        : process(program, Arguments(place, name, color, network), [this](const std::string& line) {
              const std::lock_guard lock(mutex);
              lines.push_back(line);
          }) {}

    [[nodiscard]] std::size_t Count(const std::string& line) const {
        const std::lock_guard lock(mutex);
        return static_cast<std::size_t>(std::count(lines.begin(), lines.end(), line));
    }
    [[nodiscard]] bool Tells(const std::string& line, std::size_t times = 1) const {
        return Eventually([&] { return Count(line) >= times; }, 2 * kPatience);
    }
    // The texts that came of that person.
    [[nodiscard]] std::vector<std::string> Texts(const std::string& name) const {
        const std::string begin = "text " + name + ' ';
        const std::lock_guard lock(mutex);
        std::vector<std::string> texts;
        for (const std::string& line : lines) {
            if (line.starts_with(begin)) texts.push_back(line.substr(begin.size()));
        }
        return texts;
    }
    [[nodiscard]] bool Hears(const std::string& name, const std::vector<std::string>& texts) const {
        return Eventually([&] { return Texts(name) == texts; }, 3 * kPatience);
    }
    void Say(const std::string& text) const { Command("say " + text); }
    // See PersonProcess.h.
    void Command(const std::string& line) const { process.Say(line); }

    // On return it has gone.
    void Kill() { process.Kill(); }
    // On return it does nothing.
    void Stop() const { process.Stop(); }
    void Continue() const { process.Continue(); }
    [[nodiscard]] pid_t Id() const { return process.Id(); }

private:
    [[nodiscard]] static std::vector<std::string> Arguments(const std::string& place, const std::string& name,
                                                            Yuv color,
                                                            const std::vector<std::string>& network) {
        std::vector<std::string> words{
            place, "review", name, std::to_string(color.y), std::to_string(color.u), std::to_string(color.v)};
        words.insert(words.end(), network.begin(), network.end());
        return words;
    }

    mutable std::mutex mutex;  // guards: lines
    std::vector<std::string> lines;

    LineProcess process;
};

}  // namespace Corvanta::Engine
