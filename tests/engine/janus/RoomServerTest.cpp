// The command that carries rooms.
#include <gio/gio.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/engine/Eventually.h"
#include "tests/engine/TemporaryFolder.h"
#include "tests/engine/janus/RoomMemberRig.h"
#include "tests/engine/janus/RoomServerProcess.h"

namespace Corvanta::Engine {
namespace {

constexpr Yuv kGrey{128, 128, 128};

bool IsGone(pid_t process) {
    return Eventually([process] { return kill(process, 0) != 0; });
}

// Whether any process of this machine has the text among its arguments.
bool IsInAProcessList(const std::string& text) {
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        std::ifstream file(entry.path() / "cmdline", std::ios::binary);
        const std::string line((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        if (line.find(text) != std::string::npos) return true;
    }
    return false;
}

// A certificate for the own address, and the authority that signed it.
void MakeCertificates(const TemporaryFolder& folder, const std::string& address) {
    folder.Write("extensions", "subjectAltName=IP:" + address + "\n");
    const std::string place = folder.path.string();
    const std::string commands =
        "cd '" + place +
        "' && openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2 -keyout "
        "authority.key -out authority.pem -subj '/CN=Authority of a test' 2>log && openssl req -newkey ec "
        "-pkeyopt ec_paramgen_curve:prime256v1 -nodes -keyout server.key -out server.csr -subj '/CN=rooms' "
        "2>>log && openssl x509 -req -in server.csr -CA authority.pem -CAkey authority.key -CAcreateserial "
        "-days 2 -extfile extensions -out server.pem 2>>log";
    ASSERT_EQ(std::system(commands.c_str()), 0) << folder.Read("log");
}

// Which only its owner may read.
void WriteToken(const TemporaryFolder& folder, const std::string& text) {
    folder.Write("token", text);
    std::filesystem::permissions(folder.File("token"), std::filesystem::perms::owner_read);
}

TEST(RoomServer, SaysWhatToTypeOnTheOtherMachines) {
    RoomServerProcess server;
    ASSERT_TRUE(server.IsReady()) << server.Words();
    EXPECT_NE(server.Words().find("tools/room-service --address "), std::string::npos) << server.Words();
    EXPECT_NE(server.Words().find("without a token, whoever reaches this machine enters"), std::string::npos)
        << server.Words();
    EXPECT_NE(server.Words().find("./run --server " + server.Address() + " --room review --name one\n"),
              std::string::npos)
        << server.Words();
}

TEST(RoomServer, EndsTheServerWithItself) {
    RoomServerProcess asked, killed;
    ASSERT_TRUE(asked.IsReady() && killed.IsReady()) << asked.Words() << killed.Words();
    const pid_t first = asked.Server(), second = killed.Server();
    ASSERT_TRUE(first > 0 && second > 0);
    EXPECT_EQ(asked.End(), 143);
    EXPECT_TRUE(IsGone(first));
    killed.KillCommand();
    EXPECT_TRUE(IsGone(second));
}

TEST(RoomServer, EndsWhenTheServerDoes) {
    RoomServerProcess server;
    ASSERT_TRUE(server.IsReady()) << server.Words();
    const pid_t command = server.Command();
    server.KillServer();
    EXPECT_TRUE(IsGone(command));
}

TEST(RoomServer, SaysThatItsPortIsTaken) {
    RoomServerProcess first;
    ASSERT_TRUE(first.IsReady()) << first.Words();
    RoomServerProcess second({.port = first.Port()});
    EXPECT_FALSE(second.IsReady());
    EXPECT_EQ(second.Words().find("room-server: port " + std::to_string(first.Port()) + " is taken"), 0U)
        << second.Words();
    EXPECT_EQ(second.End(), 1);
    EXPECT_GT(first.Server(), 0);
}

TEST(RoomServer, RefusesBadArgumentsInOneLine) {
    for (const char* port : {"0", "x", "70000", "-1"}) {
        RoomServerProcess server({.arguments = {"--port", port}});
        EXPECT_FALSE(server.IsReady());
        EXPECT_EQ(server.Words(), "room-server: \"" + std::string(port) + "\" is no port\n");
        EXPECT_EQ(server.End(), 2);
    }
    RoomServerProcess unknown({.arguments = {"--nothing"}});
    EXPECT_EQ(unknown.End(), 2);
    RoomServerProcess keyless({.arguments = {"--certificate", "/nowhere"}});
    EXPECT_EQ(keyless.End(), 2);
}

TEST(RoomServer, TakesNoTokenThatIsNone) {
    const TemporaryFolder folder;
    WriteToken(folder, "within its rules");
    const std::string file = folder.File("token").string();
    RoomServerProcess blank({.arguments = {"--token-file", file}});
    EXPECT_EQ(blank.Words(),
              "room-server: the token has to be 1 to 1024 printable ASCII letters without blanks\n");
    EXPECT_EQ(blank.End(), 2);
    RoomServerProcess foreign({.token = "sesam\xC3\xB6"});
    EXPECT_EQ(foreign.Words(), blank.Words());
    RoomServerProcess endless({.token = std::string(1025, 'x')});
    EXPECT_EQ(endless.Words(), blank.Words());
    std::filesystem::permissions(folder.File("token"), std::filesystem::perms::group_read,
                                 std::filesystem::perm_options::add);
    RoomServerProcess open({.arguments = {"--token-file", file}});
    EXPECT_EQ(open.Words(),
              "room-server: the token's file \"" + file + "\" is open to others: chmod 600 it\n");
    EXPECT_EQ(open.End(), 2);
    RoomServerProcess absent({.arguments = {"--token-file", file + "-less"}});
    EXPECT_EQ(absent.End(), 2);
}

TEST(RoomServer, ClearsAwayWhatAKilledOneLeft) {
    const TemporaryFolder folder;
    const RoomServerOptions options{.temporaryFolder = folder.path.string()};
    const auto left = [&] {
        return std::distance(std::filesystem::directory_iterator(folder.path),
                             std::filesystem::directory_iterator());
    };
    {
        RoomServerProcess killed(options);
        ASSERT_TRUE(killed.IsReady()) << killed.Words();
        const pid_t server = killed.Server();
        killed.KillCommand();
        EXPECT_TRUE(IsGone(server));
    }
    EXPECT_EQ(left(), 1);
    {
        RoomServerProcess next(options), beside(options);
        ASSERT_TRUE(next.IsReady() && beside.IsReady()) << next.Words() << beside.Words();
        // Only those of two that run.
        EXPECT_EQ(left(), 2);
    }
    EXPECT_EQ(left(), 0);
}

TEST(RoomServer, KeepsItsTokenOutOfEveryProcessList) {
    const TemporaryFolder folder;
    WriteToken(folder, "never-to-be-listed \r\nsecond line");
    RoomServerProcess server({.arguments = {"--token-file", folder.File("token").string()}});
    ASSERT_TRUE(server.IsReady()) << server.Words();
    EXPECT_FALSE(IsInAProcessList("never-to-be-listed"));
    EXPECT_EQ(server.Words().find("never-to-be-listed"), std::string::npos);
    JanusOptions options{.server = {.address = server.Address(), .certificateAuthority = {}, .token = {}},
                         .room = "review",
                         .name = "one"};
    RoomMemberRig stranger(options);
    EXPECT_NE(stranger.IsRefused(), "");
    options.server.token = "never-to-be-listed";
    RoomMemberRig member(options);
    EXPECT_TRUE(member.Enters(kGrey));
}

TEST(RoomServer, IsTrustedOverASecuredConnectionByItsAuthorityAlone) {
    const TemporaryFolder folder;
    RoomServerProcess probe;
    const std::string address = probe.Address().substr(5, probe.Address().rfind(':') - 5);
    MakeCertificates(folder, address);
    RoomServerProcess server({.arguments = {"--certificate", folder.File("server.pem").string(), "--key",
                                            folder.File("server.key").string()}});
    ASSERT_TRUE(server.IsReady()) << server.Words();
    JanusOptions options{
        .server = {.address = server.Address("wss"), .certificateAuthority = {}, .token = {}},
        .room = "review",
        .name = "one"};
    // The system's authorities are read once, which under a sanitizer takes longer than a server has to
    // answer.
    g_object_unref(g_tls_backend_get_default_database(g_tls_backend_get_default()));
    RoomMemberRig distrustful(options);
    const std::string line = distrustful.IsRefused();
    EXPECT_EQ(
        line.find("The server " + options.server.address + " cannot be used, its certificate is refused: "),
        0U)
        << line;
    options.server.certificateAuthority = folder.File("authority.pem");
    RoomMemberRig one(options), two(options);
    EXPECT_TRUE(one.Enters(kGrey));
    EXPECT_TRUE(two.Enters(kGrey));
    const auto seen = two.Sees(one);
    EXPECT_TRUE(seen && Eventually([&] { return seen->pictures > 0 && seen->hasChannel; }));
    options.server.certificateAuthority = folder.File("none.pem");
    RoomMemberRig misled(options);
    EXPECT_NE(misled.IsRefused().find("none.pem\" cannot be read"), std::string::npos);
}

}  // namespace
}  // namespace Corvanta::Engine
