#include "platform/Configuration.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <filesystem>
#include <functional>
#include <limits>
#include <ostream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "engine/configuration/ConfigurationStore.h"
#include "engine/logger/Logger.h"
#include "platform/Logger.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/TemporaryFolder.h"

namespace Corvanta::Engine {
namespace {

constexpr const char* kFile = "configuration.json";

class RecordingListener final : public ConfigurationListener {
public:
    void OnConfigurationChanged(const std::string& key, const std::string& value) override {
        changes.emplace_back(key, value);
        if (onChange) onChange();
    }
    std::vector<std::pair<std::string, std::string>> changes;
    std::function<void()> onChange;
};

std::size_t FilesIn(const TemporaryFolder& folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder.path), {}));
}

std::size_t Count(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

TEST(Configuration, KeepsValuesOfEveryTypeOverARestart) {
    const TemporaryFolder folder;
    {
        ConfigurationStore store;
        store.Open(folder.path);
        EXPECT_TRUE(store.Store("EnableVSync", true));
        EXPECT_TRUE(store.Store("SDRBrightnessBoost", int64_t{280}));
        EXPECT_TRUE(store.Store("Scale", 1.25));
        EXPECT_TRUE(store.Store("room.Id", std::string("Ünï\"code\n")));
    }
    ConfigurationStore store;
    store.Open(folder.path);
    EXPECT_EQ(store.Find("EnableVSync"), ConfigurationValue(true));
    EXPECT_EQ(store.Find("SDRBrightnessBoost"), ConfigurationValue(int64_t{280}));
    EXPECT_EQ(store.Find("Scale"), ConfigurationValue(1.25));
    EXPECT_EQ(store.Find("room.Id"), ConfigurationValue(std::string("Ünï\"code\n")));
    EXPECT_EQ(store.Find("other"), std::nullopt);
    EXPECT_EQ(FilesIn(folder), 1U) << "no temporary file is left";
}

TEST(Configuration, WritesByItselfSomeMomentsAfterAChange) {
    const TemporaryFolder folder;
    ConfigurationStore store;
    store.Open(folder.path);
    store.Store("detachedLayout", int64_t{2});
    EXPECT_TRUE(Eventually([&] { return folder.Read(kFile).find("detachedLayout") != std::string::npos; }));
}

TEST(Configuration, ReadsOnlyWhatReadsAsTheTypeAskedFor) {
    const TemporaryFolder folder;
    ConfigurationStore::Get().Open(folder.path);
    Configuration_SetPropertyInt("number", -5);
    Configuration_SetPropertyString("text", "hello");
    Configuration_SetPropertyBoolean("flag", true);

    int32_t number = 7;
    EXPECT_TRUE(Configuration_GetPropertyInt("number", &number));
    EXPECT_EQ(number, -5);
    uint32_t positive = 7;
    EXPECT_FALSE(Configuration_GetPropertyUint32("number", &positive));
    EXPECT_EQ(positive, 7U) << "a default stays";
    double real = 0;
    EXPECT_TRUE(Configuration_GetPropertyDouble("number", &real));
    EXPECT_EQ(real, -5.0);
    bool flag = false;
    EXPECT_FALSE(Configuration_GetPropertyBoolean("number", &flag));
    EXPECT_TRUE(Configuration_GetPropertyBoolean("flag", &flag));
    EXPECT_FALSE(Configuration_GetPropertyInt("text", &number));
    EXPECT_FALSE(Configuration_GetPropertyInt("nothing", &number));
    EXPECT_FALSE(Configuration_GetPropertyInt(nullptr, &number));
    EXPECT_FALSE(Configuration_GetPropertyInt("number", nullptr));
}

TEST(Configuration, CopiesTextsIntoTheRoomThereIs) {
    const TemporaryFolder folder;
    ConfigurationStore::Get().Open(folder.path);
    Configuration_SetPropertyString("text", "hello");
    int32_t size = 0;
    EXPECT_TRUE(Configuration_GetStringPropertySize("text", &size));
    EXPECT_EQ(size, 5);
    std::array<char, 4> buffer{'x', 'x', 'x', 'x'};
    EXPECT_TRUE(Configuration_GetPropertyString("text", buffer.data(), 4));
    EXPECT_STREQ(buffer.data(), "hel");
    EXPECT_TRUE(Configuration_GetPropertyString("text", buffer.data(), 1));
    EXPECT_STREQ(buffer.data(), "");
    buffer[0] = 'x';
    EXPECT_FALSE(Configuration_GetPropertyString("text", buffer.data(), 0));
    EXPECT_FALSE(Configuration_GetPropertyString("text", buffer.data(), -1));
    EXPECT_EQ(buffer[0], 'x');
}

TEST(Configuration, RefusesWhatTheFileCannotHold) {
    const TemporaryFolder folder;
    ConfigurationStore::Get().Open(folder.path);
    EXPECT_FALSE(Configuration_SetPropertyString("text", "\xFF\xFE"));
    EXPECT_FALSE(Configuration_SetPropertyString("text", nullptr));
    EXPECT_FALSE(Configuration_SetPropertyString("", "text"));
    EXPECT_FALSE(Configuration_SetPropertyString(nullptr, "text"));
    EXPECT_FALSE(Configuration_SetPropertyDouble("number", std::numeric_limits<double>::infinity()));
}

TEST(Configuration, NamesItsFolderWithoutASlashAtTheEnd) {
    const TemporaryFolder folder;
    ConfigurationStore::Get().Open(folder.path / "");
    EXPECT_EQ(Configuration_GetLocation(), folder.path.string());
}

struct BadFile {
    const char* name;
    const char* content;
};

void PrintTo(const BadFile& file, std::ostream* stream) {
    *stream << file.name;
}

class UnreadableConfiguration : public testing::TestWithParam<BadFile> {};

TEST_P(UnreadableConfiguration, IsKeptAsideWithOneLogLineAndDefaultsAreUsed) {
    const TemporaryFolder folder;
    folder.Write(kFile, GetParam().content);
    ConfigureLog(kLogInformation, folder.File("log"));
    {
        ConfigurationStore store;
        store.Open(folder.path);
        EXPECT_EQ(store.Find("key"), std::nullopt);
        EXPECT_TRUE(store.Store("key", int64_t{1}));
    }
    EXPECT_EQ(folder.Read("configuration-unreadable-1.json"), GetParam().content);
    EXPECT_NE(folder.Read(kFile).find("\"key\""), std::string::npos);
    EXPECT_TRUE(Eventually([&] { return !folder.Read("log").empty(); }));
    EXPECT_EQ(Count(folder.Read("log"), "\n"), 1U) << folder.Read("log");

    // A second one does not replace the first that was kept.
    folder.Write(kFile, "again");
    ConfigurationStore store;
    store.Open(folder.path);
    EXPECT_EQ(folder.Read("configuration-unreadable-1.json"), GetParam().content);
    EXPECT_EQ(folder.Read("configuration-unreadable-2.json"), "again");
    ConfigureLog(kLogInformation, {});
}

INSTANTIATE_TEST_SUITE_P(
    Configuration, UnreadableConfiguration,
    testing::Values(
        BadFile{"Truncated", R"({"format": "corvanta-configuration", "version": 1, "values": {"key": 5)"},
        BadFile{"Foreign", R"({"key": 5, "values": {"key": 5}})"}, BadFile{"List", R"([1, 2, 3])"},
        BadFile{"Empty", ""}, BadFile{"NoValues", R"({"format": "corvanta-configuration", "version": 1})"},
        BadFile{"Newer", R"({"format": "corvanta-configuration", "version": 2, "values": {"key": 5}})"}),
    [](const auto& testCase) { return testCase.param.name; });

TEST(Configuration, LeavesOutValuesThatAreNone) {
    const TemporaryFolder folder;
    folder.Write(kFile, R"({"format": "corvanta-configuration", "version": 1,
                            "values": {"a": null, "b": [1], "c": {"d": 1}, "e": 3, "f": 18446744073709551615}})");
    ConfigurationStore store;
    store.Open(folder.path);
    EXPECT_EQ(store.Find("a"), std::nullopt);
    EXPECT_EQ(store.Find("b"), std::nullopt);
    EXPECT_EQ(store.Find("c"), std::nullopt);
    EXPECT_EQ(store.Find("e"), ConfigurationValue(int64_t{3}));
    EXPECT_EQ(store.Find("f"), ConfigurationValue(18446744073709551615.0));
}

TEST(Configuration, SaysOnceThatItCannotBeWrittenAndWorksInMemory) {
    const TemporaryFolder folder;
    // A file where the folder should be stops every user, the system's own too.
    folder.Write("blocked", "");
    ConfigureLog(kLogInformation, folder.File("log"));
    {
        ConfigurationStore store;
        store.Open(folder.File("blocked"));
        EXPECT_TRUE(store.Store("key", int64_t{1}));
        store.Flush();
        EXPECT_TRUE(store.Store("key", int64_t{2}));
        store.Flush();
        EXPECT_EQ(store.Find("key"), ConfigurationValue(int64_t{2}));
    }
    EXPECT_TRUE(Eventually([&] { return !folder.Read("log").empty(); }));
    EXPECT_EQ(Count(folder.Read("log"), "cannot be written"), 1U) << folder.Read("log");
    ConfigureLog(kLogInformation, {});
}

TEST(Configuration, TellsListenersOfChangesAndOfNothingElse) {
    const TemporaryFolder folder;
    ConfigurationStore::Get().Open(folder.path);
    RecordingListener listener;
    Configuration_Subscribe(&listener);
    Configuration_Subscribe(&listener);
    Configuration_Subscribe(nullptr);
    Configuration_SetPropertyInt("a", 1);
    Configuration_SetPropertyInt("a", 1);
    Configuration_SetPropertyBoolean("b", true);
    Configuration_SetPropertyDouble("c", 0.5);
    Configuration_SetPropertyString("d", "text");
    Configuration_Unsubscribe(&listener);
    Configuration_Unsubscribe(&listener);
    Configuration_SetPropertyInt("a", 2);
    const std::vector<std::pair<std::string, std::string>> expected{
        {"a", "1"}, {"b", "true"}, {"c", "0.5"}, {"d", "text"}};
    EXPECT_EQ(listener.changes, expected);
}

TEST(Configuration, HoldsNoLockWhileAListenerIsCalled) {
    const TemporaryFolder folder;
    ConfigurationStore::Get().Open(folder.path);
    RecordingListener listener;
    int32_t seen = 0;
    listener.onChange = [&] {
        if (listener.changes.size() > 1) return;
        // From another thread, which a held lock would stop for ever.
        std::thread([&] {
            Configuration_GetPropertyInt("a", &seen);
            Configuration_SetPropertyInt("b", 7);
        }).join();
    };
    Configuration_Subscribe(&listener);
    Configuration_SetPropertyInt("a", 3);
    EXPECT_EQ(seen, 3);
    EXPECT_EQ(listener.changes.size(), 2U);
    Configuration_Unsubscribe(&listener);
}

TEST(Configuration, WaitsForACallInProgressWhenAListenerGoes) {
    const TemporaryFolder folder;
    ConfigurationStore::Get().Open(folder.path);
    std::atomic<bool> isInside = false;
    std::atomic<bool> isOver = false;
    RecordingListener listener;
    listener.onChange = [&] {
        isInside = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        isOver = true;
    };
    Configuration_Subscribe(&listener);
    std::thread changer([] { Configuration_SetPropertyInt("a", 1); });
    EXPECT_TRUE(Eventually([&] { return isInside.load(); }));
    Configuration_Unsubscribe(&listener);
    EXPECT_TRUE(isOver);
    changer.join();
}

}  // namespace
}  // namespace Corvanta::Engine
