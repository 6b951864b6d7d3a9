#include "video/StreamSubscription.h"

#include <gtest/gtest.h>

#include "tests/fake_platform/FakePlatform.h"

namespace Corvanta::Video {
namespace {

using Corvanta::Testing::Call;
using Corvanta::Testing::Fake;

class StreamSubscriptionTest : public Corvanta::Testing::FakePlatformTest {};

TEST_F(StreamSubscriptionTest, NumbersSoundZeroPictureOneAndDataTwo) {
    ConfigureStream("a", true, false, false);
    ConfigureStream("b", false, true, false);
    ConfigureStream("c", false, false, true);
    const auto calls = Fake().CallsOf("Connections_ConfigureStream");
    ASSERT_EQ(calls.size(), 3U);
    EXPECT_EQ(calls[0], (Call{"Connections_ConfigureStream", {"a", "0=false 1=true 2=false"}}));
    EXPECT_EQ(calls[1], (Call{"Connections_ConfigureStream", {"b", "0=true 1=false 2=false"}}));
    EXPECT_EQ(calls[2], (Call{"Connections_ConfigureStream", {"c", "0=false 1=false 2=true"}}));
}

}  // namespace
}  // namespace Corvanta::Video
