#include "engine/signalling/RoomFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "tests/engine/TemporaryFolder.h"

namespace Corvanta::Engine {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

// An environment variable as it is to be for a test, and as it was after it.
class Variable final {
public:
    explicit Variable(const char* variable) : name(variable) {
        if (const char* const value = std::getenv(variable)) before = value;
    }
    ~Variable() { before ? ::setenv(name, before->c_str(), 1) : ::unsetenv(name); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

    void Set(const std::string& value) const { ::setenv(name, value.c_str(), 1); }
    void Unset() const { ::unsetenv(name); }

private:
    const char* const name;
    std::optional<std::string> before;
};

class Mask final {
public:
    explicit Mask(mode_t mask) : before(::umask(mask)) {}
    ~Mask() { ::umask(before); }
    Mask(const Mask&) = delete;
    Mask& operator=(const Mask&) = delete;

private:
    const mode_t before;
};

mode_t ModeOf(const std::filesystem::path& path) {
    struct stat found {};
    return ::lstat(path.c_str(), &found) == 0 ? found.st_mode & 07777U : 0;
}

class RoomFolderTest : public ::testing::Test {
protected:
    TemporaryFolder temporary;
    Variable runtime{"XDG_RUNTIME_DIR"};
    Variable tmp{"TMPDIR"};
};

TEST_F(RoomFolderTest, LiesInTheRuntimeFolder) {
    runtime.Set(temporary.path);
    const RoomFolder folder = UserRoomFolder("review");
    EXPECT_EQ(folder.path.parent_path(), temporary.path / "corvanta" / "rooms");
    EXPECT_EQ(folder.socket.parent_path(), folder.path);
    EXPECT_EQ(folder.lock.parent_path(), folder.path);
    EXPECT_FALSE(std::filesystem::exists(temporary.path / "corvanta"));
    EXPECT_EQ(PrepareRoomFolder(folder), std::nullopt);
    EXPECT_TRUE(std::filesystem::is_directory(folder.path));
}

TEST_F(RoomFolderTest, LiesInAFolderOfTheUserWithoutARuntimeFolder) {
    runtime.Unset();
    tmp.Set(temporary.path);
    const RoomFolder folder = UserRoomFolder("review");
    const auto own = temporary.path / ("corvanta-" + std::to_string(::getuid()));
    EXPECT_EQ(folder.path.parent_path(), own / "rooms");
    EXPECT_EQ(PrepareRoomFolder(folder), std::nullopt);
    EXPECT_EQ(ModeOf(own), 0700U);
}

TEST_F(RoomFolderTest, IsPrivateWhateverTheMask) {
    for (const mode_t mask : {0000U, 0022U, 0777U}) {
        const Mask set(mask);
        const RoomFolder folder = RoomFolderIn(temporary.path / std::to_string(mask), "review");
        EXPECT_EQ(PrepareRoomFolder(folder), std::nullopt);
        EXPECT_EQ(ModeOf(folder.path), 0700U);
        EXPECT_EQ(ModeOf(folder.path.parent_path()), 0700U);
        EXPECT_EQ(ModeOf(folder.path.parent_path().parent_path()), 0700U);
        EXPECT_EQ(PrepareRoomFolder(folder), std::nullopt);
        // Kept by others than the user when the mask is none.
        const HubLock lock(folder.lock);
        EXPECT_TRUE(lock.IsHeld());
        EXPECT_EQ(ModeOf(folder.lock) & 0177U, 0U);
    }
}

TEST_F(RoomFolderTest, HasANameOfItsOwnForEachRoom) {
    std::set<std::filesystem::path> paths;
    for (const std::string& room :
         {std::string(), std::string("review"), std::string("Review"), std::string("../.."),
          std::string("a/b"), std::string("a\0b", 3), std::string("\xFF"), std::string("\xC3\xA4"),
          std::string(100'000, 'x')}) {
        const RoomFolder folder = RoomFolderIn("/run/corvanta", room);
        EXPECT_EQ(folder.path, RoomFolderIn("/run/corvanta", room).path);
        EXPECT_EQ(folder.path.parent_path(), "/run/corvanta/rooms");
        EXPECT_LE(folder.path.filename().native().size(), 64U);
        paths.insert(folder.path);
    }
    EXPECT_EQ(paths.size(), 9U);
}

TEST_F(RoomFolderTest, IsRefusedWhereOthersCanEnter) {
    const RoomFolder folder = RoomFolderIn(temporary.path, "review");
    ASSERT_EQ(PrepareRoomFolder(folder), std::nullopt);
    for (const auto& path : {folder.path, folder.path.parent_path(), temporary.path}) {
        std::filesystem::permissions(path, std::filesystem::perms::group_exec,
                                     std::filesystem::perm_options::add);
        const auto complaint = PrepareRoomFolder(folder);
        ASSERT_TRUE(complaint) << path;
        EXPECT_THAT(*complaint, HasSubstr(path.string()));
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        EXPECT_EQ(PrepareRoomFolder(folder), std::nullopt);
    }
}

TEST_F(RoomFolderTest, IsRefusedBehindALink) {
    std::filesystem::create_directory(temporary.path / "elsewhere");
    std::filesystem::permissions(temporary.path / "elsewhere", std::filesystem::perms::owner_all);
    std::filesystem::create_directory_symlink(temporary.path / "elsewhere", temporary.path / "link");
    EXPECT_TRUE(PrepareRoomFolder(RoomFolderIn(temporary.path / "link", "review")));
}

TEST_F(RoomFolderTest, ThatCannotBeMadeGivesOneLine) {
    temporary.Write("rooms", "no folder");
    for (const RoomFolder& folder :
         {RoomFolderIn(temporary.path, "review"), RoomFolderIn("/nowhere/at/all", "review"),
          RoomFolderIn(temporary.path / std::string(100, 'x'), "review")}) {
        const auto complaint = PrepareRoomFolder(folder);
        ASSERT_TRUE(complaint);
        EXPECT_THAT(*complaint, StartsWith("No room can be opened: "));
        EXPECT_EQ(complaint->find('\n'), std::string::npos);
    }
}

TEST_F(RoomFolderTest, HasOneHolderAtATime) {
    const auto path = temporary.File("hub.lock");
    auto first = std::make_unique<HubLock>(path);
    EXPECT_TRUE(first->IsHeld());
    EXPECT_FALSE(HubLock(path).IsHeld());
    EXPECT_EQ(HubLock(path).Error(), 0);
    first.reset();
    EXPECT_TRUE(HubLock(path).IsHeld());
}

TEST_F(RoomFolderTest, HasNoHolderThroughALink) {
    temporary.Write("elsewhere", "");
    std::filesystem::create_symlink(temporary.File("elsewhere"), temporary.File("hub.lock"));
    const HubLock lock(temporary.File("hub.lock"));
    EXPECT_FALSE(lock.IsHeld());
    EXPECT_NE(lock.Error(), 0);
    EXPECT_NE(HubLock(temporary.path / "missing" / "hub.lock").Error(), 0);
}

}  // namespace
}  // namespace Corvanta::Engine
