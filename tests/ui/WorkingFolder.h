// An empty folder that is the process's working directory for the life of the object, with files that a test
// puts there. One at a time.
#pragma once

#include <filesystem>
#include <string>

namespace Corvanta::Testing {

class WorkingFolder final {
public:
    WorkingFolder();
    ~WorkingFolder();
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;

    // A picture of that size in one colour, 0xAARRGGBB; the name may hold folders, which are made.
    void AddPicture(const std::string& name, int width, int height, unsigned argb) const;
    // A copy of the file.
    void AddFile(const std::string& name, const std::filesystem::path& original) const;
    void Remove(const std::string& name) const;

private:
    std::filesystem::path previous_;
    std::filesystem::path folder_;
};

}  // namespace Corvanta::Testing
