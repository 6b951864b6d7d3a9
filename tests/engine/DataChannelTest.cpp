#include "engine/mediamanager/DataChannel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "engine/logger/Logger.h"
#include "engine/mediamanager/MediaCallbacks.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/TemporaryFolder.h"

namespace Corvanta::Engine {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const DataChannelMessage kMessage{"participant-1", "{}"};

class DataChannelTest : public ::testing::Test {
protected:
    ~DataChannelTest() override { MediaCallbacks::Get().Clear(); }

    static void Register(std::vector<DataChannelCallback> handlers) {
        MediaManager_SetCallbackToGetRemoteDataChannelSDLCallbackList(
            [handlers = std::move(handlers)] { return handlers; });
    }
    DataChannelCallback Hearing(const char* name) {
        return [this, name](const DataChannelMessage& message) {
            heard_.push_back(std::string(name) + ' ' + message.senderId + ' ' + message.text);
        };
    }

    std::vector<std::string> heard_;
    DataChannel channel_;
};

TEST_F(DataChannelTest, HandsAMessageToEachHandlerInOrder) {
    Register({Hearing("first"), Hearing("second")});
    channel_.Open();
    channel_.Deliver(kMessage);
    EXPECT_THAT(heard_, ElementsAre("first participant-1 {}", "second participant-1 {}"));
}

TEST_F(DataChannelTest, GoesOnWithTheNextHandlerWhenOneFails) {
    const TemporaryFolder folder;
    ConfigureLog(3, folder.File("engine.log"));
    Register({[](const DataChannelMessage&) { throw std::runtime_error("bad text"); },
              [](const DataChannelMessage&) { throw 7; },
              {},
              Hearing("last")});
    channel_.Open();
    channel_.Deliver(kMessage);
    EXPECT_THAT(heard_, ElementsAre("last participant-1 {}"));
    // Written on a thread of its own.
    const auto log = [&folder] { return folder.Read("engine.log"); };
    const auto says = [&log](const char* text) {
        return Eventually([&] { return log().find(text) != std::string::npos; });
    };
    EXPECT_TRUE(says("A handler of the messages of \"participant-1\" failed: bad text")) << log();
    EXPECT_TRUE(says("failed: no standard exception")) << log();
    ConfigureLog(2, {});
}

TEST_F(DataChannelTest, KeepsTheHandlersOfItsBeginning) {
    Register({Hearing("early")});
    channel_.Open();
    Register({Hearing("late")});
    channel_.Deliver(kMessage);
    EXPECT_THAT(heard_, ElementsAre("early participant-1 {}"));
}

TEST_F(DataChannelTest, LetsGoOfTheHandlersWhenItCloses) {
    auto view = std::make_shared<int>();
    const std::weak_ptr<int> watch = view;
    Register({[view](const DataChannelMessage&) {}, Hearing("handler")});
    channel_.Open();
    MediaCallbacks::Get().Clear();
    view.reset();
    EXPECT_FALSE(watch.expired());
    channel_.Close();
    EXPECT_TRUE(watch.expired());
    channel_.Deliver(kMessage);
    EXPECT_THAT(heard_, IsEmpty());
}

TEST_F(DataChannelTest, HasNoHandlersWhereTheLibraryNamesNone) {
    channel_.Open();
    channel_.Deliver(kMessage);
    EXPECT_THAT(heard_, IsEmpty());
}

}  // namespace
}  // namespace Corvanta::Engine
