// The marks that one guest has drawn, stream by stream, and the messages in which the others hear of them.
// Plain values: the same calls give the same marks. One thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace Corvanta::Guest {

class GuestMarks final {
public:
    // `hand`: of which colour they are.
    GuestMarks(std::uint32_t seed, std::size_t hand);

    // One more on that stream.
    [[nodiscard]] std::string Draw(const std::string& streamId);
    // One less, the newest on the stream of the oldest. Nothing where none stands.
    [[nodiscard]] std::optional<std::string> TakeBack();
    // The stream has gone, and what was drawn on it with it.
    void Forget(const std::string& streamId) { streams.erase(streamId); }

    // Brings whoever hears it to where the marks are, whatever that one had of them: one message for each
    // stream on which any was ever drawn.
    [[nodiscard]] std::vector<std::string> TellAll() const;

    [[nodiscard]] std::size_t Count() const;

private:
    struct Mark {
        std::size_t number = 0;
        nlohmann::json shape;
    };

    // All of that stream, in place of what the others have of it.
    [[nodiscard]] std::string Tell(const std::string& streamId) const;

    std::mt19937 random;
    const std::size_t inkOfHand;
    std::size_t drawn = 0;
    std::map<std::string, std::vector<Mark>> streams;  // by id; of each the oldest first
};

}  // namespace Corvanta::Guest
