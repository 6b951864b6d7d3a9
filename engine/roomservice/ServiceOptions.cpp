#include "engine/roomservice/ServiceOptions.h"

#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <optional>
#include <utility>

#include "engine/roomservice/ServiceAddress.h"

namespace Corvanta::Engine {

namespace {

Failure ProblemOf(std::string_view before, std::string_view name, std::string_view after) {
    std::string line(before);
    line += name;
    line += after;
    return {std::move(line)};
}

// Where the option's value goes; null for an option that there is not.
std::filesystem::path* PathOf(ServiceOptions& options, std::string_view name) {
    if (name == "--database") return &options.database;
    if (name == "--token-file") return &options.tokenFile;
    if (name == "--certificate") return &options.certificate;
    if (name == "--key") return &options.key;
    return nullptr;
}

}  // namespace

std::string_view ServiceHelp() {
    return "Usage: corvanta-room-service [OPTION]...\n"
           "Keeps the notes, profiles and connectivity of rooms for several machines. Whoever comes has to "
           "bear\n"
           "the token, which is taken from the variable CORVANTA_TOKEN or from a file.\n"
           "\n"
           "  --address ADDRESS   number address to listen on (127.0.0.1); 0.0.0.0 for all of this machine\n"
           "  --port N            port to listen on (8189); 0 takes any that is free\n"
           "  --database FILE     where all is kept (shared-rooms.sqlite in the user's configuration "
           "folder)\n"
           "  --token-file FILE   the token is the first line of this file, which only its owner may read\n"
           "  --certificate FILE  for https: the certificate, and those that vouch for it (PEM)\n"
           "  --key FILE          for https: its private key (PEM)\n"
           "  --help              show this\n";
}

std::variant<ServiceOptions, Failure> ParseServiceOptions(const std::vector<std::string_view>& arguments) {
    ServiceOptions options;
    for (std::size_t at = 0; at < arguments.size(); ++at) {
        const std::string_view name = arguments[at];
        if (name == "--help") {
            options.showHelp = true;
            continue;
        }
        std::filesystem::path* const path = PathOf(options, name);
        if (path == nullptr && name != "--address" && name != "--port")
            return ProblemOf("unknown option '", name, "', --help lists them");
        if (at + 1 == arguments.size() || arguments[at + 1].empty())
            return ProblemOf("option ", name, " wants a value");
        const std::string_view value = arguments[++at];
        if (path != nullptr) {
            *path = value;
        } else if (name == "--address") {
            options.address = value;
        } else if (const auto port = ParseNumber<std::uint16_t>(value, 0, UINT16_MAX)) {
            options.port = *port;
        } else {
            return ProblemOf("'", value, "' is no port, which is a number up to 65535");
        }
    }
    if (options.certificate.empty() != options.key.empty())
        return Failure{"--certificate and --key go together"};
    return options;
}

std::variant<std::string, Failure> ReadToken(const std::filesystem::path& file) {
    std::string token;
    if (file.empty()) {
        const char* const variable = std::getenv(kTokenVariable);
        if (variable == nullptr) return Failure{"there is no token: set CORVANTA_TOKEN or give --token-file"};
        token = variable;
    } else {
        struct stat found {};
        std::ifstream stream(file);
        if (!stream || ::stat(file.c_str(), &found) != 0 || !S_ISREG(found.st_mode))
            return ProblemOf("the token's file '", file.native(), "' cannot be read");
        if ((found.st_mode & (S_IRWXG | S_IRWXO)) != 0)
            return ProblemOf("the token's file '", file.native(), "' is open to others: chmod 600 it");
        std::getline(stream, token);
        while (!token.empty() && (token.back() == '\r' || token.back() == ' ')) token.pop_back();
    }
    if (!IsToken(token))
        return Failure{"the token has to be 1 to 1024 printable ASCII letters without blanks"};
    return token;
}

}  // namespace Corvanta::Engine
