// What the programs' command lines have in common: how a value is read, and what is said of a bad one. Plain
// functions of values, which need no other library; any thread.
#pragma once

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <system_error>

namespace Corvanta::Engine {

// Why something could not be done, as the one line that the person reads.
struct Failure {
    std::string line;  // no line break, no program name
};

// The environment's variables for what no list of processes is to show: what a server asks for, and the name
// of a room that nobody else is to find.
inline constexpr const char* kTokenVariable = "CORVANTA_TOKEN";
inline constexpr const char* kRoomVariable = "CORVANTA_ROOM_NAME";
// Programs without a window that one person may bring into a room.
inline constexpr int kMostGuests = 16;

[[nodiscard]] std::string Quoted(std::string_view text);

// "OPTION wants WHAT", and ", not 'VALUE'".
[[nodiscard]] Failure Wants(std::string_view option, std::string_view what);
[[nodiscard]] Failure Wants(std::string_view option, std::string_view what, std::string_view value);

// A name that can be shown, in a title too: UTF-8 on one line. It is not repeated, since it may be anything.
[[nodiscard]] std::optional<Failure> CheckName(std::string_view option, std::string_view value,
                                               std::size_t mostBytes);

// "ws://HOST:PORT" of what carries rooms, "http://HOST:PORT" of what keeps their notes, or encrypted. It is
// not repeated, since what is too much in it may be a secret.
[[nodiscard]] std::optional<Failure> CheckServer(std::string_view option, std::string_view value);
[[nodiscard]] std::optional<Failure> CheckService(std::string_view option, std::string_view value);

// A number within these bounds, and nothing beside it.
template <typename Number>
[[nodiscard]] std::optional<Number> ParseNumber(std::string_view text, Number least, Number most) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stop != end || !(number >= least) || number > most) return std::nullopt;
    return number;
}

// An option with a value, and what takes it.
template <class Options>
struct ValueOption {
    std::string_view name;
    std::optional<Failure> (*read)(Options&, std::string_view);
};

// Reads the option at that place of the arguments. Its value is the next argument, and then `at` is moved
// there, or stands behind '='.
template <class Options>
[[nodiscard]] std::optional<Failure> ReadValueOption(std::span<const ValueOption<Options>> table,
                                                     std::span<const std::string_view> arguments,
                                                     std::size_t& at, Options& options) {
    const std::string_view argument = arguments[at];
    const std::size_t equals = argument.find('=');
    const auto option = std::ranges::find(table, argument.substr(0, equals), &ValueOption<Options>::name);
    if (option == table.end())
        return Failure{"unknown argument " + Quoted(argument) + ", --help lists what there is"};
    if (equals != std::string_view::npos) return option->read(options, argument.substr(equals + 1));
    if (at + 1 == arguments.size()) return Wants(option->name, "a value");
    return option->read(options, arguments[++at]);
}

}  // namespace Corvanta::Engine
