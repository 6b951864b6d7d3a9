// Whether the one at the other end of a connection is the one whose description was taken: the description
// names the certificate by its digests (RFC 8122), and the handshake shows it. Plain functions of values.
#pragma once

#include <string>
#include <vector>

namespace Corvanta::Engine {

// The digests that a description names, as they stand: "sha-256 AB:CD:...". Empty for no SDP.
[[nodiscard]] std::vector<std::string> FingerprintsOf(const std::string& sdp);

// Whether one of them is that of the certificate, PEM. By SHA-256, SHA-384 or SHA-512; others do not count.
[[nodiscard]] bool FitsCertificate(const std::vector<std::string>& fingerprints, const std::string& pem);

}  // namespace Corvanta::Engine
