// Media and texts between two ends over the loopback.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>

#include "tests/engine/Eventually.h"
#include "tests/engine/Sanitizers.h"
#include "tests/engine/peer/PeerPair.h"

namespace Corvanta::Engine {
namespace {

using std::chrono::steady_clock;

constexpr Yuv kRed{81, 90, 240};
constexpr Yuv kBlue{41, 240, 110};
constexpr double kAmplitude = 0.2;
constexpr int kTolerance = 4;

bool IsNear(Yuv left, Yuv right) {
    return std::abs(left.y - right.y) <= kTolerance && std::abs(left.u - right.u) <= kTolerance &&
           std::abs(left.v - right.v) <= kTolerance;
}

double MillisecondsSince(steady_clock::time_point start) {
    return std::chrono::duration<double, std::milli>(steady_clock::now() - start).count();
}

bool IsSending(const OutboundFeed::Counters& before, const OutboundFeed::Counters& after) {
    return after.pictures != before.pictures || after.videoBytes != before.videoBytes ||
           after.audioBytes != before.audioBytes;
}

class PeerTest : public testing::Test {
protected:
    ~PeerTest() override {
        for (const auto& feed : feeds) {
            running.Do([&] { feed->Close(); });
        }
    }

    std::shared_ptr<OutboundFeed> MakeFeed() {
        std::shared_ptr<OutboundFeed> feed;
        running.Do([&] {
            feed = std::make_shared<OutboundFeed>(running.loop, OutboundFeed::Settings{.name = "feed"});
            EXPECT_TRUE(feed->Open());
        });
        feeds.push_back(feed);
        return feed;
    }

    [[nodiscard]] static bool Shows(PeerEnd& end, Yuv color) {
        return Eventually([&] {
            const auto picture = end.LastPicture();
            return picture && IsNear(MeanColor(*picture), color);
        });
    }
    [[nodiscard]] static bool Hears(const PeerEnd& end, double amplitude) {
        return Eventually(
            [&] { return std::abs(std::sqrt(2 * end.loudness) - amplitude) < amplitude / 5 + 0.001; });
    }

    RunningLoop running;
    std::vector<std::shared_ptr<OutboundFeed>> feeds;
};

TEST_F(PeerTest, PicturesAndSoundArriveAsTheyWereSentBothWays) {
    const auto red = MakeFeed();
    const auto blue = MakeFeed();
    const FeedPump redPump(red, 320, 180, kRed, kAmplitude);
    const FeedPump bluePump(blue, 192, 108, kBlue, kAmplitude / 4);
    PeerPair pair(running);
    const auto start = steady_clock::now();
    pair.Start(red, blue);
    ASSERT_TRUE(Eventually([&] { return pair.answerer.pictures > 0; }));
    std::printf("First picture after %.0f ms\n", MillisecondsSince(start));
    EXPECT_TRUE(Shows(pair.answerer, kRed));
    EXPECT_TRUE(Shows(pair.offerer, kBlue));
    EXPECT_EQ(pair.answerer.LastPicture()->Width(), 320);
    EXPECT_EQ(pair.offerer.LastPicture()->Height(), 108);
    EXPECT_TRUE(Hears(pair.answerer, kAmplitude));
    EXPECT_TRUE(Hears(pair.offerer, kAmplitude / 4));
}

TEST_F(PeerTest, TextsArriveInOrderBothWays) {
    PeerPair pair(running);
    pair.Start(nullptr, nullptr);
    ASSERT_TRUE(Eventually([&] { return pair.offerer.channels > 0 && pair.answerer.channels > 0; }));
    constexpr int kCount = 200;
    const std::string longest(std::size_t{16} * 1024, 'x');
    running.Do([&] {
        for (int index = 0; index < kCount; ++index) {
            EXPECT_TRUE(pair.offerer.connection->SendText("to answerer " + std::to_string(index)));
            EXPECT_TRUE(pair.answerer.connection->SendText("to offerer " + std::to_string(index)));
        }
        EXPECT_TRUE(pair.offerer.connection->SendText(longest));
        EXPECT_FALSE(pair.offerer.connection->SendText(longest + "x"));
        EXPECT_FALSE(pair.offerer.connection->SendText(""));
        EXPECT_FALSE(pair.offerer.connection->SendText(std::string("a\0b", 3)));
    });
    ASSERT_TRUE(Eventually([&] { return pair.answerer.Texts().size() == kCount + 1; }));
    ASSERT_TRUE(Eventually([&] { return pair.offerer.Texts().size() == kCount; }));
    for (std::size_t index = 0; index < kCount; ++index) {
        EXPECT_EQ(pair.answerer.Texts()[index], "to answerer " + std::to_string(index));
        EXPECT_EQ(pair.offerer.Texts()[index], "to offerer " + std::to_string(index));
    }
    EXPECT_EQ(pair.answerer.Texts().back(), longest);
}

TEST_F(PeerTest, TextsAreRefusedWhenTooMuchWaitsAndTakenAgainLater) {
    PeerPair pair(running);
    pair.Start(nullptr, nullptr);
    ASSERT_TRUE(Eventually([&] { return pair.offerer.channels > 0 && pair.answerer.channels > 0; }));
    std::size_t taken = 0;
    const std::string text(TextChannel::kMaxTextBytes, 'x');
    running.Do([&] {
        while (taken < 4096 && pair.offerer.connection->SendText(text)) ++taken;
    });
    EXPECT_GT(taken, 900U);
    EXPECT_LT(taken, 4096U);
    ASSERT_TRUE(Eventually([&] { return pair.offerer.drains == 1; }));
    running.Do([&] { EXPECT_TRUE(pair.offerer.connection->SendText("last")); });
    ASSERT_TRUE(Eventually([&] { return pair.answerer.Texts().size() == taken + 1; }));
    EXPECT_EQ(pair.answerer.Texts().back(), "last");
    EXPECT_EQ(pair.offerer.drains, 1);
    EXPECT_EQ(pair.offerer.disconnects, 0);
    EXPECT_EQ(pair.answerer.disconnects, 0);
}

TEST_F(PeerTest, ShortTextsCountForWhatTheyTake) {
    PeerPair pair(running);
    pair.Start(nullptr, nullptr);
    ASSERT_TRUE(Eventually([&] { return pair.offerer.channels > 0; }));
    constexpr std::size_t kMost = 8 * TextChannel::kMaxWaitingBytes / TextChannel::kTextOverhead;
    std::size_t taken = 0;
    running.Do([&] {
        while (taken < kMost && pair.offerer.connection->SendText("x")) ++taken;
    });
    EXPECT_LT(taken, kMost);
    EXPECT_TRUE(Eventually([&] { return pair.offerer.drains == 1; }));
}

TEST_F(PeerTest, ClosesAtOnceWhileTextsWait) {
    for (const bool offererGoes : {true, false}) {
        PeerPair pair(running);
        pair.Start(nullptr, nullptr);
        ASSERT_TRUE(Eventually([&] { return pair.offerer.channels > 0 && pair.answerer.channels > 0; }));
        PeerEnd& going = offererGoes ? pair.offerer : pair.answerer;
        PeerEnd& staying = offererGoes ? pair.answerer : pair.offerer;
        pair.Destroy(staying);
        const std::string text(TextChannel::kMaxTextBytes, 'x');
        running.Do([&] {
            while (going.connection->SendText(text)) continue;
        });
        // Would not return.
        pair.Destroy(going);
    }
}

TEST_F(PeerTest, AFeedThatComesLaterOrGoesIsTakenUp) {
    const auto red = MakeFeed();
    const auto blue = MakeFeed();
    const FeedPump redPump(red, 320, 180, kRed, kAmplitude);
    const FeedPump bluePump(blue, 320, 180, kBlue, kAmplitude);
    PeerPair pair(running);
    pair.Start(nullptr, nullptr);
    ASSERT_TRUE(Eventually([&] { return pair.AreConnected(); }));
    EXPECT_EQ(pair.answerer.pictures, 0);
    running.Do([&] { pair.offerer.connection->SetFeed(red); });
    EXPECT_TRUE(Shows(pair.answerer, kRed));
    running.Do([&] { pair.offerer.connection->SetFeed(blue); });
    EXPECT_TRUE(Shows(pair.answerer, kBlue));
    running.Do([&] { pair.answerer.connection->SetFeed(red); });
    EXPECT_TRUE(Shows(pair.offerer, kRed));
    EXPECT_EQ(pair.offerer.descriptions, 1);
}

TEST_F(PeerTest, IsSetUpAgainWhenEitherSideAsks) {
    const auto red = MakeFeed();
    const FeedPump pump(red, 320, 180, kRed, kAmplitude);
    PeerPair pair(running);
    pair.Start(red, nullptr);
    ASSERT_TRUE(Eventually([&] { return pair.AreConnected() && pair.answerer.pictures > 0; }));
    for (int round = 2; round <= 3; ++round) {
        running.Do([&] { (round == 2 ? pair.offerer : pair.answerer).connection->Restart(); });
        ASSERT_TRUE(Eventually([&] {
            return pair.offerer.connects == round && pair.answerer.connects == round &&
                   pair.offerer.channels == round && pair.answerer.channels == round;
        }));
        const int before = pair.answerer.pictures;
        EXPECT_TRUE(Eventually([&] { return pair.answerer.pictures > before + 5; }));
    }
    EXPECT_EQ(pair.offerer.disconnects, 0);
    EXPECT_EQ(pair.answerer.disconnects, 0);
}

TEST_F(PeerTest, NothingIsSentOfWhatIsTurnedOff) {
    const auto red = MakeFeed();
    const FeedPump pump(red, 320, 180, kRed, kAmplitude);
    PeerPair pair(running);
    pair.Start(red, nullptr);
    ASSERT_TRUE(Eventually([&] { return pair.answerer.pictures > 5; }));
    red->SetVideoEnabled(false);
    red->SetAudioEnabled(false);
    // What was on its way has come when a whole second brings nothing; a feed that goes on brings at once.
    ASSERT_TRUE(Eventually([&] {
        const auto before = red->Count();
        return !Eventually([&] { return IsSending(before, red->Count()); }, std::chrono::seconds(1));
    }));
    const auto still = red->Count();
    const int shown = pair.answerer.pictures;
    red->SetVideoEnabled(true);
    EXPECT_TRUE(Eventually([&] { return pair.answerer.pictures > shown; }));
    EXPECT_EQ(red->Count().audioBytes, still.audioBytes);
}

TEST_F(PeerTest, NothingIsDecodedOfWhatTheReceiverHasTurnedOff) {
    const auto red = MakeFeed();
    const FeedPump pump(red, 320, 180, kRed, kAmplitude);
    PeerPair pair(running);
    pair.Start(red, nullptr);
    ASSERT_TRUE(Eventually([&] { return pair.answerer.pictures > 5; }));
    running.Do([&] { pair.answerer.connection->SetVideoDecoded(false); });
    // As above: pictures that come would do so within the second.
    ASSERT_TRUE(Eventually([&] {
        const int before = pair.answerer.pictures;
        return !Eventually([&] { return pair.answerer.pictures > before; }, std::chrono::seconds(1));
    }));
    const int shown = pair.answerer.pictures;
    running.Do([&] { pair.answerer.connection->SetVideoDecoded(true); });
    EXPECT_TRUE(Eventually([&] { return pair.answerer.pictures > shown; }));
}

TEST_F(PeerTest, AReceiverThatTurnsPicturesOnAsksForAKeyFrame) {
    // Two pictures a second, so that the regular key frame is half a minute away.
    const auto red = MakeFeed();
    red->PushPicture(MakePicture(320, 180, kRed));
    PeerPair pair(running);
    pair.Start(red, nullptr);
    ASSERT_TRUE(Shows(pair.answerer, kRed));
    running.Do([&] { pair.answerer.connection->SetVideoDecoded(false); });
    const auto keyFrames = red->Count().keyFrames;
    running.Do([&] { pair.answerer.connection->SetVideoDecoded(true); });
    EXPECT_TRUE(Eventually([&] { return red->Count().keyFrames > keyFrames; }));
}

TEST_F(PeerTest, AnOfferNamesTheSourcesOfItsPackets) {
    // Often enough to see what depends on how threads follow each other.
    for (int round = 0; round < 20; ++round) {
        PeerPair pair(running);
        pair.Start(nullptr, nullptr);
        ASSERT_TRUE(Eventually([&] { return pair.offerer.descriptions > 0; }));
        const auto offer = ReadDescription(pair.offerer.LastDescription());
        ASSERT_TRUE(offer);
        const auto video = offer->sdp.find("m=video"), audio = offer->sdp.find("m=audio");
        ASSERT_LT(video, audio);
        EXPECT_NE(offer->sdp.substr(video, audio - video).find("a=ssrc:"), std::string::npos);
        EXPECT_NE(offer->sdp.substr(audio).find("a=ssrc:"), std::string::npos);
    }
}

TEST_F(PeerTest, IsReachedOverTheLoopbackAloneOrOverAllElse) {
    const auto isLoopback = [](const std::string& candidate) {
        return candidate.find(" 127.0.0.1 ") != std::string::npos;
    };
    const auto isUdp = [](const std::string& candidate) {
        return candidate.find(" UDP ") != std::string::npos;
    };
    PeerPair own(running), all(running);
    own.Start(nullptr, nullptr);
    PeerOptions open;
    open.loopbackOnly = false;
    all.Start(nullptr, nullptr, open, open);
    ASSERT_TRUE(Eventually([&] { return own.AreConnected(); }));
    EXPECT_THAT(own.offerer.Candidates(), testing::Each(testing::AllOf(testing::ResultOf(isLoopback, true),
                                                                       testing::ResultOf(isUdp, true))));
    EXPECT_THAT(own.answerer.Candidates(), testing::SizeIs(testing::Gt(0U)));
    // There may be none, on a machine without a network.
    EXPECT_THAT(all.offerer.Candidates(), testing::Each(testing::ResultOf(isLoopback, false)));
}

TEST_F(PeerTest, TheOtherSideIsToldWhenOneGoes) {
    for (const bool offererGoes : {true, false}) {
        PeerPair pair(running);
        pair.Start(nullptr, nullptr);
        ASSERT_TRUE(Eventually([&] { return pair.AreConnected(); }));
        PeerEnd& going = offererGoes ? pair.offerer : pair.answerer;
        PeerEnd& staying = offererGoes ? pair.answerer : pair.offerer;
        const auto start = steady_clock::now();
        pair.Destroy(going);
        EXPECT_TRUE(Eventually([&] { return staying.disconnects == 1; }));
        std::printf("Told after %.0f ms\n", MillisecondsSince(start));
        EXPECT_FALSE(staying.connection->IsConnected());
    }
}

TEST_F(PeerTest, AQuietConnectionLasts) {
    PeerOptions textsOnly;
    textsOnly.sends = textsOnly.receives = false;
    PeerPair texts(running), pair(running);
    texts.Start(nullptr, nullptr, textsOnly, textsOnly);
    pair.Start(nullptr, nullptr);
    const auto isQuiet = [](const PeerPair& quiet) {
        return quiet.offerer.disconnects == 0 && quiet.answerer.disconnects == 0;
    };
    ASSERT_TRUE(Eventually([&] { return texts.AreConnected() && pair.AreConnected(); }));
    // Longer than it may be silent.
    EXPECT_FALSE(Eventually([&] { return !isQuiet(texts) || !isQuiet(pair); }, std::chrono::seconds(6)));
    EXPECT_EQ(texts.answerer.Texts().size(), 0U);
    EXPECT_EQ(texts.offerer.Texts().size(), 0U);
}

TEST_F(PeerTest, AReceiverOfASourceThatRestsHasItsPicture) {
    const auto red = MakeFeed();
    red->PushPicture(MakePicture(320, 180, kRed));
    PeerPair pair(running);
    pair.Start(red, nullptr);
    ASSERT_TRUE(Eventually([&] { return pair.AreConnected(); }));
    const auto connected = steady_clock::now();
    EXPECT_TRUE(Shows(pair.answerer, kRed));
    std::printf("Resting picture %.0f ms after it was connected\n", MillisecondsSince(connected));
    PeerPair late(running);
    late.Start(red, nullptr);
    EXPECT_TRUE(Shows(late.answerer, kRed));
}

TEST_F(PeerTest, AKeyFrameIsMadeForWhoComesLate) {
    // Two pictures a second, so that the regular key frame is half a minute away.
    const auto red = MakeFeed();
    red->PushPicture(MakePicture(320, 180, kRed));
    PeerPair first(running);
    first.Start(red, nullptr);
    ASSERT_TRUE(Eventually([&] { return first.answerer.pictures > 1; }));
    const auto keyFrames = red->Count().keyFrames;
    // Which does not ask for one.
    PeerPair late(running);
    PeerOptions deaf;
    deaf.receives = false;
    late.Start(red, nullptr, {}, deaf);
    EXPECT_TRUE(Eventually([&] { return red->Count().keyFrames > keyFrames; }));
}

TEST_F(PeerTest, ConnectsAndClosesLeaveNothingBehind) {
    const auto red = MakeFeed();
    const FeedPump pump(red, 320, 180, kRed, kAmplitude);
    const auto connect = [&](int rounds) {
        for (int round = 0; round < rounds; ++round) {
            PeerPair pair(running);
            pair.Start(red, red);
            ASSERT_TRUE(Eventually([&] { return pair.offerer.pictures > 0 && pair.answerer.pictures > 0; }));
        }
    };
    // What GStreamer makes once and keeps.
    connect(5);
    const std::size_t descriptors = CountDescriptors();
    const std::size_t memory = ResidentBytes();
    connect(kIsSanitized ? 10 : 50);
    EXPECT_TRUE(Eventually([&] { return CountDescriptors() <= descriptors; }))
        << CountDescriptors() << " descriptors after " << descriptors;
    // Threads that have a name of their connection's; others wait in a pool for their next work.
    EXPECT_TRUE(Eventually([&] { return CountThreads("webrtcbin") == 0; }))
        << CountThreads("webrtcbin") << " threads";
    std::printf("Memory: %zu kB after %zu kB\n", ResidentBytes() / 1024, memory / 1024);
    // The sanitizer keeps freed memory for a while, and tells of what is lost by itself.
    if (!kIsSanitized) {
        EXPECT_LT(ResidentBytes(), memory + std::size_t{24} * 1024 * 1024);
    }
}

TEST_F(PeerTest, FiguresSayWhatTheConnectionDoes) {
    const auto red = MakeFeed();
    const FeedPump pump(red, 320, 180, kRed, kAmplitude);
    PeerPair pair(running);
    pair.Start(red, nullptr);
    ASSERT_TRUE(Eventually([&] { return pair.answerer.pictures > 5; }));
    PeerStatistics down, up;
    EXPECT_TRUE(Eventually([&] {
        down = pair.Statistics(pair.answerer);
        up = pair.Statistics(pair.offerer);
        // The first report may tell of what was sent before the other end listened.
        return down.downloadRate > 20'000 && up.uploadRate > 20'000 && up.roundTripMs > 0 &&
               up.roundTripMs < 2000 && up.remoteLossShare && *up.remoteLossShare <= 0.5 &&
               down.frameRate > 5;
    })) << down.downloadRate
        << " " << up.uploadRate << " " << up.roundTripMs.value_or(-1) << " "
        << up.remoteLossShare.value_or(-1) << " " << down.frameRate;
    EXPECT_EQ(down.width, 320);
    EXPECT_EQ(down.height, 180);
    EXPECT_EQ(down.videoCodec, "VP8");
}

TEST_F(PeerTest, GarbageIsRefusedAndTheConnectionGoesOn) {
    const auto red = MakeFeed();
    const FeedPump pump(red, 320, 180, kRed, kAmplitude);
    PeerPair pair(running);
    pair.Start(red, nullptr);
    ASSERT_TRUE(Eventually([&] { return pair.answerer.pictures > 5; }));
    running.Do([&] {
        for (PeerEnd* end : {&pair.offerer, &pair.answerer}) {
            for (const std::string text :
                 {"", "garbage", "{}", "[[[[[[[[", R"({"type":"offer"})", R"({"type":"offer","sdp":"v=0"})",
                  R"({"type":"answer","session":-1,"sdp":"v=0"})", R"({"type":7})", "\xff\xfe"}) {
                EXPECT_FALSE(end->connection->TakeDescription(text)) << text;
            }
            EXPECT_FALSE(end->connection->TakeDescription(std::string(1 << 20, '[')));
            for (const std::string text :
                 {"garbage", "candidate:", "candidate:1 1 UDP 1 host.local 9 typ host",
                  "candidate:1 1 TCP 1 127.0.0.1 9 typ host"}) {
                EXPECT_FALSE(end->connection->TakeCandidate(0, text)) << text;
            }
            for (int count = 0; count < 1000; ++count) {
                (void)end->connection->TakeCandidate(0, "candidate:1 1 UDP 1 127.0.0.1 9 typ host");
            }
            EXPECT_FALSE(end->connection->TakeCandidate(0, "candidate:1 1 UDP 1 127.0.0.1 9 typ host"));
        }
    });
    const int before = pair.answerer.pictures;
    EXPECT_TRUE(Eventually([&] { return pair.answerer.pictures > before + 5; }));
    EXPECT_EQ(pair.offerer.disconnects, 0);
    EXPECT_EQ(pair.answerer.disconnects, 0);
}

TEST_F(PeerTest, IsNotConnectedWithOneWhoShowsAnotherCertificate) {
    PeerPair pair(running);
    pair.onTheWay = [](std::string text) {
        // Another digit in each digest.
        const std::string mark = "fingerprint:sha-256 ";
        for (auto place = text.find(mark); place != std::string::npos; place = text.find(mark, place + 1)) {
            char& digit = text[place + mark.size()];
            digit = digit == '0' ? '1' : '0';
        }
        return text;
    };
    pair.Start(nullptr, nullptr);
    EXPECT_TRUE(Eventually([&] { return pair.offerer.disconnects > 0 && pair.answerer.disconnects > 0; }));
    EXPECT_EQ(pair.offerer.connects, 0);
    EXPECT_EQ(pair.answerer.connects, 0);
    EXPECT_EQ(pair.offerer.channels, 0);
    EXPECT_EQ(pair.answerer.channels, 0);
}

}  // namespace
}  // namespace Corvanta::Engine
