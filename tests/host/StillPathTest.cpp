#include "host/StillPath.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/TemporaryFolder.h"

namespace Corvanta::Host {
namespace {

namespace fs = std::filesystem;
using std::chrono::day;
using std::chrono::November;
using std::chrono::year;

constexpr std::chrono::year_month_day kDay = year(2026) / November / day(2);

fs::path Write(const fs::path& path, const std::string& text) {
    std::ofstream(path) << text;
    return path;
}

std::string Read(const fs::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

fs::path Kept(const fs::path& written, const fs::path& folder) {
    const auto kept = KeepStill(written, folder, "Room", kDay);
    if (const auto* const failure = std::get_if<Failure>(&kept)) {
        ADD_FAILURE() << failure->line;
        return {};
    }
    return std::get<fs::path>(kept);
}

TEST(StillName, HoldsTheRoomTheDateAndANumber) {
    EXPECT_EQ(StillName("Review", kDay, 7, ".png"), "Review 2026-11-02 7.png");
}

TEST(StillName, LeavesOutWhatAFileNameMayNotHold) {
    EXPECT_EQ(StillName("../a/b\\c:d*\n", kDay, 1, ".png"), "abcd 2026-11-02 1.png");
    EXPECT_EQ(StillName(" .hidden ", kDay, 1, ".png"), "hidden 2026-11-02 1.png");
    EXPECT_EQ(StillName("a.b", kDay, 1, ".png"), "a.b 2026-11-02 1.png");
    for (const char* const nameless : {"", "///", " . "}) {
        EXPECT_EQ(StillName(nameless, kDay, 1, ".png"), "Room 2026-11-02 1.png") << nameless;
    }
}

TEST(StillName, CutsALongNameBetweenLetters) {
    std::string longName = "a";
    for (int i = 0; i < 200; ++i) longName += "\xC3\xB6";
    const std::string name = StillName(longName, kDay, 1, ".png");
    EXPECT_LT(name.size(), 130U);
    const std::string cut = name.substr(0, name.find(' '));
    EXPECT_EQ(cut.size() % 2, 1U);
    EXPECT_EQ(cut, longName.substr(0, cut.size()));
}

TEST(KeptStill, GoesIntoAFolderThatIsMadeForIt) {
    const TemporaryFolder folder;
    const fs::path written = Write(folder.Path() / "still.png", "picture");
    const fs::path kept = Kept(written, folder.Path() / "a" / "b");
    EXPECT_EQ(kept, folder.Path() / "a" / "b" / "Room 2026-11-02 1.png");
    EXPECT_EQ(Read(kept), "picture");
    EXPECT_FALSE(fs::exists(written));
}

TEST(KeptStill, NeverTakesThePlaceOfAnotherFile) {
    const TemporaryFolder folder;
    Write(folder.Path() / "Room 2026-11-02 1.png", "first");
    // A link to nothing holds its name as well.
    fs::create_symlink("nowhere", folder.Path() / "Room 2026-11-02 2.png");
    const fs::path kept = Kept(Write(folder.Path() / "still.png", "third"), folder.Path());
    EXPECT_EQ(kept.filename(), "Room 2026-11-02 3.png");
    EXPECT_EQ(Read(kept), "third");
    EXPECT_EQ(Read(folder.Path() / "Room 2026-11-02 1.png"), "first");
    EXPECT_FALSE(fs::exists(folder.Path() / "nowhere"));
}

TEST(KeptStill, TakesNumbersOfItsOwnOnEveryThread) {
    constexpr int kThreads = 8;
    const TemporaryFolder folder;
    std::vector<fs::path> kept(kThreads);
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < kThreads; ++i) {
            const fs::path written = Write(folder.Path() / ("still" + std::to_string(i)), std::to_string(i));
            threads.emplace_back([&folder, written, &place = kept[static_cast<std::size_t>(i)]] {
                place = Kept(written, folder.Path());
            });
        }
    }
    EXPECT_EQ(std::set(kept.begin(), kept.end()).size(), static_cast<std::size_t>(kThreads));
    for (int i = 0; i < kThreads; ++i) EXPECT_EQ(Read(kept[static_cast<std::size_t>(i)]), std::to_string(i));
}

TEST(KeptStill, GetsTheEndingOfAPictureWhenItHasNone) {
    const TemporaryFolder folder;
    EXPECT_EQ(Kept(Write(folder.Path() / "exported", ""), folder.Path()).extension(), ".png");
}

TEST(KeptStill, ComesFromAnotherFileSystemToo) {
    ASSERT_TRUE(fs::is_directory("/dev/shm")) << "no second file system";
    const TemporaryFolder folder;
    std::string name = "/dev/shm/corvanta-still-XXXXXX";
    const fs::path other = ::mkdtemp(name.data());
    Write(folder.Path() / "Room 2026-11-02 1.png", "first");
    const fs::path written = Write(other / "still.png", "second");
    const fs::path kept = Kept(written, folder.Path());
    EXPECT_EQ(Read(kept), "second");
    EXPECT_EQ(kept.filename(), "Room 2026-11-02 2.png");
    EXPECT_EQ(Read(folder.Path() / "Room 2026-11-02 1.png"), "first");
    EXPECT_FALSE(fs::exists(written));
    fs::remove_all(other);
}

TEST(KeptStill, StaysWhereItIsWhenItCannotBeMoved) {
    const TemporaryFolder folder;
    const fs::path written = Write(folder.Path() / "still.png", "picture");
    const fs::path noFolder = Write(folder.Path() / "file", "");
    for (const auto& kept :
         {KeepStill(written, noFolder, "Room", kDay), KeepStill(written, "/proc", "Room", kDay)}) {
        const auto* const failure = std::get_if<Failure>(&kept);
        ASSERT_NE(failure, nullptr);
        EXPECT_EQ(failure->line.find('\n'), std::string::npos);
        EXPECT_NE(failure->line.find("cannot be kept"), std::string::npos);
    }
    EXPECT_EQ(Read(written), "picture");
    const auto missing = KeepStill(folder.Path() / "missing.png", folder.Path(), "Room", kDay);
    EXPECT_TRUE(std::holds_alternative<Failure>(missing));
}

}  // namespace
}  // namespace Corvanta::Host
