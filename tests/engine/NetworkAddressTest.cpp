// Addresses of servers as people give them.
#include "engine/common/NetworkAddress.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace Corvanta::Engine {
namespace {

std::string Read(std::string_view text) {
    const auto address = ReadNetworkAddress(text, kServerSchemes);
    return address ? address->ToString() : "";
}

TEST(NetworkAddress, IsAHostAndAPortWhereThereIsOne) {
    for (const char* const text : {"ws://host:8188", "wss://host.example", "ws://10.0.0.1:1",
                                   "ws://[::1]:65535", "wss://[fe80::1%eth0]", "ws://a_b-c"}) {
        EXPECT_EQ(Read(text), text);
    }
    EXPECT_EQ(Read("ws://host:8188//"), "ws://host:8188");
}

TEST(NetworkAddress, HasNoPlaceForAnythingElse) {
    for (const char* const text : {"",
                                   "host",
                                   "http://host",
                                   "ws:/host",
                                   "ws://",
                                   "ws:///",
                                   "ws://:80",
                                   "ws://host:",
                                   "ws://host:0",
                                   "ws://host:65536",
                                   "ws://host:8x",
                                   "ws://host:-1",
                                   "ws://me@host",
                                   "ws://me:secret@host",
                                   "ws://host/path",
                                   "ws://host?query",
                                   "ws://host#part",
                                   "ws://[::1",
                                   "ws://[]",
                                   "ws://[host]",
                                   "ws://[::1]80",
                                   "ws://a b",
                                   "ws://a\n",
                                   "ws://host:80:80"}) {
        EXPECT_EQ(Read(text), "") << text;
    }
}

TEST(NetworkAddress, KnowsWhatStaysOnThisMachine) {
    const auto staysHere = [](std::string_view text) {
        return ReadNetworkAddress(text, kServerSchemes)->IsLoopback();
    };
    for (const char* const text : {"ws://localhost", "ws://127.0.0.1:80", "ws://127.8.9.1", "ws://[::1]:1"})
        EXPECT_TRUE(staysHere(text)) << text;
    for (const char* const text : {"ws://host", "ws://127.example", "ws://128.0.0.1", "ws://[::2]",
                                   "ws://localhost.example", "ws://10.127.0.0"})
        EXPECT_FALSE(staysHere(text)) << text;
}

TEST(NetworkAddress, KnowsWhatIsEncrypted) {
    EXPECT_TRUE(ReadNetworkAddress("wss://a", kServerSchemes)->IsEncrypted());
    EXPECT_FALSE(ReadNetworkAddress("ws://a", kServerSchemes)->IsEncrypted());
    EXPECT_TRUE(ReadNetworkAddress("https://a", kServiceSchemes)->IsEncrypted());
    EXPECT_FALSE(ReadNetworkAddress("http://a", kServiceSchemes)->IsEncrypted());
}

}  // namespace
}  // namespace Corvanta::Engine
