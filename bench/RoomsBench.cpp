// What bench/rooms starts, each in a process of its own:
//
//   bench_rooms person --room ROOM --name NAME [--look N] [--no-pictures] [--no-sound] [--deaf] [--blind]
//       takes part in a room until its standard input ends and does what it reads there, one command a line:
//       say, draw, reset, report (see BenchPerson::Report), pictures on|off and sound on|off for what it
//       wants of the others. It answers every line with one of JSON.
//   bench_rooms join --room ROOM --others N --times T
//       enters the room T times, and says how long it took until the first picture of each of the others.
//   bench_rooms bare --seconds S --calls C [--at-once]
//       the same by bare elements: C calls, and in the last one pictures and texts for that time. The
//       pictures come as soon as they are decoded, or in time with each other.
#include <sys/prctl.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "bench/BareCall.h"
#include "bench/BenchPerson.h"
#include "bench/Medians.h"
#include "engine/logger/Logger.h"
#include "engine/webrtc/GstSupport.h"
#include "platform/Logger.h"

namespace Corvanta::Bench {
namespace {

using nlohmann::json;

constexpr std::chrono::milliseconds kBetweenTexts{50};

struct Arguments {
    std::vector<std::string_view> words;

    [[nodiscard]] bool Has(std::string_view name) const {
        return std::ranges::find(words, name) != words.end();
    }
    [[nodiscard]] std::string Value(std::string_view name, std::string_view otherwise) const {
        const auto place = std::ranges::find(words, name);
        const bool isThere = place != words.end() && place + 1 != words.end();
        return std::string(isThere ? *(place + 1) : otherwise);
    }
    [[nodiscard]] int Number(std::string_view name, const char* otherwise) const {
        return std::atoi(Value(name, otherwise).c_str());
    }
};

void Answer(const json& answer) {
    std::cout << answer.dump() << std::endl;
}

BenchPersonOptions PersonFrom(const Arguments& arguments) {
    return {.room = arguments.Value("--room", ""),
            .name = arguments.Value("--name", "person"),
            .look = static_cast<std::size_t>(arguments.Number("--look", "0")),
            .showsPictures = !arguments.Has("--no-pictures"),
            .sounds = !arguments.Has("--no-sound"),
            .takesPictures = !arguments.Has("--blind"),
            .takesSound = !arguments.Has("--deaf")};
}

int TakePart(const Arguments& arguments) {
    BenchPerson person(PersonFrom(arguments));
    if (!person.Enter()) return EXIT_FAILURE;
    Answer({{"entered", true}});
    for (std::string line; std::getline(std::cin, line);) {
        json answer = json::object();
        if (line == "say") person.Say();
        if (line == "draw") person.Draw();
        if (line == "reset") person.Reset();
        if (line == "report") answer = person.Report();
        if (line.starts_with("pictures ")) person.WantPictures(line.ends_with("on"));
        if (line.starts_with("sound ")) person.WantSound(line.ends_with("on"));
        Answer(answer);
    }
    return EXIT_SUCCESS;
}

int Join(const Arguments& arguments) {
    const auto others = static_cast<std::size_t>(arguments.Number("--others", "1"));
    json first = json::array();
    json all = json::array();
    for (int time = 0; time < arguments.Number("--times", "10"); ++time) {
        BenchPerson person(PersonFrom(arguments));
        if (!person.Enter()) return EXIT_FAILURE;
        const auto times = person.FirstPictures(others);
        if (!times) {
            std::fprintf(stderr, "bench_rooms: a picture did not come in time: %s\n",
                         person.Report().dump().c_str());
            return EXIT_FAILURE;
        }
        first.push_back(times->front());
        all.push_back(times->back());
    }
    Answer({{"firstMs", first}, {"allMs", all}});
    return EXIT_SUCCESS;
}

int CallBare(const Arguments& arguments) {
    json firsts = json::array();
    json report = json::object();
    const int calls = arguments.Number("--calls", "1");
    for (int number = 0; number < calls; ++number) {
        BareCall call(arguments.Has("--at-once") ? BareCall::Showing::AtOnce : BareCall::Showing::InTime);
        const StampedClip clip(
            "bare", 0, [&call](GstBuffer* picture, const GstVideoInfo& info) { call.Push(picture, info); });
        if (!call.Start()) return EXIT_FAILURE;
        const auto first = call.FirstPictureMs();
        if (!first || !call.CanSay()) {
            std::fprintf(stderr, "bench_rooms: the bare call does not come about\n");
            return EXIT_FAILURE;
        }
        firsts.push_back(*first);
        if (number + 1 < calls) continue;
        // Texts by themselves, then what pictures alone cost.
        const auto span = std::chrono::seconds(arguments.Number("--seconds", "5"));
        const auto say = std::chrono::steady_clock::now() + span;
        while (std::chrono::steady_clock::now() < say) {
            call.Say();
            std::this_thread::sleep_for(kBetweenTexts);
        }
        static_cast<void>(call.TakePictureAges());
        const double before = CpuTimeOf(CLOCK_PROCESS_CPUTIME_ID);
        std::this_thread::sleep_for(span);
        report["cpuMsPerSecond"] =
            (CpuTimeOf(CLOCK_PROCESS_CPUTIME_ID) - before) / 1e6 / static_cast<double>(span.count());
        report["agesMs"] = call.TakePictureAges();
        report["textsMs"] = call.TakeTextAges();
    }
    report["firstMs"] = firsts;
    Answer(report);
    return EXIT_SUCCESS;
}

int Main(int count, char** words) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const Arguments arguments{{words + 1, words + count}};
    Engine::ConfigureLog(kLogWarning, {});
    if (!Engine::EnsureGStreamer()) return EXIT_FAILURE;
    const std::string_view mode = count > 1 ? words[1] : "";
    if (mode == "person") return TakePart(arguments);
    if (mode == "join") return Join(arguments);
    if (mode == "bare") return CallBare(arguments);
    std::fprintf(stderr, "bench_rooms: bench/rooms starts it\n");
    return 2;
}

}  // namespace
}  // namespace Corvanta::Bench

int main(int count, char** words) {
    try {
        return Corvanta::Bench::Main(count, words);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_rooms: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
