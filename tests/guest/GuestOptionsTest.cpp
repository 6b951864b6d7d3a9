#include "guest/GuestOptions.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace Corvanta::Guest {
namespace {

using namespace std::chrono_literals;

std::variant<GuestOptions, Engine::Failure> Parse(std::initializer_list<std::string_view> further) {
    std::vector<std::string_view> arguments{"--room", "review", "--name", "one"};
    arguments.insert(arguments.end(), further);
    return ParseGuestOptions(arguments);
}

GuestOptions Parsed(std::initializer_list<std::string_view> further) {
    const auto parsed = Parse(further);
    if (const auto* const problem = std::get_if<Engine::Failure>(&parsed)) {
        ADD_FAILURE() << problem->line;
        return {};
    }
    return std::get<GuestOptions>(parsed);
}

std::string ProblemOf(std::variant<GuestOptions, Engine::Failure> parsed) {
    const auto* const problem = std::get_if<Engine::Failure>(&parsed);
    return problem != nullptr ? problem->line : "";
}

std::string ProblemOf(std::initializer_list<std::string_view> further) {
    return ProblemOf(Parse(further));
}

TEST(GuestOptions, NeedNoMoreThanARoomAndAName) {
    const GuestOptions options = Parsed({});
    EXPECT_EQ(options.room, "review");
    EXPECT_EQ(options.name, "one");
    EXPECT_EQ(options.source, "clip");
    EXPECT_EQ(options.picture, (Engine::PictureShape{640, 360, 30}));
    EXPECT_FALSE(options.pictureIsAsked);
    EXPECT_FALSE(options.runFor);
    EXPECT_TRUE(options.server.empty());
}

TEST(GuestOptions, NameWhatIsMissing) {
    EXPECT_NE(ProblemOf(ParseGuestOptions({})).find("--room"), std::string::npos);
    const std::vector<std::string_view> nameless{"--room", "review"};
    EXPECT_NE(ProblemOf(ParseGuestOptions(nameless)).find("--name"), std::string::npos);
}

TEST(GuestOptions, TakeTheRoomOfTheEnvironmentWhereNoneIsNamed) {
    const std::vector<std::string_view> named{"--room", "review", "--name", "one"};
    const std::vector<std::string_view> nameless{"--name", "one"};
    EXPECT_EQ(std::get<GuestOptions>(ParseGuestOptions(nameless, "hidden")).room, "hidden");
    EXPECT_EQ(std::get<GuestOptions>(ParseGuestOptions(named, "hidden")).room, "review");
    EXPECT_NE(ProblemOf(ParseGuestOptions(nameless, "two\nlines")).find("--room"), std::string::npos);
}

TEST(GuestOptions, ReadEverythingThatThereIs) {
    const GuestOptions options = Parsed({"--server", "wss://host:8188", "--service", "https://host:8189",
                                         "--ca",     "ca.pem",          "--seed=9",  "--index",
                                         "2",        "--count",         "3",         "--size",
                                         "320x180",  "--rate",          "15",        "--draw",
                                         "2.5",      "--source",        "test",      "--for",
                                         "60"});
    EXPECT_EQ(options.server, "wss://host:8188");
    EXPECT_EQ(options.service, "https://host:8189");
    EXPECT_EQ(options.certificateAuthority, "ca.pem");
    EXPECT_EQ(options.role.seed, 9U);
    EXPECT_EQ(options.role.index, 2U);
    EXPECT_EQ(options.role.count, 3U);
    EXPECT_EQ(options.role.drawAfter, 2500ms);
    EXPECT_EQ(options.picture, (Engine::PictureShape{320, 180, 15}));
    EXPECT_TRUE(options.pictureIsAsked);
    EXPECT_EQ(options.source, "test");
    EXPECT_EQ(options.runFor, 60s);
}

TEST(GuestOptions, DrawNeverOnRequest) {
    EXPECT_FALSE(Parsed({"--draw", "never"}).role.drawAfter);
    EXPECT_EQ(Parsed({"--draw", "0"}).role.drawAfter, 0ms);
}

TEST(GuestOptions, ShowHelpWhateverElseIsAsked) {
    const std::vector<std::string_view> help{"--help"}, version{"--version"};
    EXPECT_EQ(std::get<GuestOptions>(ParseGuestOptions(help)).action, GuestOptions::Action::ShowHelp);
    EXPECT_EQ(std::get<GuestOptions>(ParseGuestOptions(version)).action, GuestOptions::Action::ShowVersion);
    EXPECT_EQ(Parsed({"-h"}).action, GuestOptions::Action::ShowHelp);
}

TEST(GuestOptions, RefuseInOneLineThatNamesTheOption) {
    struct Bad {
        std::string_view option;
        std::vector<std::string_view> values;
    };
    for (const Bad& bad : std::vector<Bad>{
             {"--server", {"", "ws://", "http://host", "host:8188", "ws://a b", "ws://me:secret@host"}},
             {"--service", {"", "http://", "ws://host", "host:8189", "http://a b", "http://host?token=a"}},
             {"--ca", {""}},
             {"--seed", {"", "-1", "4294967296", "one"}},
             {"--index", {"", "-1", "16", "one"}},
             {"--count", {"", "0", "17", "2.5"}},
             {"--size", {"", "640", "x", "640x361", "1920x1080", "640x360x1", "0640x360"}},
             {"--rate", {"", "0", "61", "-1", "29.97"}},
             {"--draw", {"", "-1", "soon", "nan", "1e9"}},
             {"--source", {""}},
             {"--for", {"", "0", "-1", "inf", "1e9"}},
         }) {
        for (const std::string_view value : bad.values) {
            const std::string problem = ProblemOf({bad.option, value});
            EXPECT_NE(problem.find(bad.option), std::string::npos) << bad.option << ' ' << value;
            EXPECT_EQ(problem.find('\n'), std::string::npos);
        }
        EXPECT_EQ(ProblemOf({bad.option}), std::string(bad.option) += " wants a value");
    }
    EXPECT_NE(ProblemOf({"--colour"}).find("'--colour'"), std::string::npos);
}

TEST(GuestOptions, TakeNamesOfPeopleAndRoomsAsTheyAre) {
    const std::string longest(256, 'x');
    EXPECT_EQ(Parsed({"--room", longest}).room, longest);
    EXPECT_EQ(Parsed({"--name", "Zoë / \"two\""}).name, "Zoë / \"two\"");
}

TEST(GuestOptions, RefuseNamesThatNobodyCanShow) {
    const std::string tooLong(257, 'x');
    for (const std::string_view option : {"--room", "--name"}) {
        for (const std::string_view value :
             {std::string_view(tooLong), std::string_view(""), std::string_view("two\nlines"),
              std::string_view("\xff\xfe"), std::string_view("caf\xc3"), std::string_view("bell\a")}) {
            const std::string problem = ProblemOf({option, value});
            EXPECT_NE(problem.find(option), std::string::npos) << value;
            EXPECT_EQ(problem.find('\n'), std::string::npos);
            EXPECT_LT(problem.size(), 100U);
        }
    }
}

TEST(GuestOptions, RefuseWhatDoesNotGoTogether) {
    EXPECT_NE(ProblemOf({"--index", "1"}).find("--count"), std::string::npos);
    EXPECT_NE(ProblemOf({"--index", "3", "--count", "3"}).find("--index"), std::string::npos);
    EXPECT_NE(ProblemOf({"--ca", "ca.pem"}).find("--server"), std::string::npos);
}

TEST(GuestOptions, KeepTheHelpNarrowEnoughForATerminal) {
    std::string_view rest = GuestHelpText();
    while (!rest.empty()) {
        const std::size_t end = rest.find('\n');
        ASSERT_NE(end, std::string_view::npos);
        EXPECT_LE(end, 100U) << rest.substr(0, end);
        rest.remove_prefix(end + 1);
    }
}

TEST(GuestOptions, ListEveryOptionInTheHelp) {
    for (const std::string_view name :
         {"--room", "--name", "--server", "--service", "--ca", "--seed", "--index", "--count", "--source",
          "--size", "--rate", "--draw", "--for", "--help", "--version", "CORVANTA_TOKEN"}) {
        EXPECT_NE(GuestHelpText().find(name), std::string_view::npos) << name;
    }
}

}  // namespace
}  // namespace Corvanta::Guest
