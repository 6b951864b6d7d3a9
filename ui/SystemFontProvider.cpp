#include "ui/SystemFontProvider.h"

#include "platform/Logger.h"
#include "ui/SystemFontFiles.h"

namespace Corvanta::UI {
namespace {

constexpr int kFontSize = 120;

}  // namespace

SystemFontProvider& SystemFontProvider::Instance() {
    static SystemFontProvider provider;
    return provider;
}

const std::vector<std::string>& SystemFontProvider::Families() {
    static const std::vector<std::string> kFamilies = {"Arial",           "Arial Black",
                                                       "Arial Narrow",    "Arial Rounded MT Bold",
                                                       "Baskerville",     "Book Antiqua",
                                                       "Brush Script MT", "Calibri",
                                                       "Calisto MT",      "Candara",
                                                       "Century Gothic",  "Consolas",
                                                       "Copperplate",     "Courier New",
                                                       "Garamond",        "Georgia",
                                                       "Gill Sans",       "Goudy Old Style",
                                                       "Helvetica",       "Impact",
                                                       "Lucida Bright",   "Lucida Sans Typewriter",
                                                       "Palatino",        "Papyrus",
                                                       "Tahoma",          "Times New Roman",
                                                       "Trebuchet MS",    "Verdana"};
    return kFamilies;
}

SystemFontProvider::SystemFontProvider() {
    const SystemFontFiles files;
    for (const std::string& family : Families()) {
        const std::string path = files.Find(family);
        TTF_Font* font = path.empty() ? nullptr : TTF_OpenFont(path.c_str(), kFontSize);
        if (font == nullptr) {
            LOG(3, "Couldn't find requested font '%s'", family.c_str());
        } else {
            fonts_.emplace(family, font);
        }
    }
}

SystemFontProvider::~SystemFontProvider() {
    // The font library may have been taken down by the host, and its fonts with it.
    if (TTF_WasInit() == 0) return;
    for (const auto& [family, font] : fonts_) TTF_CloseFont(font);
}

TTF_Font* SystemFontProvider::GetFont(const std::string& family) const {
    const auto found = fonts_.find(family);
    return found == fonts_.end() ? nullptr : found->second;
}

}  // namespace Corvanta::UI
