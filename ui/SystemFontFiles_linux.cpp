#include <fontconfig/fontconfig.h>

#include <memory>

#include "ui/SystemFontFiles.h"

namespace Corvanta::UI {
namespace {

using Pattern = std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)>;
using ObjectSet = std::unique_ptr<FcObjectSet, decltype(&FcObjectSetDestroy)>;
using FontSet = std::unique_ptr<FcFontSet, decltype(&FcFontSetDestroy)>;

[[nodiscard]] const FcChar8* ToFc(const char* text) {
    return reinterpret_cast<const FcChar8*>(text);
}

enum class Faces { RegularRoman, All };

// The family in which every other one that is missing is drawn: without it a system that has no fonts but
// free ones would show no text at all. Its stand-in is of the same widths.
constexpr char kDefaultFamily[] = "Arial";
constexpr char kStandIn[] = "Liberation Sans";

// The family's first file by name, so that the answer does not depend on the order of folders.
[[nodiscard]] std::string FirstFile(FcConfig* config, const std::string& family, Faces faces) {
    const Pattern pattern(FcPatternCreate(), &FcPatternDestroy);
    FcPatternAddString(pattern.get(), FC_FAMILY, ToFc(family.c_str()));
    FcPatternAddString(pattern.get(), FC_FONTFORMAT, ToFc("TrueType"));
    if (faces == Faces::RegularRoman) {
        FcPatternAddInteger(pattern.get(), FC_WEIGHT, FC_WEIGHT_REGULAR);
        FcPatternAddInteger(pattern.get(), FC_SLANT, FC_SLANT_ROMAN);
    }
    const ObjectSet wanted(FcObjectSetBuild(FC_FILE, nullptr), &FcObjectSetDestroy);
    // A list holds installed fonts alone, where a match would answer with a substitute.
    const FontSet fonts(FcFontList(config, pattern.get(), wanted.get()), &FcFontSetDestroy);
    std::string lowest;
    for (int index = 0; fonts != nullptr && index < fonts->nfont; ++index) {
        FcChar8* file = nullptr;
        if (FcPatternGetString(fonts->fonts[index], FC_FILE, 0, &file) != FcResultMatch) continue;
        const std::string path = reinterpret_cast<const char*>(file);
        if (lowest.empty() || path < lowest) lowest = path;
    }
    return lowest;
}

// The regular roman face; some families have no such face at all: a black one, a script.
[[nodiscard]] std::string FileOf(FcConfig* config, const std::string& family) {
    std::string path = FirstFile(config, family, Faces::RegularRoman);
    if (path.empty()) path = FirstFile(config, family, Faces::All);
    return path;
}

}  // namespace

SystemFontFiles::SystemFontFiles() : first_(FcInitLoadConfigAndFonts()) {}

SystemFontFiles::~SystemFontFiles() {
    if (first_ != nullptr) FcConfigDestroy(static_cast<FcConfig*>(first_));
}

std::string SystemFontFiles::Find(const std::string& family) const {
    if (first_ == nullptr) return {};
    auto* config = static_cast<FcConfig*>(first_);
    std::string path = FileOf(config, family);
    if (path.empty() && family == kDefaultFamily) path = FileOf(config, kStandIn);
    return path;
}

}  // namespace Corvanta::UI
