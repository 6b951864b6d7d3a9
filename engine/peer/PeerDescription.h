// The texts that two peers hand each other before and while they are connected, and what is refused of them.
// Plain functions of values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace Corvanta::Engine {

enum class DescriptionKind {
    Offer,
    Answer,
    // The answering side asks for a session of new connections; without SDP.
    Restart,
};

struct PeerDescription {
    DescriptionKind kind = DescriptionKind::Offer;
    // Counts the sessions of two peers; an answer bears the number of its offer. Zero where the other side
    // does not count.
    std::uint32_t session = 0;
    std::string sdp;
    // Candidates in the SDP.
    unsigned candidates = 0;
};

// Which addresses of the other side's are tried.
enum class Reach { AllAddresses, LoopbackAlone };

inline constexpr std::size_t kMaxDescriptionBytes = std::size_t{256} * 1024;
inline constexpr std::size_t kMaxCandidateBytes = 1024;
inline constexpr unsigned kMaxCandidates = 256;
inline constexpr unsigned kMaxMediaLines = 16;

// JSON: {"type": "offer", "session": 1, "sdp": "..."}.
[[nodiscard]] std::string WriteDescription(const PeerDescription& description);
// Nothing for a text that is too long, no JSON, of an unknown type, or whose SDP does not parse, has no or
// too many media lines, or lacks what a secured connection needs. Further members are ignored. Candidates in
// the SDP that may not be handed on are taken out of it.
[[nodiscard]] std::optional<PeerDescription> ReadDescription(const std::string& text,
                                                             Reach reach = Reach::AllAddresses);

// Whether it is a candidate that may be handed on: "candidate:..." with a numeric address, over UDP.
[[nodiscard]] bool IsUsableCandidate(std::uint32_t mediaLine, const std::string& text,
                                     Reach reach = Reach::AllAddresses);

}  // namespace Corvanta::Engine
