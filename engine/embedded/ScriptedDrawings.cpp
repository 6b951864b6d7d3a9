#include "engine/embedded/ScriptedDrawings.h"

#include <algorithm>
#include <utility>

#include "engine/embedded/ScriptedShapes.h"

namespace Corvanta::Engine {

namespace {

using nlohmann::json;

// Every fourth message takes a mark back, so that an undo is seen long before the marks are too many.
constexpr std::size_t kTakeBackEvery = 4;

bool Contains(const std::vector<std::string>& ids, const std::string& id) {
    return std::ranges::find(ids, id) != ids.end();
}

}  // namespace

std::chrono::milliseconds ScriptedDrawings::NextWait() {
    std::uniform_int_distribution<std::chrono::milliseconds::rep> wait(kShortestWait.count(),
                                                                       kLongestWait.count());
    return std::chrono::milliseconds(wait(random));
}

std::optional<DataChannelMessage> ScriptedDrawings::Next(const std::vector<std::string>& inView,
                                                         const std::optional<std::string>& speaker) {
    std::erase_if(marks, [&](const Mark& mark) {
        return !Contains(inView, mark.author) || !Contains(inView, mark.streamId);
    });
    if (inView.empty()) return std::nullopt;
    ++messages;
    const bool takesBack = messages % kTakeBackEvery == 0 && !marks.empty();
    if (takesBack || marks.size() >= kMostMarks) return TakeBack();
    return DrawNext(inView, speaker);
}

DataChannelMessage ScriptedDrawings::DrawNext(const std::vector<std::string>& inView,
                                              const std::optional<std::string>& speaker) {
    const std::size_t author = drawn % inView.size();
    const bool onSpeaker = speaker && Contains(inView, *speaker);
    Mark mark{.author = inView[author],
              .streamId = onSpeaker ? *speaker : inView[author],
              .shape = MakeScriptedShape(drawn, author, random)};
    ++drawn;
    DataChannelMessage message{mark.author,
                               WriteBroadcast(mark.streamId, json::array({mark.shape}), ApplyShapes::Add)};
    marks.push_back(std::move(mark));
    return message;
}

DataChannelMessage ScriptedDrawings::TakeBack() {
    const std::string author = marks.front().author;
    const std::string streamId = marks.front().streamId;
    const auto isTheirs = [&](const Mark& mark) {
        return mark.author == author && mark.streamId == streamId;
    };
    const auto last = std::find_if(marks.rbegin(), marks.rend(), isTheirs);
    marks.erase(std::next(last).base());
    json rest = json::array();
    for (const Mark& mark : marks) {
        if (isTheirs(mark)) rest.push_back(mark.shape);
    }
    return {author, WriteBroadcast(streamId, std::move(rest), ApplyShapes::Replace)};
}

}  // namespace Corvanta::Engine
