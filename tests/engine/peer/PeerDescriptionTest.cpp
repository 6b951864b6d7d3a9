#include "engine/peer/PeerDescription.h"

#include <gtest/gtest.h>

#include <string>

namespace Corvanta::Engine {
namespace {

std::string Sdp(int lines, bool isSecured = true) {
    std::string sdp = "v=0\r\no=- 1 0 IN IP4 0.0.0.0\r\ns=-\r\nt=0 0\r\na=ice-options:trickle\r\n";
    for (int line = 0; line < lines; ++line) {
        sdp += "m=audio 9 UDP/TLS/RTP/SAVPF 111\r\nc=IN IP4 0.0.0.0\r\na=setup:actpass\r\n";
        sdp += "a=ice-ufrag:abcd\r\na=ice-pwd:0123456789012345678901\r\na=rtpmap:111 OPUS/48000/2\r\n";
        if (isSecured) sdp += "a=fingerprint:sha-256 00:11\r\n";
    }
    return sdp;
}

std::string Text(const std::string& sdp) {
    return WriteDescription({DescriptionKind::Offer, 3, sdp});
}

TEST(PeerDescription, IsReadAsItWasWritten) {
    for (const auto kind : {DescriptionKind::Offer, DescriptionKind::Answer}) {
        const auto read = ReadDescription(WriteDescription({kind, 7, Sdp(2)}));
        ASSERT_TRUE(read);
        EXPECT_EQ(read->kind, kind);
        EXPECT_EQ(read->session, 7U);
        EXPECT_EQ(read->sdp, Sdp(2));
    }
    const auto restart = ReadDescription(WriteDescription({DescriptionKind::Restart, 7, {}}));
    ASSERT_TRUE(restart);
    EXPECT_EQ(restart->kind, DescriptionKind::Restart);
}

TEST(PeerDescription, NeedsAFewSecuredMediaLines) {
    EXPECT_TRUE(ReadDescription(Text(Sdp(1))));
    EXPECT_TRUE(ReadDescription(Text(Sdp(kMaxMediaLines))));
    EXPECT_FALSE(ReadDescription(Text(Sdp(0))));
    EXPECT_FALSE(ReadDescription(Text(Sdp(kMaxMediaLines + 1))));
    EXPECT_FALSE(ReadDescription(Text(Sdp(1, false))));
}

TEST(PeerDescription, IsRefusedBeyondItsLength) {
    std::string sdp = Sdp(1);
    sdp += "a=x:" + std::string(kMaxDescriptionBytes, 'x') + "\r\n";
    EXPECT_FALSE(ReadDescription(Text(sdp)));
}

TEST(PeerDescription, NeedsNoSessionButAUsableOne) {
    const std::string sdp = R"(,"sdp":")" + [] {
        std::string escaped;
        for (const char c : Sdp(1)) escaped += c == '\r' ? "\\r" : c == '\n' ? "\\n" : std::string(1, c);
        return escaped;
    }() + "\"}";
    const auto none = ReadDescription(R"({"type":"answer")" + sdp);
    ASSERT_TRUE(none);
    EXPECT_EQ(none->session, 0U);
    EXPECT_TRUE(ReadDescription(R"({"type":"answer","session":9,"more":[1])" + sdp));
    for (const std::string session : {"-1", "1.5", "\"1\"", "null", "99999999999", "1e300"}) {
        EXPECT_FALSE(ReadDescription(R"({"type":"answer","session":)" + session + sdp)) << session;
    }
}

TEST(PeerDescription, HasItsCandidatesCountedAndTheUselessTakenOut) {
    const std::string sdp = Sdp(1) +
                            "a=candidate:1 1 UDP 1 192.168.0.1 40000 typ host\r\n"
                            "a=candidate:2 1 UDP 1 127.0.0.1 40000 typ host\r\n"
                            "a=candidate:3 1 TCP 1 127.0.0.1 9 typ host tcptype active\r\n"
                            "a=candidate:4 1 UDP 1 router.example 9 typ host\r\n"
                            "a=end-of-candidates\r\n";
    const auto everywhere = ReadDescription(Text(sdp));
    ASSERT_TRUE(everywhere);
    EXPECT_EQ(everywhere->candidates, 2U);
    EXPECT_NE(everywhere->sdp.find("192.168.0.1"), std::string::npos);
    EXPECT_EQ(everywhere->sdp.find("router"), std::string::npos);
    EXPECT_EQ(everywhere->sdp.find("TCP "), std::string::npos);
    EXPECT_NE(everywhere->sdp.find("a=end-of-candidates"), std::string::npos);
    const auto here = ReadDescription(Text(sdp), Reach::LoopbackAlone);
    ASSERT_TRUE(here);
    EXPECT_EQ(here->candidates, 1U);
    EXPECT_EQ(here->sdp.find("192.168.0.1"), std::string::npos);
    EXPECT_NE(here->sdp.find("127.0.0.1"), std::string::npos);
}

TEST(PeerDescription, HasNoMoreCandidatesThanThereMayBe) {
    std::string sdp = Sdp(1);
    for (unsigned index = 0; index < 2 * kMaxCandidates; ++index)
        sdp += "a=candidate:1 1 UDP 1 127.0.0.1 40000 typ host\r\n";
    const auto read = ReadDescription(Text(sdp));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->candidates, kMaxCandidates);
    EXPECT_LT(read->sdp.size(), sdp.size() * 2 / 3);
}

TEST(Candidate, IsOnThisMachineWhereNoOtherIsTried) {
    for (const std::string address : {"127.0.0.1", "127.1.2.3", "::1"}) {
        EXPECT_TRUE(
            IsUsableCandidate(0, "candidate:1 1 UDP 1 " + address + " 40000 typ host", Reach::LoopbackAlone))
            << address;
    }
    for (const std::string address : {"192.168.0.1", "8.8.8.8", "0.0.0.0", "fe80::1", "localhost"}) {
        EXPECT_FALSE(
            IsUsableCandidate(0, "candidate:1 1 UDP 1 " + address + " 40000 typ host", Reach::LoopbackAlone))
            << address;
    }
}

TEST(Candidate, IsUsableWithANumericAddressOverUdp) {
    EXPECT_TRUE(IsUsableCandidate(0, "candidate:1 1 UDP 2015363327 127.0.0.1 40000 typ host"));
    EXPECT_TRUE(IsUsableCandidate(1, "candidate:1 1 udp 1 ::1 40000 typ srflx raddr 10.0.0.1 rport 9"));
    for (const std::string text :
         {"", "candidate", "candidate:1 1 TCP 1 127.0.0.1 9 typ host tcptype active",
          "candidate:1 1 UDP 1 name.local 9 typ host", "candidate:1 3 UDP 1 127.0.0.1 9 typ host",
          "candidate:1 1 UDP 1 127.0.0.1 65536 typ host", "candidate:1 1 UDP 1 127.0.0.1 9",
          "candidate:1 1 UDP 1 127.0.0.1 9 typ host\n"}) {
        EXPECT_FALSE(IsUsableCandidate(0, text)) << text;
    }
    EXPECT_FALSE(IsUsableCandidate(kMaxMediaLines, "candidate:1 1 UDP 1 127.0.0.1 9 typ host"));
    EXPECT_FALSE(IsUsableCandidate(0, "candidate:1 1 UDP 1 127.0.0.1 9 typ host " + std::string(1024, 'x')));
}

}  // namespace
}  // namespace Corvanta::Engine
