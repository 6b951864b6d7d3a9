// A folder of a test's own, removed with all that is in it.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <system_error>

namespace Corvanta::Engine {

class TemporaryFolder final {
public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "corvanta-test-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) ADD_FAILURE() << "no temporary folder";
        path = pattern;
    }
    ~TemporaryFolder() {
        std::error_code error;
        std::filesystem::permissions(path, std::filesystem::perms::owner_all, error);
        std::filesystem::remove_all(path, error);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] std::filesystem::path File(const std::string& name) const { return path / name; }

    void Write(const std::string& name, const std::string& content) const {
        std::ofstream(File(name), std::ios::binary) << content;
    }
    [[nodiscard]] std::string Read(const std::string& name) const {
        std::ostringstream content;
        content << std::ifstream(File(name), std::ios::binary).rdbuf();
        return content.str();
    }

    std::filesystem::path path;
};

}  // namespace Corvanta::Engine
