#include "host/GeneratedParticipants.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace Corvanta::Host {
namespace {

TEST(GeneratedParticipants, AreAsManyAsAskedForAndAllHaveNamesOfTheirOwn) {
    for (const int count : {0, 1, 25, 100, 250}) {
        const auto participants = GenerateParticipants(count, {});
        std::set<std::string> names;
        for (const ParticipantOption& participant : participants) {
            names.insert(participant.name);
            EXPECT_EQ(participant.source, "clip");
        }
        EXPECT_EQ(std::ssize(participants), count);
        EXPECT_EQ(std::ssize(names), count);
    }
}

TEST(GeneratedParticipants, NeedNoNumbersUpToAHundred) {
    for (const ParticipantOption& participant : GenerateParticipants(100, {})) {
        EXPECT_EQ(participant.name.find_first_of(" 0123456789"), std::string::npos) << participant.name;
    }
}

TEST(GeneratedParticipants, TakeNobodysName) {
    const std::string first = GenerateParticipants(1, {})[0].name;
    const std::vector<ParticipantOption> others{{first, "test"}};
    const auto participants = GenerateParticipants(100, others);
    EXPECT_EQ(participants.size(), 100U);
    for (const ParticipantOption& participant : participants) EXPECT_NE(participant.name, first);
}

}  // namespace
}  // namespace Corvanta::Host
