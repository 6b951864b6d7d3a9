#include "host/Guests.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/host/TemporaryFolder.h"

namespace Corvanta::Host {
namespace {

namespace fs = std::filesystem;
using std::chrono::steady_clock;

constexpr std::chrono::seconds kPatience{20};

bool Eventually(const std::function<bool()>& condition) {
    const auto deadline = steady_clock::now() + kPatience;
    while (!condition()) {
        if (steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

// A program in the place of a guest: a script that gets the folder of the test as its first argument.
class Script {
public:
    explicit Script(const std::string& text) {
        std::ofstream(Path()) << "#!/bin/sh\n" << text << '\n';
        fs::permissions(Path(), fs::perms::owner_all);
    }
    [[nodiscard]] fs::path Path() const { return folder_.Path() / "guest"; }
    [[nodiscard]] std::string Folder() const { return folder_.Path().string(); }
    [[nodiscard]] bool Has(const std::string& name) const { return fs::exists(folder_.Path() / name); }
    [[nodiscard]] std::string Read(const std::string& name) const {
        std::ifstream file(folder_.Path() / name);
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    TemporaryFolder folder_;
};

std::unique_ptr<Guests> Started(const Script& script, const std::vector<std::vector<std::string>>& arguments,
                                const std::vector<Guests::Variable>& variables = {}) {
    auto started = Guests::Start(script.Path(), arguments, variables);
    if (const auto* const failure = std::get_if<Failure>(&started)) {
        ADD_FAILURE() << failure->line;
        return nullptr;
    }
    return std::get<std::unique_ptr<Guests>>(std::move(started));
}

// The read end of a pipe that stands in for the standard error stream while this lives, so that every guest
// holds it open as long as it is there.
class Holders {
public:
    Holders() {
        std::array<int, 2> ends{-1, -1};
        EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        readEnd_ = ends[0];
        writeEnd_ = ends[1];
        before_ = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
        ::dup2(writeEnd_, STDERR_FILENO);
    }
    ~Holders() {
        LetGo();
        ::close(readEnd_);
    }
    // This process holds it no longer.
    void LetGo() {
        if (before_ < 0) return;
        ::dup2(before_, STDERR_FILENO);
        ::close(before_);
        ::close(writeEnd_);
        before_ = -1;
    }
    // Whether all who held it have gone, in time.
    [[nodiscard]] bool Go() const {
        const auto deadline = steady_clock::now() + kPatience;
        while (steady_clock::now() < deadline) {
            pollfd waiting{readEnd_, POLLIN, 0};
            ::poll(&waiting, 1, 100);
            std::array<char, 256> block;
            if (waiting.revents != 0 && ::read(readEnd_, block.data(), block.size()) == 0) return true;
        }
        return false;
    }

private:
    int readEnd_ = -1, writeEnd_ = -1, before_ = -1;
};

const std::string kWaitsForTheEnd = R"(trap 'touch "$1/goodbye-$2"; exit 0' TERM
touch "$1/here-$2"
while :; do sleep 0.05; done)";

TEST(GuestArguments, NameEachOnesPlaceInTheRoom) {
    const auto all = GuestArguments({.count = 3});
    ASSERT_EQ(all.size(), 3U);
    std::set<std::string> names;
    for (std::size_t i = 0; i < all.size(); ++i) {
        names.insert(all[i][0]);
        EXPECT_EQ(all[i][1], "--index=" + std::to_string(i));
        EXPECT_EQ(all[i][2], "--count=3");
        EXPECT_EQ(all[i].size(), 4U);
    }
    EXPECT_EQ(names.size(), 3U);
    EXPECT_EQ(names.count("--name=Alva"), 1U);
}

TEST(GuestArguments, GiveNobodyThePersonsOwnName) {
    for (const auto& arguments : GuestArguments({.count = 16, .ownName = "Alva"})) {
        EXPECT_NE(arguments[0], "--name=Alva");
    }
}

TEST(GuestArguments, PassTheServerOn) {
    const auto all = GuestArguments({.count = 1,
                                     .server = "wss://host",
                                     .service = "https://host",
                                     .certificateAuthority = "/ca.pem",
                                     .drawings = false});
    const std::vector<std::string> further(all[0].begin() + 4, all[0].end());
    EXPECT_EQ(further, (std::vector<std::string>{"--server=wss://host", "--service=https://host",
                                                 "--ca=/ca.pem", "--draw=never"}));
}

TEST(GuestArguments, HaveNoCertificatesForARoomOfThisMachine) {
    const auto all = GuestArguments({.count = 1, .certificateAuthority = "/ca.pem"});
    EXPECT_EQ(all[0].size(), 4U);
}

TEST(GuestArguments, AreNoneWithoutGuests) {
    EXPECT_TRUE(GuestArguments({.count = 0}).empty());
}

TEST(Guests, GetTheirArgumentsAsTheyAre) {
    const Script script(
        R"(for word in "$@"; do printf '%s\n' "$word"; done >"$1/part" && mv "$1/part" "$1/words")");
    const auto guests = Started(script, {{script.Folder(), "--name=two words", "--room=$HOME '\""}});
    ASSERT_TRUE(Eventually([&] { return script.Has("words"); }));
    EXPECT_EQ(script.Read("words"), script.Folder() + "\n--name=two words\n--room=$HOME '\"\n");
}

// No list of processes shows it.
TEST(Guests, HaveTheirRoomInTheirEnvironmentAlone) {
    ::setenv("CORVANTA_ROOM_NAME", "another", 1);
    const Script script(
        R"(printf '%s\n' "$CORVANTA_ROOM_NAME" "$HOME" >"$1/part" && mv "$1/part" "$1/words")");
    const auto guests = Started(script, {{script.Folder()}}, {{Engine::kRoomVariable, "own-7 $HOME '\""}});
    ::unsetenv("CORVANTA_ROOM_NAME");
    ASSERT_TRUE(Eventually([&] { return script.Has("words"); }));
    const char* const home = std::getenv("HOME");
    EXPECT_EQ(script.Read("words"), std::string("own-7 $HOME '\"\n") + (home != nullptr ? home : "") + "\n");
}

TEST(Guests, SayGoodbyeAtTheEnd) {
    const Script script(kWaitsForTheEnd);
    Holders holders;
    auto guests = Started(script, {{script.Folder(), "0"}, {script.Folder(), "1"}});
    holders.LetGo();
    ASSERT_TRUE(Eventually([&] { return script.Has("here-0") && script.Has("here-1"); }));
    EXPECT_EQ(guests->Count(), 2U);
    guests.reset();
    EXPECT_TRUE(script.Has("goodbye-0"));
    EXPECT_TRUE(script.Has("goodbye-1"));
    EXPECT_TRUE(holders.Go());
}

TEST(Guests, MayBeAskedToEndAheadOfTheEnd) {
    const Script script(kWaitsForTheEnd);
    const auto guests = Started(script, {{script.Folder(), "0"}});
    ASSERT_TRUE(Eventually([&] { return script.Has("here-0"); }));
    guests->AskToEnd();
    EXPECT_TRUE(Eventually([&] { return guests->Count() == 0; }));
}

TEST(Guests, AreEndedByForceWhenTheyDoNotListen) {
    const Script script("trap '' TERM\ntouch \"$1/here\"\nwhile :; do sleep 0.05; done");
    Holders holders;
    auto guests = Started(script, {{script.Folder()}});
    holders.LetGo();
    ASSERT_TRUE(Eventually([&] { return script.Has("here"); }));
    guests.reset();
    EXPECT_TRUE(holders.Go());
}

TEST(Guests, AreNotStartedAgainWhenTheyDie) {
    const Script script("echo x >>\"$1/starts\"\nexit 1");
    const auto guests = Started(script, {{script.Folder()}});
    ASSERT_TRUE(Eventually([&] { return guests->Count() == 0; }));
    EXPECT_EQ(script.Read("starts"), "x\n");
}

TEST(Guests, HearTheSignalsThatTheProgramHasBlocked) {
    sigset_t signals, before;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &signals, &before);
    // No shell, which would clear the mask by itself.
    const TemporaryFolder folder;
    const fs::path seen = folder.Path() / "status";
    auto started = Guests::Start("/bin/cp", {{"/proc/self/status", seen.string()}});
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    ASSERT_EQ(started.index(), 0U);
    const auto guests = std::get<std::unique_ptr<Guests>>(std::move(started));
    ASSERT_TRUE(Eventually([&] { return guests->Count() == 0; }));
    std::ifstream file(seen);
    const std::string status{std::istreambuf_iterator<char>(file), {}};
    EXPECT_NE(status.find("SigBlk:\t0000000000000000\n"), std::string::npos) << status;
}

TEST(Guests, GetNoFileOfThisProgram) {
    const Script script("ls /proc/self/fd >\"$1/part\" && mv \"$1/part\" \"$1/files\"");
    const int open = ::open("/dev/null", O_RDONLY);
    ASSERT_EQ(::dup2(open, 77), 77);
    const auto guests = Started(script, {{script.Folder()}});
    ASSERT_TRUE(Eventually([&] { return script.Has("files"); }));
    EXPECT_EQ(script.Read("files").find("77"), std::string::npos);
    ::close(open);
    ::close(77);
}

TEST(Guests, GoWithAProgramThatIsKilled) {
    const Script script(kWaitsForTheEnd);
    Holders holders;
    const pid_t host = ::fork();
    if (host == 0) {
        auto started = Guests::Start(script.Path(), {{script.Folder(), "0"}, {script.Folder(), "1"}});
        while (started.index() == 0) ::pause();
        ::_exit(1);
    }
    holders.LetGo();
    ASSERT_GT(host, 0);
    const bool areThere = Eventually([&] { return script.Has("here-0") && script.Has("here-1"); });
    ::kill(host, SIGKILL);
    ::waitpid(host, nullptr, 0);
    EXPECT_TRUE(areThere);
    EXPECT_TRUE(holders.Go());
    EXPECT_TRUE(script.Has("goodbye-0") && script.Has("goodbye-1"));
}

TEST(Guests, AreMissedInOneLineWhereTheirProgramIsNotThere) {
    const TemporaryFolder folder;
    const auto started = Guests::Start(folder.Path() / "guest", {{"--name=one"}});
    const auto* const failure = std::get_if<Failure>(&started);
    ASSERT_NE(failure, nullptr);
    EXPECT_NE(failure->line.find("guests' program"), std::string::npos);
}

TEST(Guests, NeedNoProgramWhereNobodyIsInvited) {
    const TemporaryFolder folder;
    EXPECT_EQ(Guests::Start(folder.Path() / "guest", {}).index(), 0U);
}

}  // namespace
}  // namespace Corvanta::Host
