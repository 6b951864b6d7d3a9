#include "host/FontSettings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Corvanta::Host {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> Offered(const QStringList& installed) {
    std::vector<std::string> families;
    for (const QString& family : FamiliesToOffer(installed)) families.push_back(family.toStdString());
    return families;
}

TEST(FontSettings, OfferFamiliesThatAreInstalled) {
    EXPECT_THAT(Offered({"Verdana", "Papyrus", "Arial", "Some Sans"}),
                ElementsAre("Arial", "Papyrus", "Verdana"));
    EXPECT_THAT(Offered({"Verdana"}), ElementsAre("Verdana"));
    EXPECT_THAT(Offered({"Some Sans"}), IsEmpty());
}

TEST(FontSettings, OfferArialWhereItsStandInIsInstalled) {
    EXPECT_THAT(Offered({"Liberation Sans"}), ElementsAre("Arial"));
    EXPECT_THAT(Offered({"Liberation Sans", "Arial"}), ElementsAre("Arial"));
}

TEST(FontSettings, OfferNoOtherFamilyForWhatIsLikeIt) {
    EXPECT_THAT(Offered({"Liberation Mono", "Liberation Serif", "Carlito", "Gelasio"}), IsEmpty());
}

}  // namespace
}  // namespace Corvanta::Host
