#include "host/FontSettings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Corvanta::Host {
namespace {

using ::testing::ElementsAre;

std::vector<std::string> Offered(const QStringList& installed) {
    std::vector<std::string> families;
    for (const QString& family : FamiliesToOffer(installed)) families.push_back(family.toStdString());
    return families;
}

TEST(FontSettings, OfferArialEvenWhereNothingIsInstalled) {
    EXPECT_THAT(Offered({}), ElementsAre("Arial"));
    EXPECT_THAT(Offered({"Some Sans"}), ElementsAre("Arial"));
}

TEST(FontSettings, OfferFamiliesThatAreInstalled) {
    EXPECT_THAT(Offered({"Verdana", "Papyrus"}), ElementsAre("Arial", "Papyrus", "Verdana"));
}

TEST(FontSettings, OfferFamiliesThatAnInstalledOneStandsInFor) {
    EXPECT_THAT(Offered({"Liberation Sans"}), ElementsAre("Arial", "Helvetica"));
    EXPECT_THAT(Offered({"Liberation Mono"}), ElementsAre("Arial", "Courier New"));
    EXPECT_THAT(Offered({"Liberation Serif"}), ElementsAre("Arial", "Times New Roman"));
    EXPECT_THAT(Offered({"Liberation Sans Narrow", "Carlito", "Gelasio"}),
                ElementsAre("Arial", "Arial Narrow", "Calibri", "Georgia"));
}

TEST(FontSettings, OfferAFamilyOnceThoughItsStandInIsThereToo) {
    EXPECT_THAT(Offered({"Courier New", "Liberation Mono"}), ElementsAre("Arial", "Courier New"));
}

}  // namespace
}  // namespace Corvanta::Host
