// A member of a room on a server in a process of its own (see JanusProcess.cpp), and what it has told.
#pragma once

#include <algorithm>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "tests/engine/Eventually.h"
#include "tests/engine/LineProcess.h"
#include "tests/engine/peer/PeerPair.h"

namespace Corvanta::Engine {

class OtherMember final {
public:
    // `network`: a device and its address, or nothing.
    OtherMember(std::string address, std::string name, Yuv color, std::vector<std::string> network = {})
        : process(CORVANTA_JANUS_PROCESS,
                  Arguments(std::move(address), std::move(name), color, std::move(network)),
                  [this](const std::string& line) {
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
    // The texts that came of that member.
    [[nodiscard]] std::vector<std::string> Texts(const std::string& name) const {
        std::string begin = "text ";
        begin += name;
        begin += ' ';
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
    void Say(const std::string& text) const { process.Say("say " + text); }

private:
    [[nodiscard]] static std::vector<std::string> Arguments(std::string address, std::string name, Yuv color,
                                                            std::vector<std::string> network) {
        std::vector<std::string> words{std::move(address),      "review",
                                       std::move(name),         std::to_string(color.y),
                                       std::to_string(color.u), std::to_string(color.v)};
        for (std::string& word : network) words.push_back(std::move(word));
        return words;
    }

    mutable std::mutex mutex;  // guards: lines
    std::vector<std::string> lines;

public:
    LineProcess process;
};

}  // namespace Corvanta::Engine
