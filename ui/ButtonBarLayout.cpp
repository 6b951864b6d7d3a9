#include "ui/ButtonBarLayout.h"

#include <algorithm>

#include "ui/Arithmetic.h"

namespace Corvanta::UI {
namespace {

// Buttons closer than that are taken for one another.
constexpr int kNarrowestGapShare = 5;

}  // namespace

BarMetrics ComputeBarMetrics(const SDL_Rect& rect, int width, int height, const BarCounts& counts) {
    BarMetrics m;
    m.cell = Truncate(height / 2.1);
    m.half = m.cell / 2;
    m.gap = Truncate(m.cell / 1.5);
    m.leftGap = Truncate(m.gap / 1.17);
    m.rightGap = Truncate(m.gap / 1.3);
    m.middleY = height / 2 + rect.y;
    const int step = CentreStep(m);
    m.centreX = width / 2 - (counts.centre * step - m.gap) / 2 + m.half + rect.x;
    m.titleSpace = m.centreX - 2 * m.leftGap - counts.left * step - m.half - m.gap;
    return m;
}

bool FullBarFits(const BarMetrics& m, int width, const BarCounts& counts, int textWidth, int recordWidth) {
    const int needed = counts.right * m.rightGap + recordWidth +
                       (counts.left + counts.centre + counts.right) * m.cell + (counts.centre + 1) * m.gap +
                       counts.left * m.leftGap + 2 * m.half + textWidth;
    return width >= needed && m.titleSpace >= m.leftGap;
}

bool PartGroups(BarMetrics& m, const BarCounts& counts, int rightEnd, int rightGaps, int textWidth) {
    if (counts.centre == 0 || counts.right == 0) return true;
    const int centreEnd = m.centreX + (counts.centre - 1) * CentreStep(m) + m.half;
    if (centreEnd < rightEnd) return true;
    const int wanted = centreEnd + m.rightGap - rightEnd;
    const int way = std::clamp(m.titleSpace - std::max(textWidth, m.leftGap), 0, wanted);
    m.centreX -= way;
    m.titleSpace -= way;
    if (way == wanted) return true;
    if (rightGaps == 0) return false;
    m.rightGap -= (wanted - way + rightGaps - 1) / rightGaps;
    return m.rightGap >= m.gap / kNarrowestGapShare;
}

int FirstLeftX(const BarMetrics& m) {
    return m.half + m.gap;
}

int LeftStep(const BarMetrics& m) {
    return m.gap + m.half;
}

int CentreStep(const BarMetrics& m) {
    return m.gap + m.cell;
}

int TitleSpaceX(const BarMetrics& m, int leftCount) {
    return FirstLeftX(m) + leftCount * LeftStep(m) + m.leftGap;
}

int FirstRightX(const BarMetrics& m, int width) {
    return width - m.half - m.gap;
}

int RecordX(const BarMetrics& m, int width) {
    return FirstRightX(m, width) - (m.half + m.rightGap);
}

int SecondRightX(const BarMetrics& m, int width, bool hasRecord, int recordWidth) {
    if (!hasRecord) return FirstRightX(m, width) - (m.cell + m.rightGap);
    return RecordX(m, width) - (m.cell / 2 + recordWidth + m.rightGap);
}

int FirstCompactX(const BarMetrics& m, const SDL_Rect& rect, int width, int count) {
    return width / 2 - (count * CentreStep(m) - 2 * m.gap) / 2 + m.half + rect.x;
}

}  // namespace Corvanta::UI
