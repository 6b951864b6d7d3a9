// The whole program: how it is started, and how it ends.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/engine/Eventually.h"
#include "tests/engine/TemporaryFolder.h"
#include "tests/guest/GuestProcess.h"

namespace Corvanta::Guest {
namespace {

using Engine::Eventually;
using Engine::TemporaryFolder;
using ::testing::HasSubstr;
using ::testing::StartsWith;

const std::vector<std::string> kReview{"--room", "review", "--name", "one"};

std::vector<std::string> And(std::vector<std::string> arguments, std::vector<std::string> further) {
    std::ranges::move(further, std::back_inserter(arguments));
    return arguments;
}

std::string ReadAll(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Signals are taken once there is a loop: its threads have names by which GLib's are known.
bool HasStarted(const GuestProcess& guest) {
    return Eventually([&] {
        const std::string tasks = "/proc/" + std::to_string(guest.Id()) + "/task";
        std::error_code error;
        return std::distance(std::filesystem::directory_iterator(tasks, error), {}) > 1;
    });
}

void ExpectOneLine(GuestProcess& guest, int code, const std::string& words) {
    EXPECT_EQ(guest.End(), code);
    const std::string errors = guest.Errors();
    EXPECT_THAT(errors, StartsWith("corvanta-guest: "));
    EXPECT_THAT(errors, HasSubstr(words));
    EXPECT_EQ(std::ranges::count(errors, '\n'), 1) << errors;
}

TEST(GuestProgram, RefusesBadArgumentsInOneLine) {
    const TemporaryFolder folder;
    GuestProcess nameless({"--room", "review"}, folder.path);
    ExpectOneLine(nameless, 2, "--name");
    GuestProcess unknown(And(kReview, {"--colour"}), folder.path);
    ExpectOneLine(unknown, 2, "'--colour'");
    EXPECT_EQ(unknown.Output(), "");
}

TEST(GuestProgram, NamesAFileThatIsNotThereInOneLine) {
    const TemporaryFolder folder;
    GuestProcess guest(And(kReview, {"--source", folder.File("missing.mp4")}), folder.path);
    ExpectOneLine(guest, 1, "missing.mp4");
}

TEST(GuestProgram, SaysInOneLineWhereItsCertificatesCannotBeRead) {
    const TemporaryFolder folder;
    GuestProcess guest(And(kReview, {"--server", "wss://localhost:1", "--ca", folder.File("missing.pem")}),
                       folder.path);
    ExpectOneLine(guest, 1, "missing.pem");
}

TEST(GuestProgram, TellsWhatItCanBeAskedFor) {
    const TemporaryFolder folder;
    GuestProcess guest({"--help"}, folder.path);
    EXPECT_EQ(guest.End(), 0);
    EXPECT_THAT(guest.Output(), StartsWith("corvanta-guest: "));
    EXPECT_EQ(guest.Errors(), "");
}

TEST(GuestProgram, LeavesAfterTheTimeThatItWasAskedFor) {
    const TemporaryFolder folder;
    GuestProcess guest(And(kReview, {"--for", "0.2"}), folder.path);
    EXPECT_EQ(guest.End(), 0) << guest.Errors();
    EXPECT_EQ(guest.Errors(), "");
}

TEST(GuestProgram, LeavesWhenItIsAskedTo) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        const TemporaryFolder folder;
        GuestProcess guest(kReview, folder.path);
        ASSERT_TRUE(HasStarted(guest));
        EXPECT_FALSE(guest.HasEnded());
        guest.Signal(signal);
        EXPECT_EQ(guest.End(), 0) << guest.Errors();
    }
}

TEST(GuestProgram, ShowsItsTokenToNobody) {
    const TemporaryFolder folder;
    GuestProcess guest(kReview, folder.path, {"CORVANTA_TOKEN=open sesame"});
    ASSERT_TRUE(HasStarted(guest));
    const std::string command = ReadAll("/proc/" + std::to_string(guest.Id()) + "/cmdline");
    EXPECT_THAT(command, HasSubstr("review"));
    EXPECT_EQ(command.find("sesame"), std::string::npos);
    guest.Signal(SIGTERM);
    EXPECT_EQ(guest.End(), 0);
    EXPECT_EQ(guest.Errors().find("sesame"), std::string::npos);
}

}  // namespace
}  // namespace Corvanta::Guest
