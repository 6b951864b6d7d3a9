#include "tests/drawing/TestFont.h"

#include <SDL_ttf.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "ui/SystemFontProvider.h"

namespace Corvanta::Testing {

namespace {

namespace Files = std::filesystem;

// A folder that is the only one in which fonts are looked for, for as long as it lives.
class FontFolder final {
public:
    FontFolder() {
        std::string folder = (Files::temp_directory_path() / "corvanta-fonts.XXXXXX").string();
        if (mkdtemp(folder.data()) == nullptr) throw std::runtime_error("No temporary folder");
        folder_ = folder;
        Files::create_directories(folder_ / "fonts");
        std::ofstream(folder_ / "fonts.conf")
            << "<?xml version=\"1.0\"?>\n<!DOCTYPE fontconfig SYSTEM \"fonts.dtd\">\n<fontconfig>\n<dir>"
            << (folder_ / "fonts").string() << "</dir>\n<cachedir>" << (folder_ / "cache").string()
            << "</cachedir>\n<match target=\"scan\"><edit name=\"family\" mode=\"assign\">"
               "<string>Arial</string></edit></match>\n</fontconfig>\n";
        setenv("FONTCONFIG_FILE", (folder_ / "fonts.conf").c_str(), 1);
    }
    ~FontFolder() {
        unsetenv("FONTCONFIG_FILE");
        Files::remove_all(folder_);
    }
    FontFolder(const FontFolder&) = delete;
    FontFolder& operator=(const FontFolder&) = delete;

    // A shipped font that says to be Arial.
    void AddArial() const {
        Files::copy_file(Files::path(CORVANTA_FONT_SOURCES) / "Inter-Regular.ttf",
                         folder_ / "fonts" / "arial.ttf");
    }

private:
    Files::path folder_;
};

// The library stays up for the process's life, as fonts do.
[[nodiscard]] bool HasArial() {
    TTF_Init();
    return UI::SystemFontProvider::Instance().GetFont("Arial") != nullptr;
}

}  // namespace

void UseTestFont() {
    const FontFolder folder;
    folder.AddArial();
    if (!HasArial()) throw std::runtime_error("The test's font was not found");
}

void UseNoFonts() {
    const FontFolder folder;
    if (HasArial()) throw std::runtime_error("Fonts had been looked for before");
}

}  // namespace Corvanta::Testing
