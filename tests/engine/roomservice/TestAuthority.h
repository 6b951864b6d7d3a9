// Certificates of a test's own: an authority, and a server's that it vouches for.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/engine/TemporaryFolder.h"

namespace Corvanta::Engine {

class TestAuthority final {
public:
    TestAuthority() {
        std::string commands = "cd '";
        commands += folder.path.string();
        commands += "' && exec >log 2>&1 && ";
        commands +=
            "openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2 -subj "
            "'/CN=Test' "
            "-keyout authority.key -out authority.pem && "
            "openssl req -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -subj '/CN=service' "
            "-keyout service.key -out service.request && "
            "printf 'subjectAltName=IP:127.0.0.1,DNS:localhost' >names && "
            "openssl x509 -req -in service.request -CA authority.pem -CAkey authority.key -CAcreateserial "
            "-days 2 -extfile names -out service.pem";
        if (std::system(commands.c_str()) != 0) ADD_FAILURE() << folder.Read("log");
    }

    [[nodiscard]] std::filesystem::path Authority() const { return folder.File("authority.pem"); }
    [[nodiscard]] std::filesystem::path Certificate() const { return folder.File("service.pem"); }
    [[nodiscard]] std::filesystem::path Key() const { return folder.File("service.key"); }

private:
    TemporaryFolder folder;
};

}  // namespace Corvanta::Engine
