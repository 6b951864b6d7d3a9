// Sources that cannot be played: those that Configure refuses, and those whose participant shows no picture.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <ostream>
#include <sstream>
#include <string>

#include "engine/Engine.h"
#include "tests/engine/ClipFile.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/RoomVisitor.h"

namespace Corvanta::Engine {
namespace {

std::optional<std::string> Check(const TemporaryFolder& folder, const std::string& source) {
    EngineOptions options;
    options.participants = {{"one", "test"}, {"two", source}};
    options.configurationFolder = folder.path;
    return Configure(options);
}

void Replace(const std::filesystem::path& path, const std::string& from, const std::string& to) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    std::string text = content.str();
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + 1)) {
        text.replace(at, from.size(), to);
    }
    std::ofstream(path, std::ios::binary) << text;
}

TEST(Configure, AcceptsGeneratedSourcesFilesAndUris) {
    const TemporaryFolder folder;
    const auto path = MakeClip(folder, "clip.mp4", "-c:v libx264 -pix_fmt yuv420p");
    EXPECT_EQ(Check(folder, "test"), std::nullopt);
    EXPECT_EQ(Check(folder, "clip"), std::nullopt);
    EXPECT_EQ(Check(folder, path.string()), std::nullopt);
    EXPECT_EQ(Check(folder, "file://" + path.string()), std::nullopt);
    EXPECT_EQ(Check(folder, "http://localhost:1/clip.mp4"), std::nullopt) << "a network is not asked";
}

TEST(Configure, NamesTheFileThatDoesNotExist) {
    const TemporaryFolder folder;
    const auto path = folder.File("missing.mp4").string();
    EXPECT_EQ(Check(folder, path), "Participant \"two\": the file " + path + " does not exist");
    EXPECT_EQ(Check(folder, "file://" + path), "Participant \"two\": the file " + path + " does not exist");
    const auto folderProblem = Check(folder, folder.path.string());
    ASSERT_TRUE(folderProblem.has_value());
    EXPECT_NE(folderProblem->find("is a folder"), std::string::npos);
}

// While it lives, the process is no longer the system's own user, who may read everything.
class OrdinaryUser final {
public:
    OrdinaryUser() {
        if (::geteuid() != 0) return;
        dropped_ = ::setresuid(kNobody, kNobody, 0) == 0;
        EXPECT_TRUE(dropped_);
    }
    ~OrdinaryUser() {
        if (!dropped_) return;
        EXPECT_EQ(::setresuid(0, 0, 0), 0);
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    static constexpr uid_t kNobody = 65534;

    bool dropped_ = false;
};

TEST(Configure, NamesTheFileThatMayNotBeRead) {
    namespace fs = std::filesystem;
    const TemporaryFolder folder;
    fs::permissions(folder.path, fs::perms::owner_all | fs::perms::group_exec | fs::perms::others_exec);
    folder.Write("secret.mp4", "x");
    fs::permissions(folder.File("secret.mp4"), fs::perms::none);
    const auto problem = [&] {
        const OrdinaryUser user;
        return Check(folder, folder.File("secret.mp4").string());
    }();
    ASSERT_TRUE(problem.has_value());
    EXPECT_NE(problem->find("may not be read"), std::string::npos) << *problem;
}

TEST(Configure, NamesTheDecoderThatIsMissing) {
    const TemporaryFolder folder;
    const auto path = MakeClip(folder, "clip.mp4", "-c:v libx264 -pix_fmt yuv420p");
    // A codec that nobody has.
    Replace(path, "avc1", "zzz1");
    const auto problem = Check(folder, path.string());
    ASSERT_TRUE(problem.has_value());
    EXPECT_NE(problem->find(path.string()), std::string::npos) << *problem;
    EXPECT_NE(problem->find("zzz1 decoder"), std::string::npos) << *problem;
    EXPECT_EQ(problem->find('\n'), std::string::npos) << "one line";
}

TEST(Configure, NamesTheSchemeThatNothingCanRead) {
    const TemporaryFolder folder;
    const auto problem = Check(folder, "nosuchscheme://somewhere");
    ASSERT_TRUE(problem.has_value());
    EXPECT_NE(problem->find("nosuchscheme"), std::string::npos);
    EXPECT_TRUE(Check(folder, "").has_value());
}

TEST(Configure, KeepsTheOldOptionsWhenItRefusesNewOnes) {
    RoomVisitor visitor;
    visitor.Enter({{"kept", "test"}});
    RoomVisitor::Leave();
    const TemporaryFolder folder;
    EXPECT_TRUE(Check(folder, folder.File("missing.mp4").string()).has_value());
}

struct BadClip {
    const char* name;
    // What the log says beside the participant's name.
    const char* reason;
    void (*make)(const TemporaryFolder& folder);
};

void PrintTo(const BadClip& clip, std::ostream* stream) {
    *stream << clip.name;
}

constexpr const char* kBadFile = "bad.mp4";

class BadFile : public testing::TestWithParam<BadClip> {};

TEST_P(BadFile, ShowsNoPictureTheLogSaysWhyAndTheRoomGoesOn) {
    const TemporaryFolder folder;
    GetParam().make(folder);
    RoomVisitor visitor;
    EXPECT_NE(visitor.Enter({{"bad", folder.File(kBadFile).string()}, {"good", "test"}}), -1);
    EXPECT_TRUE(visitor.WaitForFrames(1, 5));
    EXPECT_TRUE(WaitForPictures(kPatience));
    EXPECT_EQ(GetRoomStatus().participants, 2U);
    EXPECT_EQ(GetRoomStatus().showing, 1U);
    EXPECT_EQ(GetRoomStatus().withoutPicture, 1U);
    EXPECT_EQ(visitor.Frames(0), 0U);
    EXPECT_TRUE(visitor.WaitForLog("\"bad\" shows no picture"));
    EXPECT_TRUE(visitor.WaitForLog(GetParam().reason)) << visitor.Log();
    // The participant is there all the same.
    EXPECT_EQ(visitor.StreamId(0), "participant-1-bad");
    EXPECT_TRUE(visitor.WaitForFrames(1, visitor.Frames(1) + 5));
}

INSTANTIATE_TEST_SUITE_P(
    Files, BadFile,
    testing::Values(BadClip{"Text", "determine type",
                            [](const TemporaryFolder& folder) {
                                folder.Write(
                                    kBadFile,
                                    "This is a text, and no film at all, however long one looks at it.\n");
                            }},
                    BadClip{"Empty", "no data",
                            [](const TemporaryFolder& folder) { folder.Write(kBadFile, ""); }},
                    BadClip{"Noise", "determine type",
                            [](const TemporaryFolder& folder) {
                                std::string noise;
                                uint32_t state = 1;
                                for (int index = 0; index < 100000; ++index) {
                                    state = state * 1664525U + 1013904223U;
                                    noise.push_back(static_cast<char>(state >> 24U));
                                }
                                folder.Write(kBadFile, noise);
                            }},
                    BadClip{"TruncatedBeforeItsIndex", "shows no picture",
                            [](const TemporaryFolder& folder) {
                                const auto path = MakeClip(folder, kBadFile, "-c:v libx264 -pix_fmt yuv420p");
                                std::filesystem::resize_file(path, std::filesystem::file_size(path) / 2);
                            }},
                    BadClip{"SoundAlone", "no video",
                            [](const TemporaryFolder& folder) {
                                MakeClip(folder, kBadFile, "-c:a aac", "-f lavfi -i sine=f=440:d=1");
                            }},
                    BadClip{"EndsBeforeItsFirstPicture", "shows no picture",
                            [](const TemporaryFolder& folder) {
                                const auto path = MakeClip(
                                    folder, kBadFile, "-c:v libx264 -pix_fmt yuv420p -movflags +faststart");
                                std::ostringstream content;
                                content << std::ifstream(path, std::ios::binary).rdbuf();
                                std::filesystem::resize_file(path, content.str().find("mdat") + 8);
                            }}),
    [](const auto& testCase) { return testCase.param.name; });

TEST(TruncatedFile, IsPlayedAsFarAsItGoes) {
    const TemporaryFolder folder;
    const auto path = MakeClip(folder, "clip.mkv", "-c:v libx264 -g 10 -pix_fmt yuv420p",
                               "-f lavfi -i testsrc2=s=320x180:r=30:d=2");
    std::filesystem::resize_file(path, std::filesystem::file_size(path) / 2);
    RoomVisitor visitor;
    visitor.Enter({{"one", path.string()}});
    EXPECT_TRUE(visitor.WaitForFrames(0, 90)) << visitor.Log();
}

TEST(LostSource, IsTriedAgainAndItsConnectionReportedLostOnce) {
    RoomVisitor visitor;
    std::atomic<int> losses = 0;
    std::atomic<int> returns = 0;
    // A port of this machine that nobody listens on.
    visitor.Enter({{"far", "http://127.0.0.1:9/clip.mp4"}, {"good", "test"}});
    MediaManager_SetOnConnectionStatusUpdateSDLCallback([&](const std::string& id, bool lost) {
        EXPECT_EQ(id, "participant-1-far");
        ++(lost ? losses : returns);
    });
    EXPECT_TRUE(visitor.WaitForLog("\"far\" shows no picture"));
    EXPECT_TRUE(visitor.WaitForFrames(1, 45));
    EXPECT_LE(losses, 1);
    EXPECT_EQ(returns, 0);
}

}  // namespace
}  // namespace Corvanta::Engine
