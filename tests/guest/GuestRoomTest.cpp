// Guests in processes of their own, in a room of this machine, and what others in that room have of them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "engine/connections/ChatMessage.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/TemporaryFolder.h"
#include "tests/guest/GuestProcess.h"
#include "tests/guest/Onlooker.h"

namespace Corvanta::Guest {
namespace {

using Engine::Eventually;
using Engine::TemporaryFolder;
using ::testing::HasSubstr;

// Several programs that paint, encode and decode, on a machine with other things to do.
constexpr std::chrono::seconds kLongPatience{60};

class GuestRoom : public ::testing::Test {
protected:
    GuestRoom() { ::setenv("XDG_RUNTIME_DIR", folder.path.c_str(), 1); }

    [[nodiscard]] std::unique_ptr<GuestProcess> Invite(const std::string& name, std::size_t index,
                                                       std::size_t count) const {
        return std::make_unique<GuestProcess>(
            std::vector<std::string>{"--room", "review", "--name", name, "--index", std::to_string(index),
                                     "--count", std::to_string(count), "--size", "160x90", "--draw", "0"},
            folder.path);
    }

    const TemporaryFolder folder;
};

bool Soon(const std::function<bool()>& condition) {
    return Eventually(condition, kLongPatience);
}

TEST_F(GuestRoom, HasThemSeenAndHeardByWhoeverEnters) {
    const auto ada = Invite("Ada", 0, 2);
    const auto bob = Invite("Bob", 1, 2);
    Onlooker onlooker("review", "me");
    ASSERT_EQ(onlooker.Problem(), "");
    for (const char* const name : {"Ada", "Bob"}) {
        EXPECT_TRUE(Soon([&] { return onlooker.Of(name).pictures > 0; }))
            << name << ada->Errors() << bob->Errors();
        EXPECT_EQ(onlooker.Of(name).width, 160);
    }
    // In turns of some seconds.
    for (const char* const name : {"Ada", "Bob"}) {
        EXPECT_TRUE(Soon([&] { return onlooker.Of(name).loudest > 0.0001; })) << name;
    }
}

TEST_F(GuestRoom, HasTheSameMarksForThoseWhoComeEarlyAndLate) {
    Onlooker early("review", "early");
    ASSERT_EQ(early.Problem(), "");
    const auto ada = Invite("Ada", 0, 2);
    const auto bob = Invite("Bob", 1, 2);
    ASSERT_TRUE(Soon([&] { return !early.Of("Ada").marks.empty() && !early.Of("Bob").marks.empty(); }))
        << ada->Errors() << bob->Errors();
    Onlooker late("review", "late");
    ASSERT_EQ(late.Problem(), "");
    for (const char* const name : {"Ada", "Bob"}) {
        EXPECT_TRUE(Soon([&] {
            const auto marks = early.Of(name).marks;
            return !marks.empty() && marks == late.Of(name).marks;
        })) << name
            << ::testing::PrintToString(early.Of(name).marks)
            << ::testing::PrintToString(late.Of(name).marks);
    }
}

TEST_F(GuestRoom, HasALineOfTheChatFromThem) {
    Onlooker onlooker("review", "me");
    const auto ada = Invite("Ada", 0, 1);
    EXPECT_TRUE(Soon([&] { return onlooker.Of("Ada").lines > 0; })) << ada->Errors();
}

TEST_F(GuestRoom, HearsTheirGoodbye) {
    Onlooker onlooker("review", "me");
    const auto ada = Invite("Ada", 0, 1);
    ASSERT_TRUE(Soon([&] { return onlooker.Of("Ada").hasJoined; })) << ada->Errors();
    ada->Signal(SIGTERM);
    EXPECT_EQ(ada->End(), 0);
    EXPECT_TRUE(Soon([&] { return onlooker.Of("Ada").hasLeft; }));
    EXPECT_THAT(onlooker.Of("Ada").reason, HasSubstr("goodbye"));
}

TEST_F(GuestRoom, NoticesTheOneThatIsKilled) {
    Onlooker onlooker("review", "me");
    const auto ada = Invite("Ada", 0, 1);
    ASSERT_TRUE(Soon([&] { return onlooker.Of("Ada").hasJoined; })) << ada->Errors();
    ada->Signal(SIGKILL);
    EXPECT_TRUE(Soon([&] { return onlooker.Of("Ada").hasLeft; }));
}

TEST_F(GuestRoom, GoesOnWhenTheOneWhoOpenedItLeaves) {
    const auto ada = Invite("Ada", 0, 2);
    Onlooker onlooker("review", "me");
    ASSERT_TRUE(Soon([&] { return onlooker.Of("Ada").pictures > 0; })) << ada->Errors();
    ada->Signal(SIGTERM);
    EXPECT_EQ(ada->End(), 0);
    const auto bob = Invite("Bob", 1, 2);
    EXPECT_TRUE(Soon([&] { return onlooker.Of("Bob").pictures > 0; })) << bob->Errors();
}

TEST_F(GuestRoom, RefusesInOneLineWhereItsFolderCannotBeWritten) {
    // Something else is in the place where it would be.
    folder.Write("corvanta-" + std::to_string(::getuid()), "");
    GuestProcess ada({"--room", "review", "--name", "Ada"}, folder.File("missing"),
                     {"TMPDIR=" + folder.path.string()});
    EXPECT_EQ(ada.End(), 1);
    EXPECT_THAT(ada.Errors(), HasSubstr("corvanta-guest: No room can be opened"));
}

}  // namespace
}  // namespace Corvanta::Guest
