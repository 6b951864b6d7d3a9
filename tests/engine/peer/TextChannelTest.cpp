// The channels of a peer that makes more of them than one.
#include "engine/peer/TextChannel.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "engine/peer/PeerSession.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/peer/PeerPair.h"

namespace Corvanta::Engine {
namespace {

// One end of a connection that carries nothing but texts.
struct End {
    std::shared_ptr<PeerSession> session;

    mutable std::mutex mutex;  // guards: everything below
    bool isChannelOpen = false;
    std::string lastText, reason;

    [[nodiscard]] bool IsOpen() const {
        const std::lock_guard lock(mutex);
        return isChannelOpen;
    }
    [[nodiscard]] std::string LastText() const {
        const std::lock_guard lock(mutex);
        return lastText;
    }
    [[nodiscard]] std::string Reason() const {
        const std::lock_guard lock(mutex);
        return reason;
    }
};

class TextChannelTest : public testing::Test {
protected:
    TextChannelTest() {
        running.Do([this] {
            Make(maker, other, true);
            Make(other, maker, false);
            EXPECT_TRUE(other.session->Open());
            EXPECT_TRUE(maker.session->Open());
        });
    }
    ~TextChannelTest() override {
        running.Do([this] {
            for (End* const end : {&maker, &other}) {
                end->session->Close();
                end->session.reset();
            }
        });
    }

    void Make(End& end, End& peer, bool offers) {
        // What one hands out comes to the other in a task of its own.
        const auto tell = [this, &peer](const std::function<void(PeerSession&)>& task) {
            running.loop.Post([&peer, task] {
                if (peer.session) task(*peer.session);
            });
        };
        PeerSessionOptions options{.name = offers ? "maker" : "other",
                                   .offers = offers,
                                   .hasChannel = true,
                                   .channelLabel = offers ? "texts" : ""};
        PeerSessionEvents events{
            .description =
                [tell, offers](const std::string& sdp) {
                    tell([sdp, offers](PeerSession& session) {
                        offers ? session.TakeOffer(sdp) : session.TakeAnswer(sdp);
                    });
                },
            .candidate =
                [tell](std::uint32_t line, const std::string& text) {
                    tell([line, text](PeerSession& session) { session.AddCandidate(line, text); });
                },
            .connected = [] {},
            .ended =
                [&end](const std::string& reason) {
                    const std::lock_guard lock(end.mutex);
                    end.reason = reason;
                },
            .channelOpen =
                [&end] {
                    const std::lock_guard lock(end.mutex);
                    end.isChannelOpen = true;
                },
            .text =
                [&end](const std::string& text) {
                    const std::lock_guard lock(end.mutex);
                    end.lastText = text;
                },
            .textsDrained = [] {},
            .loudness = [](double) {}};
        end.session = std::make_shared<PeerSession>(running.loop, options, events, nullptr,
                                                    VideoSink::PictureCallback());
    }

    [[nodiscard]] bool Carries(const std::string& text) {
        running.Do([&] { EXPECT_TRUE(maker.session->Texts().Send(text)); });
        return Eventually([&] { return other.LastText() == text; });
    }

    RunningLoop running;
    End maker, other;
};

TEST_F(TextChannelTest, TakesAFewMoreAndEndsWithTheOneThatIsTooMany) {
    ASSERT_TRUE(Eventually([&] { return maker.IsOpen() && other.IsOpen(); }));
    running.Do([&] {
        for (int count = 0; count < 3; ++count) maker.session->Texts().Create("more");
    });
    EXPECT_TRUE(Carries("with four"));
    EXPECT_EQ(other.Reason(), "");
    running.Do([&] { maker.session->Texts().Create("too many"); });
    EXPECT_TRUE(Eventually([&] { return other.Reason() == "it makes too many channels"; }));
}

}  // namespace
}  // namespace Corvanta::Engine
