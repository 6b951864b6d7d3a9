#include "platform/GraphQLClient.h"

#include <gtest/gtest.h>

#include <string>

#include "engine/configuration/ConfigurationStore.h"
#include "platform/Configuration.h"
#include "tests/engine/TemporaryFolder.h"

namespace Corvanta::Engine {
namespace {

std::string Take(GraphQLClientString* string) {
    std::string text = string->c_str();
    GraphQLClient_CStringDealloc(string);
    return text;
}

TEST(GraphQLClient, AnswersWithAProfileOfThisMachineAndNoToken) {
    const TemporaryFolder folder;
    ConfigurationStore::Get().Open(folder.path);
    EXPECT_EQ(GraphQLClient_GetStoredToken(), "");
    EXPECT_EQ(Take(GraphQLClient_GetEmail()), "");
    EXPECT_EQ(Take(GraphQLClient_GetProfileId()).rfind("local-", 0), 0U);
    EXPECT_NE(Take(GraphQLClient_GetDisplayName()), "");
    GraphQLClient_CStringDealloc(nullptr);
}

TEST(GraphQLClient, TakesTheProfileFromTheConfiguration) {
    const TemporaryFolder folder;
    ConfigurationStore::Get().Open(folder.path);
    Configuration_SetPropertyString("Profile.Id", "id");
    Configuration_SetPropertyString("Profile.Email", "me@example.org");
    Configuration_SetPropertyString("Profile.DisplayName", "Me Myself");
    EXPECT_EQ(Take(GraphQLClient_GetProfileId()), "id");
    EXPECT_EQ(Take(GraphQLClient_GetEmail()), "me@example.org");
    EXPECT_EQ(Take(GraphQLClient_GetDisplayName()), "Me Myself");
}

}  // namespace
}  // namespace Corvanta::Engine
