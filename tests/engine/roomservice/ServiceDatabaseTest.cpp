// What the service's database keeps: from former versions, over the death of its process, and on a machine in
// trouble.
#include "engine/roomservice/ServiceDatabase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "engine/roomservice/ConnectivityLog.h"
#include "engine/roomservice/RoomService.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/TemporaryFolder.h"
#include "tests/engine/roomservice/ServiceProcess.h"
#include "tests/engine/roomservice/ServingThread.h"

namespace Corvanta::Engine {
namespace {

// As the first version made it, with one report.
constexpr const char* kFirstVersion =
    "PRAGMA journal_mode=WAL;"
    "CREATE TABLE connectivity("
    "  number INTEGER PRIMARY KEY AUTOINCREMENT, session TEXT NOT NULL, stream TEXT NOT NULL,"
    "  report TEXT NOT NULL, UNIQUE(session, stream) ON CONFLICT REPLACE);"
    "PRAGMA application_id=1129469523;"
    "PRAGMA user_version=1;"
    "INSERT INTO connectivity(session, stream, report) VALUES('session', 'you', 'the report');";

void RunSql(const std::filesystem::path& file, const std::string& sql) {
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(database);
    sqlite3_close(database);
}

class ServiceDatabaseTest : public ::testing::Test {
protected:
    ServiceDatabaseTest() : place(RoomServiceIn(folder.path)) {
        std::filesystem::permissions(folder.path, std::filesystem::perms::owner_all);
    }

    [[nodiscard]] NotesClient Notes(const std::string& room) const {
        return {{.socket = place.socket}, room};
    }
    [[nodiscard]] unsigned Status(const std::string& method, const std::string& target,
                                  const std::string& body = {}) const {
        return StatusOf(SendRequest(place.socket, {method, target, body}));
    }

    TemporaryFolder folder;
    RoomServicePlace place;
};

TEST_F(ServiceDatabaseTest, BringsTheFirstVersionsFileToTheNewFormWithAllItHolds) {
    RunSql(place.database, kFirstVersion);
    RoomService service(place);
    service.Start();
    EXPECT_EQ(Status("GET", "/connectivity?session=session&stream=you"), 200U);
    EXPECT_EQ(Notes("review").Put(0, "notes"), 200U);
    service.Stop();
    EXPECT_FALSE(std::filesystem::exists(folder.File("room-service.sqlite.unreadable")));
    // And once more.
    RoomService again(place);
    again.Start();
    EXPECT_EQ(Notes("review").Get()->text, "notes");
    EXPECT_EQ(Status("GET", "/connectivity?session=session&stream=you"), 200U);
}

TEST_F(ServiceDatabaseTest, TakesOverTheFileOfTheFormerPlace) {
    place.formerDatabase = folder.File("former.sqlite");
    place.database = folder.path / "lasting" / "room-service.sqlite";
    RunSql(place.formerDatabase, kFirstVersion);
    {
        RoomService service(place);
        service.Start();
        EXPECT_EQ(Status("GET", "/connectivity?session=session&stream=you"), 200U);
        EXPECT_EQ(Notes("review").Put(0, "notes"), 200U);
    }
    EXPECT_FALSE(std::filesystem::exists(place.formerDatabase));
    // What comes there later is none of this one's.
    RunSql(place.formerDatabase, kFirstVersion);
    RoomService service(place);
    service.Start();
    EXPECT_EQ(Notes("review").Get()->text, "notes");
    struct stat found {};
    ASSERT_EQ(::stat(place.database.c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 0777U, 0600U);
}

TEST_F(ServiceDatabaseTest, ServesFromTheFormerPlaceUntilThatCanBeTakenOver) {
    place.formerDatabase = folder.File("former.sqlite");
    place.database = folder.path / "lasting" / "room-service.sqlite";
    RunSql(place.formerDatabase, kFirstVersion);
    // In the way of the copy.
    std::filesystem::create_directories(folder.path / "lasting" / "room-service.sqlite.new" / "a");
    {
        RoomService service(place);
        service.Start();
        EXPECT_EQ(Status("GET", "/connectivity?session=session&stream=you"), 200U);
        EXPECT_EQ(Notes("review").Put(0, "meanwhile"), 200U);
    }
    EXPECT_FALSE(std::filesystem::exists(place.database));
    std::filesystem::remove_all(folder.path / "lasting" / "room-service.sqlite.new");
    RoomService service(place);
    service.Start();
    EXPECT_EQ(Notes("review").Get()->text, "meanwhile");
    EXPECT_EQ(Status("GET", "/connectivity?session=session&stream=you"), 200U);
    EXPECT_TRUE(std::filesystem::exists(place.database));
    EXPECT_FALSE(std::filesystem::exists(place.formerDatabase));
}

TEST_F(ServiceDatabaseTest, KeepsEveryFileAsideThatItCannotRead) {
    for (const std::string& content :
         {std::string(5000, 'a'), std::string(5000, 'b'), std::string(5000, 'c')}) {
        folder.Write("room-service.sqlite", content);
        EXPECT_NE(ServiceDatabase::Open(place.database), nullptr);
    }
    for (const auto& [suffix, letter] : {std::pair{"", 'a'}, std::pair{"-2", 'b'}, std::pair{"-3", 'c'}}) {
        const std::string name = std::string("room-service.sqlite.unreadable") + suffix;
        EXPECT_EQ(folder.Read(name), std::string(5000, letter));
    }
}

TEST_F(ServiceDatabaseTest, TakesTheNextRequestAfterOneThatFailedHalfway) {
    const auto database = ServiceDatabase::Open(place.database);
    ASSERT_NE(database, nullptr);
    const auto add = [&](const char* room) {
        Statement statement(*database, "INSERT INTO notes(room, revision, text) VALUES(?1, 1, '')");
        return statement.BindBytes(1, room).Step() == SQLITE_DONE;
    };
    EXPECT_THROW(static_cast<void>(database->Write([&]() -> bool {
                     EXPECT_TRUE(add("lost"));
                     throw std::runtime_error("no memory");
                 })),
                 std::runtime_error);
    EXPECT_TRUE(database->Write([&] { return add("kept"); }));
    Statement count(*database, "SELECT COUNT(*) FROM notes");
    ASSERT_EQ(count.Step(), SQLITE_ROW);
    EXPECT_EQ(count.Number(0), 1);
}

TEST_F(ServiceDatabaseTest, AnswersWith500WhileAnotherProgramHasTheFileLocked) {
    RoomService service(place);
    service.Start();
    EXPECT_EQ(Notes("review").Put(0, "before"), 200U);
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(place.database.c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    EXPECT_EQ(Notes("review").Put(1, "locked"), 500U);
    EXPECT_EQ(Notes("review").Get()->text, "before") << "it can be read";
    EXPECT_EQ(sqlite3_close(other), SQLITE_OK);
    EXPECT_EQ(Notes("review").Put(1, "after"), 200U);
}

TEST_F(ServiceDatabaseTest, LeavesTheFileOfANewerVersionAlone) {
    RunSql(place.database, std::string(kFirstVersion) + "PRAGMA user_version=99; CREATE TABLE future(a);");
    {
        RoomService service(place);
        service.Start();
        EXPECT_TRUE(service.IsServing());
        EXPECT_EQ(Status("GET", "/notes?room=review"), 500U);
    }
    EXPECT_FALSE(std::filesystem::exists(folder.File("room-service.sqlite.unreadable")));
    RunSql(place.database, "SELECT * FROM future");
}

TEST_F(ServiceDatabaseTest, AnswersWith500WhereNothingCanBeWrittenAndGoesOnWhenItCan) {
    // No folder, but a file in its place.
    folder.Write("blocked", "file");
    place.database = folder.path / "blocked" / "room-service.sqlite";
    RoomService service(place);
    service.Start();
    EXPECT_TRUE(service.IsServing());
    EXPECT_EQ(Status("GET", "/notes?room=review"), 500U);
    EXPECT_EQ(Notes("review").Put(0, "lost"), 500U);
    EXPECT_EQ(Status("GET", "/nothing"), 404U);
    std::filesystem::remove(folder.File("blocked"));
    std::filesystem::create_directory(folder.File("blocked"));
    EXPECT_TRUE(Eventually([&] { return Status("GET", "/notes?room=review") == 200U; }));
    EXPECT_EQ(Notes("review").Put(0, "kept"), 200U);
}

TEST_F(ServiceDatabaseTest, AnswersWith500OnAFullDiskAndKeepsWhatItHas) {
    const ServiceProcess serving({CORVANTA_ROOM_SERVICE_PROCESS, folder.path.string(), "600000"});
    ASSERT_TRUE(Eventually([&] { return Notes("review").Get().has_value(); }));
    const std::string text(100'000, 'x');
    std::int64_t revision = 0;
    unsigned status = 200;
    while (status == 200 && revision < 50) {
        status = Notes("room " + std::to_string(revision)).Put(0, text);
        if (status == 200) ++revision;
    }
    EXPECT_EQ(status, 500U);
    EXPECT_GT(revision, 0);
    EXPECT_EQ(Notes("room 0").Get()->text, text);
    EXPECT_EQ(Notes("room 0").Put(7, "conflict"), 409U);
}

// What was answered is there, and whatever is there is whole.
TEST_F(ServiceDatabaseTest, KeepsEveryAnsweredWriteWhenItsProcessIsKilledAmongMany) {
    constexpr int kClients = 4;
    std::array<std::atomic<std::int64_t>, kClients> answered{};
    const auto textOf = [](int client, std::int64_t revision) {
        return std::to_string(client) + " " + std::to_string(revision) + std::string(2000, 'x');
    };
    for (int round = 0; round < 3; ++round) {
        ServiceProcess serving({CORVANTA_ROOM_SERVICE_PROCESS, folder.path.string()});
        ASSERT_TRUE(Eventually([&] { return Notes("review").Get().has_value(); }));
        std::atomic<int> writes = 0;
        std::vector<std::thread> clients;
        for (int client = 0; client < kClients; ++client) {
            clients.emplace_back([&, client] {
                const NotesClient notes = Notes(std::to_string(client));
                auto there = notes.Get();
                ASSERT_TRUE(there.has_value());
                std::int64_t revision = there->revision;
                while (notes.Put(revision, textOf(client, revision + 1)) == 200U) {
                    answered[static_cast<std::size_t>(client)] = ++revision;
                    ++writes;
                }
            });
        }
        EXPECT_TRUE(Eventually([&] { return writes > 150; }));
        serving.Kill();
        for (std::thread& client : clients) client.join();
        RoomService heir(place);
        heir.Start();
        ASSERT_TRUE(Eventually([&] { return heir.IsServing(); }));
        for (int client = 0; client < kClients; ++client) {
            const auto notes = Notes(std::to_string(client)).Get();
            ASSERT_TRUE(notes.has_value());
            const std::int64_t last = answered[static_cast<std::size_t>(client)];
            // The last one may have been written and not answered.
            EXPECT_TRUE(notes->revision == last || notes->revision == last + 1)
                << notes->revision << " " << last;
            EXPECT_EQ(notes->text, textOf(client, notes->revision));
        }
    }
}

}  // namespace
}  // namespace Corvanta::Engine
