// What the participants of the embedded default draw over the pictures: now and then a mark on their own
// stream or on somebody else's, and one taken back. The messages are those of real clients. Plain values: the
// same calls give the same drawings. One thread at a time.
#pragma once

#include <chrono>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "platform/DataChannelMessage.h"

namespace Corvanta::Engine {

class ScriptedDrawings final {
public:
    // The most marks that stand at a time, over all streams.
    static constexpr std::size_t kMostMarks = 5;
    static constexpr std::chrono::milliseconds kShortestWait{6000}, kLongestWait{10000};

    // From one message to the next.
    [[nodiscard]] std::chrono::milliseconds NextWait();

    // The next message. `inView`: the participants that the local user sees; marks of others, and marks on
    // their streams, are forgotten, as every client forgets the marks of those who leave. `speaker`: whose
    // stream is probably the large one. Nothing where nobody is in view.
    [[nodiscard]] std::optional<DataChannelMessage> Next(const std::vector<std::string>& inView,
                                                         const std::optional<std::string>& speaker);

private:
    struct Mark {
        std::string author;
        std::string streamId;
        nlohmann::json shape;
    };

    [[nodiscard]] DataChannelMessage DrawNext(const std::vector<std::string>& inView,
                                              const std::optional<std::string>& speaker);
    // Takes back the last mark of whoever drew the oldest, on the stream of that one.
    [[nodiscard]] DataChannelMessage TakeBack();

    // Without a seed of its own, so that it is the same each time.
    std::mt19937 random;
    std::vector<Mark> marks;  // the oldest first
    std::size_t messages = 0;
    std::size_t drawn = 0;
};

}  // namespace Corvanta::Engine
