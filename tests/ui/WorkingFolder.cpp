#include "tests/ui/WorkingFolder.h"

#include <SDL.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace Corvanta::Testing {
namespace {

std::filesystem::path MakeFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "corvanta-test.XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("No temporary folder");
    return pattern;
}

}  // namespace

WorkingFolder::WorkingFolder() : previous_(std::filesystem::current_path()), folder_(MakeFolder()) {
    std::filesystem::current_path(folder_);
}

WorkingFolder::~WorkingFolder() {
    std::filesystem::current_path(previous_);
    std::filesystem::remove_all(folder_);
}

void WorkingFolder::AddPicture(const std::string& name, int width, int height, unsigned argb) const {
    std::filesystem::create_directories((folder_ / name).parent_path());
    SDL_Surface* const surface =
        SDL_CreateRGBSurfaceWithFormat(0, width, height, 32, SDL_PIXELFORMAT_ARGB8888);
    SDL_FillRect(surface, nullptr, argb);
    const bool saved = SDL_SaveBMP(surface, (folder_ / name).c_str()) == 0;
    SDL_FreeSurface(surface);
    if (!saved) throw std::runtime_error(SDL_GetError());
}

void WorkingFolder::AddFile(const std::string& name, const std::filesystem::path& original) const {
    std::filesystem::create_directories((folder_ / name).parent_path());
    std::filesystem::copy_file(original, folder_ / name, std::filesystem::copy_options::overwrite_existing);
}

void WorkingFolder::Remove(const std::string& name) const {
    std::filesystem::remove(folder_ / name);
}

}  // namespace Corvanta::Testing
