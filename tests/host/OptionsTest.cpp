#include "host/Options.h"

#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/TemporaryFolder.h"

namespace Corvanta::Host {
namespace {

namespace fs = std::filesystem;

std::variant<Options, Failure> Parse(std::initializer_list<std::string_view> arguments) {
    return ParseOptions(std::vector<std::string_view>(arguments));
}

Options Parsed(std::initializer_list<std::string_view> arguments) {
    const auto parsed = Parse(arguments);
    if (const auto* const failure = std::get_if<Failure>(&parsed)) {
        ADD_FAILURE() << failure->line;
        return {};
    }
    return std::get<Options>(parsed);
}

std::string FailureOf(std::initializer_list<std::string_view> arguments) {
    const auto parsed = Parse(arguments);
    const auto* const failure = std::get_if<Failure>(&parsed);
    return (failure != nullptr) ? failure->line : "";
}

TEST(Options, AskForAnOrdinaryWindowWithoutArguments) {
    const Options options = Parsed({});
    EXPECT_EQ(options.action, Options::Action::Run);
    EXPECT_TRUE(options.participants.empty());
    EXPECT_FALSE(options.headlessFor);
    EXPECT_TRUE(options.snapshotPath.empty());
    EXPECT_EQ(options.size.width, 1280);
    EXPECT_EQ(options.size.height, 720);
    EXPECT_EQ(options.scale, 1.0);
}

TEST(Options, InviteThreeGuestsIntoARoomOfTheirOwnWithoutArguments) {
    const Options options = Parsed({});
    EXPECT_EQ(options.company, Company::OfOwnRoom);
    EXPECT_EQ(options.guests, 3);
    EXPECT_EQ(options.roomName, "Room");
    EXPECT_EQ(Parsed({"--size", "640x360", "--no-drawings"}).guests, 3);
}

TEST(Options, EnterANamedRoomWithoutGuestsUnlessTheyAreAskedFor) {
    const Options options = Parsed({"--room", "Review", "--name", "Zoë"});
    EXPECT_EQ(options.company, Company::OfNamedRoom);
    EXPECT_EQ(options.roomName, "Review");
    EXPECT_EQ(options.name, "Zoë");
    EXPECT_EQ(options.guests, 0);
    EXPECT_EQ(Parsed({"--guests", "2", "--room", "Review"}).guests, 2);
    EXPECT_EQ(Parsed({"--guests", "2", "--room", "Review"}).company, Company::OfNamedRoom);
}

TEST(Options, InviteAsManyGuestsAsAreAskedFor) {
    EXPECT_EQ(Parsed({"--guests", "0"}).guests, 0);
    EXPECT_EQ(Parsed({"--guests=16"}).guests, 16);
    EXPECT_EQ(Parsed({"--guests=16"}).company, Company::OfOwnRoom);
    for (const std::string_view value : {"", "-1", "17", "many", "2.5", "99999999999"}) {
        EXPECT_NE(FailureOf({"--guests", value}).find("--guests"), std::string::npos) << value;
    }
}

TEST(Options, KeepToThisProgramWithParticipantsOfItsOwn) {
    EXPECT_EQ(Parsed({"--participants", "0"}).company, Company::OfThisProgram);
    EXPECT_EQ(Parsed({"--participants", "4"}).guests, 0);
    EXPECT_EQ(Parsed({"--participant", "one=test", "--name", "me"}).company, Company::OfThisProgram);
}

TEST(Options, RefuseParticipantsOfThisProgramWhereOthersCome) {
    EXPECT_EQ(FailureOf({"--participants", "4", "--room", "Review"}),
              "--participants and --room do not go together: participants are of this program alone");
    EXPECT_EQ(FailureOf({"--room", "Review", "--participant", "one=test"}),
              "--participant and --room do not go together: participants are of this program alone");
    EXPECT_NE(FailureOf({"--participants", "0", "--guests", "0"}).find("--guests"), std::string::npos);
    EXPECT_NE(FailureOf({"--participant", "one=test", "--server", "ws://host"}).find("--server"),
              std::string::npos);
}

TEST(Options, TakeTheServerThatCarriesTheRoom) {
    const Options options = Parsed({"--server", "wss://host:8188", "--ca", "ca.pem", "--room", "Review"});
    EXPECT_EQ(options.server, "wss://host:8188");
    EXPECT_EQ(options.certificateAuthority, "ca.pem");
    EXPECT_EQ(Parsed({"--server=ws://10.0.0.1:8188"}).guests, 3);
    for (const std::string_view value :
         {"", "ws://", "http://host", "host:8188", "ws://a b", "ws://a\n", "ws://me:secret@host",
          "ws://host/?token=secret", "ws://host/path"}) {
        EXPECT_NE(FailureOf({"--server", value}).find("--server"), std::string::npos) << value;
        EXPECT_EQ(FailureOf({"--server", value}).find("secret"), std::string::npos);
    }
    EXPECT_EQ(FailureOf({"--ca", "ca.pem"}), "--ca is for --server and --service");
    EXPECT_FALSE(FailureOf({"--ca", "", "--server", "ws://host"}).empty());
}

TEST(Options, TakeTheServiceThatKeepsTheNotes) {
    const Options options = Parsed({"--service", "https://host:8190", "--ca", "ca.pem"});
    EXPECT_EQ(options.service, "https://host:8190");
    EXPECT_EQ(options.certificateAuthority, "ca.pem");
    for (const std::string_view value : {"", "http://", "ws://host", "host:8190", "http://a b"}) {
        EXPECT_NE(FailureOf({"--service", value}).find("--service"), std::string::npos) << value;
    }
    EXPECT_NE(FailureOf({"--participants", "1", "--service", "http://host"}).find("--service"),
              std::string::npos);
}

TEST(Options, RefuseNamesThatNobodyCanShow) {
    const std::string longest(256, 'x'), tooLong(257, 'x');
    EXPECT_EQ(Parsed({"--room", longest}).roomName, longest);
    EXPECT_EQ(Parsed({"--name", longest}).name, longest);
    for (const std::string_view option : {"--room", "--name"}) {
        for (const std::string_view value :
             {std::string_view(tooLong), std::string_view(), std::string_view("a\nb"),
              std::string_view("\xff\xfe"), std::string_view("\x1b[0m")}) {
            const std::string line = FailureOf({option, value});
            EXPECT_TRUE(line.starts_with(option)) << line;
            EXPECT_LT(line.size(), 100U) << "the name itself is left out";
            EXPECT_EQ(line.find('\n'), std::string::npos);
        }
    }
}

TEST(Options, LetTheGuestsDrawUnlessTold) {
    EXPECT_TRUE(Parsed({}).drawings);
    EXPECT_FALSE(Parsed({"--no-drawings"}).drawings);
}

TEST(Options, KeepParticipantsInTheOrderGiven) {
    const Options options = Parsed({"--participant", "one=clip.mp4", "--participant", "two=test"});
    ASSERT_EQ(options.participants.size(), 2U);
    EXPECT_EQ(options.participants[0].name, "one");
    EXPECT_EQ(options.participants[0].source, "clip.mp4");
    EXPECT_EQ(options.participants[1].name, "two");
    EXPECT_EQ(options.participants[1].source, "test");
}

TEST(Options, LeaveFurtherEqualsSignsToTheSource) {
    const Options options = Parsed({"--participant=one=http://host/?a=b"});
    ASSERT_EQ(options.participants.size(), 1U);
    EXPECT_EQ(options.participants[0].source, "http://host/?a=b");
}

TEST(Options, ReadValuesBehindAnEqualsSignToo) {
    const Options options =
        Parsed({"--size=640x360", "--scale=1.5", "--headless=2.5", "--snapshot=out.png", "--room=Review"});
    EXPECT_EQ(options.size.width, 640);
    EXPECT_EQ(options.size.height, 360);
    EXPECT_EQ(options.scale, 1.5);
    EXPECT_EQ(options.headlessFor, std::chrono::milliseconds(2500));
    EXPECT_EQ(options.snapshotPath, "out.png");
    EXPECT_EQ(options.roomName, "Review");
}

TEST(Options, NeverRoundARunDownToNothing) {
    EXPECT_EQ(Parsed({"--headless", "0.0001"}).headlessFor, std::chrono::milliseconds(1));
}

TEST(Options, ShowHelpWhateverElseIsAsked) {
    EXPECT_EQ(Parsed({"--size", "640x360", "--help"}).action, Options::Action::ShowHelp);
    EXPECT_EQ(Parsed({"-h"}).action, Options::Action::ShowHelp);
    EXPECT_EQ(Parsed({"--version"}).action, Options::Action::ShowVersion);
}

TEST(Options, NameTheArgumentThatNobodyKnows) {
    EXPECT_NE(FailureOf({"--colour"}).find("'--colour'"), std::string::npos);
    EXPECT_NE(FailureOf({"clip.mp4"}).find("'clip.mp4'"), std::string::npos);
    EXPECT_FALSE(FailureOf({"--helpful"}).empty());
    EXPECT_FALSE(FailureOf({""}).empty());
}

TEST(Options, RefuseAnOptionWithoutItsValue) {
    EXPECT_EQ(FailureOf({"--size"}), "--size wants a value");
    EXPECT_FALSE(FailureOf({"--room", ""}).empty());
    EXPECT_FALSE(FailureOf({"--room="}).empty());
}

TEST(Options, RefuseParticipantsWithoutNameOrSource) {
    for (const std::string_view value : {"one", "=test", "one=", "="}) {
        EXPECT_FALSE(FailureOf({"--participant", value}).empty()) << value;
    }
}

TEST(Options, RefuseTwoParticipantsOfOneName) {
    EXPECT_EQ(FailureOf({"--participant", "one=test", "--participant", "one=clip"}),
              "two participants are called 'one'");
}

TEST(Options, TakeANumberOfGeneratedParticipants) {
    EXPECT_FALSE(Parsed({}).generatedParticipants);
    EXPECT_EQ(Parsed({"--participants", "25"}).generatedParticipants, 25);
    EXPECT_EQ(Parsed({"--participants=0"}).generatedParticipants, 0);
    EXPECT_EQ(Parsed({"--participants=100"}).generatedParticipants, 100);
    const Options options = Parsed({"--participant", "one=test", "--participants", "3"});
    EXPECT_EQ(options.participants.size(), 1U);
    EXPECT_EQ(options.generatedParticipants, 3);
}

TEST(Options, RefuseNumbersOfParticipantsThatNoRoomHas) {
    for (const std::string_view value : {"101", "-1", "many", "2.5", "", "99999999999"}) {
        EXPECT_FALSE(FailureOf({"--participants", value}).empty()) << value;
    }
}

TEST(Options, StartWithSideWindowsOnRequest) {
    EXPECT_FALSE(Parsed({}).detached);
    EXPECT_FALSE(Parsed({}).preview);
    EXPECT_EQ(Parsed({"--detached", "strip"}).detached, WallLayout::Strip);
    EXPECT_EQ(Parsed({"--detached=column"}).detached, WallLayout::Column);
    const Options options = Parsed({"--detached", "grid", "--preview", "--size", "640x360"});
    EXPECT_EQ(options.detached, WallLayout::Grid);
    EXPECT_TRUE(options.preview);
    EXPECT_EQ(options.size.width, 640);
}

TEST(Options, RefuseLayoutsThatTheWallDoesNotHave) {
    for (const std::string_view value : {"", "wide", "Grid", "0"}) {
        EXPECT_FALSE(FailureOf({"--detached", value}).empty()) << value;
    }
    EXPECT_FALSE(FailureOf({"--preview=yes"}).empty());
}

TEST(Options, HaveTheTestPictureForACameraUnlessToldOtherwise) {
    EXPECT_EQ(Parsed({}).camera, "test");
    EXPECT_EQ(Parsed({"--camera", "clip"}).camera, "clip");
    EXPECT_EQ(Parsed({"--camera=me.mp4"}).camera, "me.mp4");
    EXPECT_EQ(Parsed({"--headless", "1"}).camera, "test");
    EXPECT_EQ(Parsed({"--camera", "none"}).camera, "");
    EXPECT_FALSE(FailureOf({"--camera", ""}).empty());
    EXPECT_FALSE(FailureOf({"--camera"}).empty());
}

TEST(Options, RefuseSecondsThatAreNoTime) {
    for (const std::string_view value : {"0", "-1", "soon", "3s", "nan", "inf", "1e9", ""}) {
        EXPECT_FALSE(FailureOf({"--headless", value}).empty()) << value;
    }
}

TEST(Options, RefuseSizesThatNoWindowHas) {
    for (const std::string_view value :
         {"640", "640x", "x360", "0x0", "640x-360", "640x360x2", "99999x99999", "axb"}) {
        EXPECT_FALSE(FailureOf({"--size", value}).empty()) << value;
    }
}

TEST(Options, RefuseScalesOutOfRange) {
    for (const std::string_view value : {"0", "-1", "0.4", "4.1", "nan", "big"}) {
        EXPECT_FALSE(FailureOf({"--scale", value}).empty()) << value;
    }
}

TEST(Options, RefuseASnapshotThatIsNoPng) {
    EXPECT_FALSE(FailureOf({"--snapshot", "out.jpg"}).empty());
    EXPECT_FALSE(FailureOf({"--snapshot", ""}).empty());
}

TEST(Options, TakeWhatIsStreamedFromTheStart) {
    const Options options =
        Parsed({"--share", "screen", "--share", "file=a=b.mp4", "--share=device=Test picture"});
    ASSERT_EQ(options.shared.size(), 3U);
    EXPECT_EQ(options.shared[0].type, StreamType::Screenshare);
    EXPECT_EQ(options.shared[0].source, "");
    EXPECT_EQ(options.shared[1].type, StreamType::File);
    EXPECT_EQ(options.shared[1].source, "a=b.mp4");
    EXPECT_EQ(options.shared[2].type, StreamType::Device);
    EXPECT_EQ(options.shared[2].source, "Test picture");
}

TEST(Options, RefuseToStreamWhatIsNoSource) {
    for (const std::string_view bad : {"", "file", "file=", "screen=", "url=", "tape=a", "=a"}) {
        EXPECT_NE(FailureOf({"--share", bad}).find("--share"), std::string::npos) << bad;
    }
}

TEST(Options, KeepTheHelpNarrowEnoughForATerminal) {
    std::string_view rest = HelpText();
    while (!rest.empty()) {
        const std::size_t end = rest.find('\n');
        ASSERT_NE(end, std::string_view::npos);
        EXPECT_LE(end, 100U) << rest.substr(0, end);
        rest.remove_prefix(end + 1);
    }
}

TEST(Options, ListEveryOptionInTheHelp) {
    for (const std::string_view name :
         {"--participant", "--headless",     "--snapshot", "--size",        "--scale",
          "--room",        "--participants", "--detached", "--preview",     "--camera",
          "--share",       "--help",         "--version",  "--name",        "--guests",
          "--server",      "--service",      "--ca",       "--no-drawings", "CORVANTA_TOKEN"}) {
        EXPECT_NE(HelpText().find(name), std::string_view::npos) << name;
    }
}

TEST(ResolvedPaths, StandOnTheFolderThatThePersonIsIn) {
    const TemporaryFolder folder;
    std::ofstream(folder.Path() / "clip.mp4") << "x";
    Options options = Parsed({"--participant", "one=./clip.mp4", "--snapshot", "out.png"});
    ASSERT_FALSE(ResolvePaths(options, folder.Path()));
    EXPECT_EQ(options.participants[0].source, folder.Path() / "clip.mp4");
    EXPECT_EQ(options.snapshotPath, folder.Path() / "out.png");
}

TEST(ResolvedPaths, StandOnThatFolderForTheCameraToo) {
    const TemporaryFolder folder;
    Options missing = Parsed({"--camera", "me.mp4"});
    const auto failure = ResolvePaths(missing, folder.Path());
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->line, "no such file: " + (folder.Path() / "me.mp4").string());
    std::ofstream(folder.Path() / "me.mp4") << "x";
    Options options = Parsed({"--camera", "me.mp4"});
    ASSERT_FALSE(ResolvePaths(options, folder.Path()));
    EXPECT_EQ(options.camera, folder.Path() / "me.mp4");
    Options none = Parsed({"--camera", "none"});
    ASSERT_FALSE(ResolvePaths(none, folder.Path()));
    EXPECT_EQ(none.camera, "");
    Options itself = Parsed({"--camera", "./none"});
    EXPECT_TRUE(ResolvePaths(itself, folder.Path())) << "a file of that name";
}

TEST(ResolvedPaths, StandOnThatFolderForCertificates) {
    const TemporaryFolder folder;
    std::ofstream(folder.Path() / "ca.pem") << "x";
    Options options = Parsed({"--server", "wss://host", "--ca", "ca.pem"});
    ASSERT_FALSE(ResolvePaths(options, folder.Path()));
    EXPECT_EQ(options.certificateAuthority, folder.Path() / "ca.pem");
    Options missing = Parsed({"--server", "wss://host", "--ca", "none.pem"});
    const auto failure = ResolvePaths(missing, folder.Path());
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->line, "no such file: " + (folder.Path() / "none.pem").string());
}

TEST(ResolvedPaths, StandOnThatFolderForAFileThatIsStreamed) {
    const TemporaryFolder folder;
    std::ofstream(folder.Path() / "test").put(' ');
    Options options = Parsed({"--share", "file=test", "--share", "url=test", "--share", "screen"});
    EXPECT_FALSE(ResolvePaths(options, folder.Path()));
    EXPECT_EQ(options.shared[0].source, (folder.Path() / "test").string());
    EXPECT_EQ(options.shared[1].source, "test");
    EXPECT_EQ(options.shared[2].source, "");
    options = Parsed({"--share", "file=missing.mp4"});
    const auto failure = ResolvePaths(options, folder.Path());
    ASSERT_TRUE(failure);
    EXPECT_NE(failure->line.find("missing.mp4"), std::string::npos);
}

TEST(ResolvedPaths, LeaveGeneratedSourcesAndUrisAlone) {
    Options options = Parsed({"--participant", "one=test", "--participant", "two=clip", "--participant",
                              "three=https://host/clip.mp4"});
    ASSERT_FALSE(ResolvePaths(options, "/nowhere"));
    EXPECT_EQ(options.participants[0].source, "test");
    EXPECT_EQ(options.participants[1].source, "clip");
    EXPECT_EQ(options.participants[2].source, "https://host/clip.mp4");
}

TEST(ResolvedPaths, NameTheFileThatIsNotThere) {
    const TemporaryFolder folder;
    Options options = Parsed({"--participant", "one=missing.mp4"});
    const auto failure = ResolvePaths(options, folder.Path());
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->line, "no such file: " + (folder.Path() / "missing.mp4").string());
}

TEST(ResolvedPaths, RefuseAFolderAsAVideo) {
    const TemporaryFolder folder;
    Options options = Parsed({"--participant", "one=."});
    EXPECT_TRUE(ResolvePaths(options, folder.Path()));
}

TEST(ResolvedPaths, RefuseASnapshotWhereNoFileCanBe) {
    const TemporaryFolder folder;
    fs::create_directory(folder.Path() / "folder.png");
    Options inMissingFolder = Parsed({"--snapshot", "missing/out.png"});
    EXPECT_TRUE(ResolvePaths(inMissingFolder, folder.Path()));
    Options onFolder = Parsed({"--snapshot", "folder.png"});
    EXPECT_TRUE(ResolvePaths(onFolder, folder.Path()));
}

}  // namespace
}  // namespace Corvanta::Host
