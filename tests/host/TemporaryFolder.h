// A folder of its own that goes with the test.
#pragma once

#include <filesystem>
#include <string>

#include <unistd.h>

namespace Corvanta::Host {

class TemporaryFolder final {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "corvanta-host-XXXXXX").string();
        path_ = ::mkdtemp(name.data());
    }
    ~TemporaryFolder() { std::filesystem::remove_all(path_); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& Path() const { return path_; }

private:
    std::filesystem::path path_;
};

}  // namespace Corvanta::Host
