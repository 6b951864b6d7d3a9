// What becomes of packets on their way into a peer's pipeline.
#include "engine/peer/PacketOutlet.h"

#include <gst/app/gstappsink.h>
#include <gst/rtp/gstrtpbuffer.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>

#include "engine/webrtc/GstSupport.h"

namespace Corvanta::Engine {
namespace {

struct Header {
    std::uint16_t number = 0;
    std::uint32_t source = 0;

    bool operator==(const Header&) const = default;
};

Header Read(GstBuffer* packet) {
    GstRTPBuffer mapped = GST_RTP_BUFFER_INIT;
    EXPECT_NE(gst_rtp_buffer_map(packet, GST_MAP_READ, &mapped), FALSE);
    const Header header{gst_rtp_buffer_get_seq(&mapped), gst_rtp_buffer_get_ssrc(&mapped)};
    gst_rtp_buffer_unmap(&mapped);
    return header;
}

GstOwned<GstBuffer> MakePacket(const Header& header) {
    GstOwned<GstBuffer> packet(gst_rtp_buffer_new_allocate(10, 0, 0));
    GstRTPBuffer mapped = GST_RTP_BUFFER_INIT;
    EXPECT_NE(gst_rtp_buffer_map(packet.get(), GST_MAP_READWRITE, &mapped), FALSE);
    gst_rtp_buffer_set_seq(&mapped, header.number);
    gst_rtp_buffer_set_ssrc(&mapped, header.source);
    gst_rtp_buffer_unmap(&mapped);
    return packet;
}

class PacketOutletTest : public testing::Test {
protected:
    PacketOutletTest() {
        EXPECT_TRUE(EnsureGStreamer());
        GstElement* parsed = gst_parse_launch(
            "appsrc name=in format=time caps=application/x-rtp ! appsink name=out sync=false async=false",
            nullptr);
        pipeline.reset(GST_ELEMENT(gst_object_ref_sink(parsed)));
        sink.reset(gst_bin_get_by_name(GST_BIN(parsed), "out"));
        outlet.emplace(GstOwned<GstElement>(gst_bin_get_by_name(GST_BIN(parsed), "in")), kSource);
        gst_element_set_state(parsed, GST_STATE_PLAYING);
    }
    ~PacketOutletTest() override { gst_element_set_state(pipeline.get(), GST_STATE_NULL); }

    // The next one that has come through; nothing where none does.
    [[nodiscard]] std::optional<Header> Next(GstClockTime patience = 20 * GST_SECOND) const {
        const GstOwned<GstSample> sample(gst_app_sink_try_pull_sample(GST_APP_SINK(sink.get()), patience));
        if (!sample) return std::nullopt;
        return Read(gst_sample_get_buffer(sample.get()));
    }

    static constexpr std::uint32_t kSource = 7;
    GstOwned<GstElement> pipeline, sink;
    std::optional<PacketOutlet> outlet;
};

TEST_F(PacketOutletTest, PacketsFollowEachOtherWhicheverFeedTheyComeFrom) {
    outlet->Open();
    outlet->Push(MakePacket({100, 1}).get());
    outlet->Push(MakePacket({101, 1}).get());
    outlet->Push(MakePacket({40'000, 2}).get());
    const auto first = Next();
    ASSERT_TRUE(first);
    EXPECT_EQ(first->source, kSource);
    for (int step = 1; step <= 2; ++step) {
        EXPECT_EQ(Next(), (Header{static_cast<std::uint16_t>(first->number + step), kSource}));
    }
}

TEST_F(PacketOutletTest, LeavesThePacketToOthersAsItWas) {
    outlet->Open();
    const auto packet = MakePacket({100, 1});
    outlet->Push(packet.get());
    ASSERT_TRUE(Next());
    EXPECT_EQ(Read(packet.get()), (Header{100, 1}));
}

TEST_F(PacketOutletTest, LetsThroughOnlyWhatComesWhileItIsOpen) {
    outlet->Push(MakePacket({1, 1}).get());
    outlet->Open();
    outlet->Push(MakePacket({2, 1}).get());
    outlet->Close();
    outlet->Push(MakePacket({3, 1}).get());
    EXPECT_TRUE(Next());
    EXPECT_FALSE(Next(300 * GST_MSECOND));
}

}  // namespace
}  // namespace Corvanta::Engine
