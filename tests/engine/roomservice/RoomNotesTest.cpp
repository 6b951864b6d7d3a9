// The notes as an open room has them: what is written here goes to the service, what others write comes from
// it, and nothing is lost between.
#include "engine/roomservice/RoomNotes.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "engine/Engine.h"
#include "engine/configuration/ConfigurationStore.h"
#include "engine/roomservice/NotesTable.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/TemporaryFolder.h"
#include "tests/engine/roomservice/ServingThread.h"

namespace Corvanta::Engine {
namespace {

// A room's notes with a client of their own, from opening to closing.
class Writer final {
public:
    explicit Writer(const std::filesystem::path& socket, const std::string& room = "review")
        : client({.socket = socket}), notes(client, room, [this](const std::string& text) {
              const std::lock_guard lock(mutex);
              told.push_back(text);
          }) {
        notes.Start();
        client.Start();
    }
    ~Writer() { Close(); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    void Close() {
        if (std::exchange(isClosed, true)) return;
        client.Stop();
        notes.Stop();
    }
    void Write(const std::string& text) { EXPECT_TRUE(notes.Set(text, notes.Text())); }
    [[nodiscard]] bool Has(const std::string& text) {
        return Eventually([&] { return notes.Text() == text; });
    }
    [[nodiscard]] bool Becomes(NotesStatus status) {
        return Eventually([&] { return notes.Status() == status; });
    }
    [[nodiscard]] std::vector<std::string> Told() {
        const std::lock_guard lock(mutex);
        return told;
    }

private:
    RoomServiceClient client;
    std::mutex mutex;  // guards: told
    std::vector<std::string> told;
    bool isClosed = false;

public:
    RoomNotes notes;
};

class RoomNotesTest : public ::testing::Test {
protected:
    RoomNotesTest() : socket(folder.File("socket")) {
        ConfigurationStore::Get().Open(folder.path / "configuration");
        Serve();
    }
    ~RoomNotesTest() override { ConfigurationStore::Get().Open(folder.path / "unused"); }

    void Serve() {
        serving = std::make_unique<ServingThread>(
            RoomServer::Options{.socket = socket, .database = folder.File("database")});
    }
    void StopServing() { serving.reset(); }
    // While nothing is served.
    void WriteElsewhere(std::int64_t revision, const std::string& text) const {
        const auto database = ServiceDatabase::Open(folder.File("database"));
        ASSERT_NE(database, nullptr);
        NotesText notes{.revision = revision, .text = text};
        EXPECT_EQ(NotesTable(*database).Write("review", notes), NotesTable::Written::Yes);
    }
    [[nodiscard]] std::string Kept(const std::string& room = "review") const {
        const auto notes = NotesClient({.socket = socket}, room).Get();
        return notes ? notes->text : "nobody answers";
    }

    TemporaryFolder folder;
    const std::filesystem::path socket;
    std::unique_ptr<ServingThread> serving;
};

TEST_F(RoomNotesTest, GivesTheServiceWhatIsWritten) {
    Writer writer(socket);
    EXPECT_TRUE(writer.Becomes(NotesStatus::Kept));
    writer.Write("one");
    EXPECT_EQ(writer.notes.Text(), "one") << "at once";
    EXPECT_TRUE(writer.Becomes(NotesStatus::Kept));
    EXPECT_EQ(Kept(), "one");
    writer.Write("one two");
    EXPECT_TRUE(Eventually([&] { return Kept() == "one two"; }));
    EXPECT_TRUE(writer.Told().empty()) << "it is the own text";
    EXPECT_EQ(ReadSetting("Room.UnsentNotes"), "");
}

TEST_F(RoomNotesTest, ShowsWhatAnotherWrites) {
    Writer one(socket);
    Writer other(socket);
    EXPECT_TRUE(one.Becomes(NotesStatus::Kept));
    EXPECT_TRUE(other.Becomes(NotesStatus::Kept));
    one.Write("hello");
    EXPECT_TRUE(other.Has("hello"));
    other.Write("hello\nyourself");
    EXPECT_TRUE(one.Has("hello\nyourself"));
    EXPECT_EQ(one.Told(), std::vector<std::string>{"hello\nyourself"});
    Writer late(socket);
    EXPECT_TRUE(late.Has("hello\nyourself"));
    Writer elsewhere(socket, "other room");
    EXPECT_TRUE(elsewhere.Becomes(NotesStatus::Kept));
    EXPECT_EQ(elsewhere.notes.Text(), "");
}

TEST_F(RoomNotesTest, MergesWhatTwoWriteAtTheSameTime) {
    ASSERT_EQ(NotesClient({.socket = socket}, "review").Put(0, "top\nmiddle\nbottom"), 200U);
    Writer one(socket);
    Writer other(socket);
    EXPECT_TRUE(one.Has("top\nmiddle\nbottom"));
    EXPECT_TRUE(other.Has("top\nmiddle\nbottom"));
    for (int round = 0; round < 10; ++round) {
        std::string mark = " ";
        mark += std::to_string(round);
        std::string top = "one";
        top += mark;
        top += '\n';
        std::string end = "\nother";
        end += mark;
        const std::string own = one.notes.Text();
        const std::string theirs = other.notes.Text();
        EXPECT_TRUE(one.notes.Set(top + own, own));
        EXPECT_TRUE(other.notes.Set(theirs + end, theirs));
        EXPECT_TRUE(Eventually([&] {
            const std::string text = one.notes.Text();
            return text == other.notes.Text() && one.notes.Status() == NotesStatus::Kept &&
                   other.notes.Status() == NotesStatus::Kept && text.find(top) != std::string::npos &&
                   text.find(end) != std::string::npos;
        })) << one.notes.Text()
            << "\n---\n"
            << other.notes.Text();
    }
    const std::string text = Kept();
    EXPECT_EQ(text, one.notes.Text());
    EXPECT_EQ(text.size(),
              std::string("top\nmiddle\nbottom").size() + 10 * std::string("one 0\n\nother 0").size());
}

// The host had not heard of the newest text when the person began to write.
TEST_F(RoomNotesTest, MergesWhatWasWrittenOnAnOlderText) {
    Writer writer(socket);
    EXPECT_TRUE(writer.Becomes(NotesStatus::Kept));
    writer.Write("top\nbottom");
    EXPECT_TRUE(writer.notes.Set("top\nbottom is new", "top\nbottom"));
    EXPECT_TRUE(writer.notes.Set("top is new\nbottom", "top\nbottom"));
    EXPECT_EQ(writer.notes.Text(), "top is new\nbottom is new");
    EXPECT_TRUE(Eventually([&] { return Kept() == "top is new\nbottom is new"; }));
}

TEST_F(RoomNotesTest, TakesNothingThatCannotBeKept) {
    Writer writer(socket);
    EXPECT_TRUE(writer.Becomes(NotesStatus::Kept));
    EXPECT_FALSE(writer.notes.Set(std::string(kLongestNotes + 1, 'x'), ""));
    EXPECT_FALSE(writer.notes.Set("\xFF", ""));
    EXPECT_EQ(writer.notes.Text(), "");
    writer.Write(std::string(kLongestNotes, 'x'));
    EXPECT_TRUE(Eventually([&] { return Kept().size() == kLongestNotes; }));
}

TEST_F(RoomNotesTest, KeepsTwoTextsThatAreTooLongTogether) {
    Writer writer(socket);
    EXPECT_TRUE(writer.Becomes(NotesStatus::Kept));
    StopServing();
    EXPECT_TRUE(writer.Becomes(NotesStatus::Unreachable));
    const std::string mine(700'000, 'm');
    writer.Write(mine);
    WriteElsewhere(0, std::string(700'000, 't'));
    Serve();
    EXPECT_TRUE(writer.Becomes(NotesStatus::Refused));
    EXPECT_NE(writer.notes.Text().find(mine), std::string::npos);
    // Somebody makes place.
    EXPECT_TRUE(writer.notes.Set("short", writer.notes.Text()));
    EXPECT_TRUE(writer.Becomes(NotesStatus::Kept));
    EXPECT_EQ(Kept(), "short");
}

TEST_F(RoomNotesTest, SendsWhenTheServiceIsBackWhatWasWrittenMeanwhile) {
    Writer writer(socket);
    EXPECT_TRUE(writer.Becomes(NotesStatus::Kept));
    writer.Write("before");
    EXPECT_TRUE(writer.Becomes(NotesStatus::Kept));
    StopServing();
    writer.Write("before\nmeanwhile");
    EXPECT_TRUE(writer.Becomes(NotesStatus::Unreachable));
    EXPECT_EQ(writer.notes.Text(), "before\nmeanwhile");
    EXPECT_TRUE(Eventually([] { return !ReadSetting("Room.UnsentNotes").empty(); })) << "it lasts";
    WriteElsewhere(1, "others\nbefore");
    Serve();
    EXPECT_TRUE(writer.Has("others\nbefore\nmeanwhile"));
    EXPECT_TRUE(writer.Becomes(NotesStatus::Kept));
    EXPECT_EQ(Kept(), "others\nbefore\nmeanwhile");
    EXPECT_TRUE(Eventually([] { return ReadSetting("Room.UnsentNotes").empty(); }));
}

TEST_F(RoomNotesTest, SendsTheLastWordsWhenTheRoomIsClosed) {
    for (int round = 0; round < 5; ++round) {
        Writer writer(socket);
        EXPECT_TRUE(writer.Becomes(NotesStatus::Kept));
        std::string last = "last ";
        last += std::to_string(round);
        writer.Write(last);
        writer.Close();
        EXPECT_EQ(Kept(), last);
    }
    EXPECT_EQ(ReadSetting("Room.UnsentNotes"), "");
}

TEST_F(RoomNotesTest, KeepsForTheNextTimeWhatTheServiceNeverHeardOf) {
    StopServing();
    {
        Writer writer(socket);
        EXPECT_TRUE(writer.notes.Set("mine", ""));
        EXPECT_TRUE(writer.Becomes(NotesStatus::Unreachable));
    }
    {
        Writer elsewhere(socket, "other room");
        EXPECT_EQ(elsewhere.notes.Text(), "");
    }
    {
        Writer again(socket);
        EXPECT_EQ(again.notes.Text(), "mine");
        EXPECT_TRUE(Eventually([&] { return again.Told() == std::vector<std::string>{"mine"}; }));
    }
    Serve();
    ASSERT_EQ(NotesClient({.socket = socket}, "review").Put(0, "theirs"), 200U);
    Writer atLast(socket);
    EXPECT_TRUE(atLast.Has("theirs\nmine"));
    EXPECT_TRUE(Eventually([&] { return Kept() == "theirs\nmine"; }));
    EXPECT_TRUE(Eventually([] { return ReadSetting("Room.UnsentNotes").empty(); }));
}

TEST_F(RoomNotesTest, TakesTheNotesOfAFormerVersionOverOnce) {
    WriteSetting("Room.Notes", "old notes");
    {
        Writer named(socket, "review");
        EXPECT_TRUE(named.Becomes(NotesStatus::Kept));
        EXPECT_EQ(named.notes.Text(), "");
    }
    EXPECT_EQ(ReadSetting("Room.Notes"), "old notes");
    Writer writer(socket, "");
    EXPECT_TRUE(writer.Has("old notes"));
    EXPECT_TRUE(Eventually([&] { return Kept("") == "old notes"; }));
    EXPECT_TRUE(Eventually([] { return ReadSetting("Room.Notes").empty(); }));
    writer.Write("");
    EXPECT_TRUE(Eventually([&] { return Kept("").empty(); }));
    writer.Close();
    Writer again(socket, "");
    EXPECT_TRUE(again.Becomes(NotesStatus::Kept));
    EXPECT_EQ(again.notes.Text(), "");
}

TEST_F(RoomNotesTest, LivesWithASettingThatIsNone) {
    for (const char* const setting : {"nonsense", "{}", "[1,[],{},{\"place\":3}]", "[[[[[["}) {
        WriteSetting("Room.UnsentNotes", setting);
        Writer writer(socket);
        EXPECT_TRUE(writer.Becomes(NotesStatus::Kept));
        EXPECT_EQ(writer.notes.Text(), "");
    }
}

TEST_F(RoomNotesTest, KeepsDraftsOfSomeRoomsAndNoMore) {
    StopServing();
    for (std::size_t room = 0; room <= NotesDrafts::kMostDrafts; ++room)
        NotesDrafts({}, std::to_string(room)).Store({.base = "", .text = "text 1"});
    EXPECT_EQ(NotesDrafts({}, "0").Load(), std::nullopt);
    EXPECT_EQ(NotesDrafts({}, "1").Load(), (NotesDraft{.base = "", .text = "text 1"}));
    EXPECT_EQ(NotesDrafts("http://elsewhere", "1").Load(), std::nullopt);
    NotesDrafts({}, "1").Forget();
    EXPECT_EQ(NotesDrafts({}, "1").Load(), std::nullopt);
}

}  // namespace
}  // namespace Corvanta::Engine
