#include "engine/mesh/MeshMessage.h"

#include <gtest/gtest.h>

#include <string>

#include "engine/signalling/RoomMessage.h"

namespace Corvanta::Engine {
namespace {

using namespace MeshMessages;

TEST(MeshMessage, IsReadAsItWasWritten) {
    for (const MeshMessage& message : {
             MeshMessage(Description{"camera", "{\"sdp\": \"v=0\\n\"}"}),
             MeshMessage(Candidate{"ab12-screen", 3, "candidate:1 1 UDP 1 127.0.0.1 1 typ host"}),
             MeshMessage(Publish{StreamType::File, "Ä's file", {.audio = false, .video = true}}),
             MeshMessage(Unpublish{StreamType::Screenshare}),
             MeshMessage(Want{StreamType::Camera, {.audio = true, .video = false}}),
             MeshMessage(Mute{StreamType::Camera}),
             MeshMessage(Remove{}),
         }) {
        EXPECT_EQ(ReadMeshMessage(WriteMeshMessage(message)), message);
    }
}

TEST(MeshMessage, IsNothingWhereItIsMalformed) {
    const std::string longLink(1000, 'a');
    for (const std::string& payload : {
             std::string(),
             std::string("{"),
             std::string("[]"),
             std::string("{}"),
             std::string(R"({"kind":5})"),
             std::string(R"({"kind":"wave"})"),
             std::string(R"({"kind":"description","link":"camera"})"),
             std::string(R"({"kind":"description","link":"","text":"x"})"),
             R"({"kind":"description","text":"x","link":")" + longLink + "\"}",
             std::string(R"({"kind":"candidate","link":"camera","line":-1,"text":"x"})"),
             std::string(R"({"kind":"candidate","link":"camera","line":4294967296,"text":"x"})"),
             std::string(R"({"kind":"candidate","link":"camera","line":"0","text":"x"})"),
             std::string(R"({"kind":"publish","stream":"nothing","name":"x","audio":true,"video":true})"),
             std::string(R"({"kind":"publish","stream":"file","name":"x","audio":1,"video":true})"),
             std::string(R"({"kind":"publish","stream":"file","audio":true,"video":true})"),
             std::string(R"({"kind":"unpublish"})"),
             std::string(R"({"kind":"want","stream":"camera"})"),
             std::string(R"({"kind":"mute","stream":["camera"]})"),
             std::string(R"({"kind":"remove","more":)") + std::string(100, '[') + std::string(100, ']') + "}",
             std::string(1'000'000, '['),
         }) {
        EXPECT_FALSE(ReadMeshMessage(payload)) << payload.substr(0, 80);
    }
}

TEST(MeshMessage, CutsLongNames) {
    const auto message =
        ReadMeshMessage(R"({"kind":"publish","stream":"file","audio":true,"video":true,"name":")" +
                        std::string(10'000, 'x') + "\"}");
    ASSERT_TRUE(message);
    EXPECT_EQ(std::get<Publish>(*message).name.size(), kLongestName);
}

TEST(MeshMessage, ReplacesWhatIsNoText) {
    const auto message = ReadMeshMessage(WriteMeshMessage(Publish{StreamType::File, "\xFFname", {}}));
    ASSERT_TRUE(message);
    EXPECT_NE(std::get<Publish>(*message).name.find("name"), std::string::npos);
}

}  // namespace
}  // namespace Corvanta::Engine
