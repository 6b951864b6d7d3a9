// The service as a program: its command line, its token, its end.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include "engine/roomservice/ServiceOptions.h"
#include "tests/engine/TemporaryFolder.h"
#include "tests/engine/roomservice/ServiceProcess.h"
#include "tests/engine/roomservice/ServingThread.h"
#include "tests/engine/roomservice/TestAuthority.h"

namespace Corvanta::Engine {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

constexpr const char* kToken = "open-sesame-4711";

std::string ProblemOf(const std::vector<std::string_view>& arguments) {
    const auto parsed = ParseServiceOptions(arguments);
    const auto* const problem = std::get_if<Failure>(&parsed);
    return problem != nullptr ? problem->line : std::string();
}

TEST(ServiceOptionsTest, ReadsWhatThereIs) {
    const auto parsed = ParseServiceOptions({"--port", "0", "--address", "0.0.0.0", "--database", "d",
                                             "--token-file", "t", "--certificate", "c", "--key", "k"});
    const auto& options = std::get<ServiceOptions>(parsed);
    EXPECT_EQ(options.port, 0);
    EXPECT_EQ(options.address, "0.0.0.0");
    EXPECT_EQ(options.database, "d");
    EXPECT_EQ(options.tokenFile, "t");
    EXPECT_EQ(options.certificate, "c");
    EXPECT_EQ(options.key, "k");
    EXPECT_EQ(std::get<ServiceOptions>(ParseServiceOptions({})).address, "127.0.0.1");
    EXPECT_TRUE(std::get<ServiceOptions>(ParseServiceOptions({"--help"})).showHelp);
    EXPECT_THAT(std::string(ServiceHelp()), HasSubstr("--token-file"));
}

TEST(ServiceOptionsTest, NamesABadOptionInOneLine) {
    EXPECT_EQ(ProblemOf({"--token", "secret"}), "unknown option '--token', --help lists them");
    EXPECT_EQ(ProblemOf({"--port"}), "option --port wants a value");
    for (const char* const port : {"65536", "-1", "x", "80 ", "0x50"})
        EXPECT_THAT(ProblemOf({"--port", port}), HasSubstr("is no port")) << port;
    EXPECT_EQ(ProblemOf({"--port", ""}), "option --port wants a value");
    EXPECT_EQ(ProblemOf({"--key", "k"}), "--certificate and --key go together");
}

TEST(ServiceOptionsTest, TakesTheTokenFromAFileOfItsOwnersAlone) {
    const TemporaryFolder folder;
    const auto problem = [&](const std::string& name) {
        const auto token = ReadToken(folder.File(name));
        const auto* const found = std::get_if<Failure>(&token);
        return found != nullptr ? found->line : std::string();
    };
    folder.Write("token", "open-sesame-4711\r\nmore\n");
    EXPECT_THAT(problem("token"), HasSubstr("is open to others"));
    std::filesystem::permissions(folder.File("token"), std::filesystem::perms::owner_read);
    EXPECT_EQ(std::get<std::string>(ReadToken(folder.File("token"))), kToken);
    EXPECT_THAT(problem("missing"), HasSubstr("cannot be read"));
    for (const std::string& bad :
         {std::string("\n"), std::string("a b"), std::string("\xC3\xA4"), std::string(1025, 'x')}) {
        folder.Write("bad", bad);
        std::filesystem::permissions(folder.File("bad"), std::filesystem::perms::owner_all);
        EXPECT_THAT(problem("bad"), StartsWith("the token has to be")) << bad;
    }
}

class ServiceProgram : public ::testing::Test {
protected:
    ServiceProgram() { ::setenv("CORVANTA_TOKEN", kToken, 1); }
    ~ServiceProgram() override { ::unsetenv("CORVANTA_TOKEN"); }

    [[nodiscard]] std::vector<std::string> Words(const std::vector<std::string>& more = {}) const {
        std::vector<std::string> words{CORVANTA_ROOM_SERVICE, "--port", "0", "--database",
                                       folder.File("database").string()};
        words.insert(words.end(), more.begin(), more.end());
        return words;
    }
    // Of the line in which the program says where it listens.
    [[nodiscard]] static std::string UrlIn(const std::string& line) {
        const std::size_t begin = line.find("http");
        return begin != std::string::npos ? line.substr(begin, line.find(';') - begin) : std::string();
    }

    TemporaryFolder folder;
};

TEST_F(ServiceProgram, ServesUntilItIsAskedToEnd) {
    for (const int signal : {SIGTERM, SIGINT}) {
        ServiceProcess program(Words(), true);
        const std::string line = program.ReadLine();
        EXPECT_THAT(line, StartsWith("corvanta-room-service: listens on http://127.0.0.1:"));
        EXPECT_THAT(line, HasSubstr("--service http://HOST:"));
        const NotesClient notes({.socket = {}, .url = UrlIn(line), .token = kToken}, "review");
        const auto there = notes.Get();
        ASSERT_TRUE(there.has_value()) << line;
        EXPECT_EQ(notes.Put(there->revision, "kept"), 200U);
        program.Signal(signal);
        EXPECT_EQ(program.Wait(), 0);
    }
}

TEST_F(ServiceProgram, TellsItsTokenNowhere) {
    ServiceProcess program(Words(), true);
    const std::string line = program.ReadLine();
    std::ostringstream words;
    const auto list = std::filesystem::path("/proc") / std::to_string(program.Id()) / "cmdline";
    words << std::ifstream(list, std::ios::binary).rdbuf();
    EXPECT_THAT(words.str(), HasSubstr("--database"));
    EXPECT_THAT(words.str(), Not(HasSubstr(kToken)));
    const ServiceAddress wrong{.socket = {}, .url = UrlIn(line), .token = "wrong-token"};
    EXPECT_EQ(StatusOf(SendRequest(wrong, {"GET", "/notes?room=a", {}})), 401U);
    program.Signal(SIGTERM);
    const std::string said = line + program.ReadAll();
    EXPECT_THAT(said, Not(HasSubstr(kToken)));
    EXPECT_THAT(said, Not(HasSubstr("wrong-token")));
}

TEST_F(ServiceProgram, SpeaksHttpsWithACertificate) {
    const TestAuthority authority;
    const ServiceProcess program(
        Words({"--certificate", authority.Certificate().string(), "--key", authority.Key().string()}), true);
    const std::string url = UrlIn(program.ReadLine());
    EXPECT_THAT(url, StartsWith("https://127.0.0.1:"));
    const NotesClient notes(
        {.socket = {}, .url = url, .token = kToken, .certificateAuthority = authority.Authority()}, "review");
    EXPECT_EQ(notes.Put(0, "kept"), 200U);
}

TEST_F(ServiceProgram, SaysInOneLineWhyItDoesNotStart) {
    const auto says = [](const std::vector<std::string>& words, int status) {
        ServiceProcess program(words, true);
        const std::string said = program.ReadAll();
        EXPECT_EQ(program.Wait(), status) << said;
        EXPECT_THAT(said, StartsWith("corvanta-room-service: "));
        return said;
    };
    EXPECT_THAT(says({CORVANTA_ROOM_SERVICE, "--what"}, 2), HasSubstr("'--what'"));
    EXPECT_THAT(says(Words({"--certificate", "/nothing", "--key", "/nothing"}), 1), HasSubstr("/nothing"));
    const ServiceProcess first(Words(), true);
    const std::string url = UrlIn(first.ReadLine());
    EXPECT_THAT(says(Words({"--port", url.substr(url.rfind(':') + 1)}), 1), HasSubstr("in use"));
    ::unsetenv("CORVANTA_TOKEN");
    EXPECT_THAT(says(Words(), 2), HasSubstr("there is no token"));
}

}  // namespace
}  // namespace Corvanta::Engine
