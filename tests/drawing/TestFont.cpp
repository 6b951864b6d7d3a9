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

// A shipped font that says to be another one, in a folder that is the only one with fonts.
void Install(const Files::path& folder) {
    Files::create_directories(folder / "fonts");
    Files::copy_file(Files::path(CORVANTA_FONT_SOURCES) / "Inter-Regular.ttf",
                     folder / "fonts" / "arial.ttf");
    std::ofstream(folder / "fonts.conf")
        << "<?xml version=\"1.0\"?>\n<!DOCTYPE fontconfig SYSTEM \"fonts.dtd\">\n<fontconfig>\n<dir>"
        << (folder / "fonts").string() << "</dir>\n<cachedir>" << (folder / "cache").string()
        << "</cachedir>\n<match target=\"scan\"><edit name=\"family\" mode=\"assign\">"
           "<string>Arial</string></edit></match>\n</fontconfig>\n";
    setenv("FONTCONFIG_FILE", (folder / "fonts.conf").c_str(), 1);
}

}  // namespace

void UseTestFont() {
    std::string folder = (Files::temp_directory_path() / "corvanta-fonts.XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr) throw std::runtime_error("No temporary folder");
    Install(folder);
    // The library stays up for the process's life, as the font does.
    TTF_Init();
    const bool found = UI::SystemFontProvider::Instance().GetFont("Arial") != nullptr;
    unsetenv("FONTCONFIG_FILE");
    Files::remove_all(folder);
    if (!found) throw std::runtime_error("The test's font was not found");
}

}  // namespace Corvanta::Testing
