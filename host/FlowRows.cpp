#include "host/FlowRows.h"

#include <algorithm>
#include <cstddef>

namespace Corvanta::Host {
namespace {

struct Row {
    std::size_t end = 0;  // one past its last group
    int width = 0;
    int height = 0;
};

Row RowFrom(std::span<const GroupSize> groups, std::size_t begin, int maxWidth, int gap) {
    Row row{.end = begin + 1, .width = groups[begin].width, .height = groups[begin].height};
    while (row.end < groups.size() && row.width + gap + groups[row.end].width <= maxWidth) {
        row.width += gap + groups[row.end].width;
        row.height = std::max(row.height, groups[row.end].height);
        ++row.end;
    }
    return row;
}

}  // namespace

FlowRows FlowInto(std::span<const GroupSize> groups, int maxWidth, int gap) {
    std::vector<Row> rows;
    FlowRows flow;
    for (std::size_t begin = 0; begin < groups.size(); begin = rows.back().end) {
        rows.push_back(RowFrom(groups, begin, maxWidth, gap));
        flow.width = std::max(flow.width, rows.back().width);
    }
    std::size_t group = 0;
    for (const Row& row : rows) {
        if (group > 0) flow.height += gap;
        int x = (flow.width - row.width) / 2;
        for (; group < row.end; ++group) {
            const GroupSize& size = groups[group];
            flow.places.push_back({x, flow.height + (row.height - size.height) / 2, size.width, size.height});
            x += size.width + gap;
        }
        flow.height += row.height;
    }
    return flow;
}

}  // namespace Corvanta::Host
