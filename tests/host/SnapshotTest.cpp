#include "host/Snapshot.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <filesystem>

namespace Corvanta::Host {
namespace {

class SnapshotTest : public testing::Test {
protected:
    QImage snapshot{4, 3, QImage::Format_RGB32};
    QTemporaryDir folder;
    const std::filesystem::path path = std::filesystem::path(folder.path().toStdString()) / "one.png";
};

TEST_F(SnapshotTest, IsWrittenWhenOnePixelDiffers) {
    snapshot.fill(Qt::black);
    snapshot.setPixel(3, 2, qRgb(0, 0, 1));
    EXPECT_FALSE(WriteSnapshot(snapshot, path).has_value());
    EXPECT_EQ(QImage(QString::fromStdString(path.string())).pixel(3, 2), qRgb(0, 0, 1));
}

TEST_F(SnapshotTest, SaysThatNothingWasDrawnOnAWindowOfOneColour) {
    snapshot.fill(Qt::darkBlue);
    const auto failure = WriteSnapshot(snapshot, path);
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->line, "nothing was drawn in the window, so there is no snapshot");
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(SnapshotTest, SaysThatThereIsNoPictureOfTheWindow) {
    const auto failure = WriteSnapshot({}, path);
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->line, "the window's picture cannot be read from the display");
}

TEST_F(SnapshotTest, NamesAPlaceThatCannotBeWritten) {
    snapshot.fill(Qt::black);
    snapshot.setPixel(0, 0, qRgb(9, 9, 9));
    const auto place = path.parent_path() / "missing" / "one.png";
    const auto failure = WriteSnapshot(snapshot, place);
    ASSERT_TRUE(failure.has_value());
    EXPECT_TRUE(failure->line.starts_with("the snapshot cannot be written: " + place.string()));
}

}  // namespace
}  // namespace Corvanta::Host
