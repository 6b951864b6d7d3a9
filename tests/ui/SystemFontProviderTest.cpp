#include "ui/SystemFontProvider.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "tests/fake_platform/CallLog.h"
#include "tests/fake_platform/FakePlatform.h"
#include "tests/fake_platform/SdlRecorder.h"
#include "ui/SystemFontFiles.h"

namespace Corvanta::UI {
namespace {

using Testing::Calls;
using Testing::Fake;
using Testing::LogLine;
using Testing::Sdl;
namespace Files = std::filesystem;

// A system with the fonts that a test wants, whatever is installed where the test runs: copies of a shipped
// font that say to be of other families.
class FontSystem final {
public:
    FontSystem() {
        std::string pattern = (Files::temp_directory_path() / "corvanta-fonts.XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("No temporary folder");
        folder_ = pattern;
        Files::create_directories(folder_ / "fonts");
        if (const char* before = std::getenv("FONTCONFIG_FILE")) before_ = before;
    }
    ~FontSystem() {
        if (before_.empty()) {
            unsetenv("FONTCONFIG_FILE");
        } else {
            setenv("FONTCONFIG_FILE", before_.c_str(), 1);
        }
        Files::remove_all(folder_);
    }
    FontSystem(const FontSystem&) = delete;
    FontSystem& operator=(const FontSystem&) = delete;

    // weight and slant by fontconfig's names.
    void Add(const std::string& file, const std::string& family, const std::string& weight = "regular",
             const std::string& slant = "roman", const std::string& format = "TrueType") {
        Files::copy_file(Files::path(CORVANTA_FONT_SOURCES) / "Inter-Regular.ttf", Path(file));
        rules_ += "<match target=\"scan\"><test name=\"file\" compare=\"contains\"><string>/" + file +
                  "</string></test>" + Edit("family", "<string>" + family + "</string>") +
                  Edit("weight", "<const>" + weight + "</const>") +
                  Edit("slant", "<const>" + slant + "</const>") +
                  Edit("fontformat", "<string>" + format + "</string>") + "</match>\n";
    }
    // Where the family is asked for, the system would rather answer with the other one.
    void Prefer(const std::string& family, const std::string& other) {
        rules_ += "<alias binding=\"same\"><family>" + family + "</family><prefer><family>" + other +
                  "</family></prefer></alias>\n";
    }
    // From here on, fonts are looked for in this system.
    void Use() const {
        std::ofstream(folder_ / "fonts.conf")
            << "<?xml version=\"1.0\"?>\n<!DOCTYPE fontconfig SYSTEM \"fonts.dtd\">\n<fontconfig>\n<dir>"
            << (folder_ / "fonts").string() << "</dir>\n<cachedir>" << (folder_ / "cache").string()
            << "</cachedir>\n"
            << rules_ << "</fontconfig>\n";
        setenv("FONTCONFIG_FILE", (folder_ / "fonts.conf").c_str(), 1);
    }
    [[nodiscard]] std::string Path(const std::string& file) const {
        return (folder_ / "fonts" / file).string();
    }

private:
    static std::string Edit(const std::string& name, const std::string& value) {
        return "<edit name=\"" + name + "\" mode=\"assign\">" + value + "</edit>";
    }

    Files::path folder_;
    std::string before_;
    std::string rules_;
};

TEST(SystemFontFiles, FindTheFileOfAnInstalledFamily) {
    FontSystem system;
    system.Add("georgia.ttf", "Georgia");
    system.Add("other.ttf", "Other");
    system.Use();
    EXPECT_EQ(SystemFontFiles().Find("Georgia"), system.Path("georgia.ttf"));
}

TEST(SystemFontFiles, NeverAnswerWithASubstitute) {
    FontSystem system;
    system.Add("georgia.ttf", "Georgia");
    system.Prefer("Arial", "Georgia");
    system.Use();
    const SystemFontFiles files;
    EXPECT_EQ(files.Find("Arial"), "");
    EXPECT_EQ(files.Find("Georgia Pro"), "");
    EXPECT_EQ(files.Find("Georg"), "");
    EXPECT_EQ(files.Find(""), "");
}

TEST(SystemFontFiles, AnswerWithTheFamilyOfTheSameWidthsWhereArialAloneIsMissing) {
    FontSystem system;
    system.Add("sans.ttf", "Liberation Sans");
    system.Add("serif.ttf", "Liberation Serif");
    system.Add("mono.ttf", "Liberation Mono");
    system.Use();
    const SystemFontFiles files;
    EXPECT_EQ(files.Find("Arial"), system.Path("sans.ttf"));
    for (const char* const family : {"Helvetica", "Times New Roman", "Courier New", "Verdana"})
        EXPECT_EQ(files.Find(family), "") << family;
}

TEST(SystemFontFiles, PreferArialToItsStandIn) {
    FontSystem system;
    system.Add("a-sans.ttf", "Liberation Sans");
    system.Add("b-arial.ttf", "Arial");
    system.Use();
    EXPECT_EQ(SystemFontFiles().Find("Arial"), system.Path("b-arial.ttf"));
}

TEST(SystemFontFiles, PreferTheRegularRomanFace) {
    FontSystem system;
    system.Add("a-bold.ttf", "Georgia", "bold");
    system.Add("b-italic.ttf", "Georgia", "regular", "italic");
    system.Add("c-regular.ttf", "Georgia");
    system.Use();
    EXPECT_EQ(SystemFontFiles().Find("Georgia"), system.Path("c-regular.ttf"));
}

TEST(SystemFontFiles, AnswerWithTheFirstOfSeveralByPath) {
    FontSystem system;
    system.Add("b.ttf", "Georgia");
    system.Add("a.ttf", "Georgia");
    system.Add("c.ttf", "Georgia");
    system.Use();
    EXPECT_EQ(SystemFontFiles().Find("Georgia"), system.Path("a.ttf"));
}

TEST(SystemFontFiles, TakeWhatAFamilyWithoutARegularRomanFaceHas) {
    FontSystem system;
    system.Add("black.ttf", "Arial Black", "black");
    system.Add("script.ttf", "Brush Script MT", "regular", "italic");
    system.Add("d.ttf", "Copperplate", "light");
    system.Add("e.ttf", "Copperplate", "bold");
    system.Use();
    const SystemFontFiles files;
    EXPECT_EQ(files.Find("Arial Black"), system.Path("black.ttf"));
    EXPECT_EQ(files.Find("Brush Script MT"), system.Path("script.ttf"));
    EXPECT_EQ(files.Find("Copperplate"), system.Path("d.ttf"));
}

TEST(SystemFontFiles, PassOverOtherFormats) {
    FontSystem system;
    system.Add("type1.ttf", "Palatino", "regular", "roman", "Type 1");
    system.Use();
    EXPECT_EQ(SystemFontFiles().Find("Palatino"), "");
}

TEST(SystemFontFiles, FindNothingWithoutFonts) {
    FontSystem system;
    system.Use();
    EXPECT_EQ(SystemFontFiles().Find("Arial"), "");
}

// The provider is made once in a process, here in a system of five of its families, of which the first cannot
// be opened.
class SystemFontProviderTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        FontSystem system;
        system.Add("impact.ttf", "Impact");
        system.Add("verdana.ttf", "Verdana");
        system.Add("arial.ttf", "Arial");
        system.Add("black.ttf", "Arial Black", "black");
        system.Add("times.ttf", "Times New Roman");
        system.Use();
        Fake().Reset();
        Sdl().Reset();
        Calls().Reset();
        // The library stays up for the process's life, as the fonts do.
        TTF_Init();
        Sdl().Fail("TTF_OpenFont");
        (void)SystemFontProvider::Instance();
        logs_ = Fake().Logs();
        for (const Testing::Call& call : Calls().Of("TTF_OpenFont")) opened_.push_back(call.arguments);
        Calls().Reset();
        Sdl().Reset();
    }

    static inline std::vector<LogLine> logs_;
    static inline std::vector<std::vector<std::string>> opened_;
};

const std::vector<std::string> kOpenable = {"Arial Black", "Impact", "Times New Roman", "Verdana"};

TEST_F(SystemFontProviderTest, KnowsItsFamiliesInTheirOrder) {
    EXPECT_EQ(SystemFontProvider::Families(),
              (std::vector<std::string>{"Arial",           "Arial Black",
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
                                        "Trebuchet MS",    "Verdana"}));
}

TEST_F(SystemFontProviderTest, OpensEachInstalledFamilyOnceInTheirOrder) {
    ASSERT_EQ(opened_.size(), 5U);
    const char* const files[] = {"arial.ttf", "black.ttf", "impact.ttf", "times.ttf", "verdana.ttf"};
    for (size_t index = 0; index < opened_.size(); ++index) {
        EXPECT_EQ(Files::path(opened_[index][0]).filename(), files[index]);
        EXPECT_EQ(opened_[index][1], "120");
    }
}

TEST_F(SystemFontProviderTest, ReportsEachFamilyThatItCannotOpen) {
    std::vector<LogLine> expected;
    for (const std::string& family : SystemFontProvider::Families()) {
        if (std::count(kOpenable.begin(), kOpenable.end(), family) != 0) continue;
        expected.push_back({3, "Couldn't find requested font '" + family + "'"});
    }
    EXPECT_EQ(expected.size(), 24U);
    EXPECT_EQ(logs_, expected);
}

TEST_F(SystemFontProviderTest, HandsOutTheFontOfAFamily) {
    const SystemFontProvider& provider = SystemFontProvider::Instance();
    TTF_Font* const verdana = provider.GetFont("Verdana");
    ASSERT_NE(verdana, nullptr);
    EXPECT_EQ(provider.GetFont("Verdana"), verdana);
    EXPECT_NE(provider.GetFont("Times New Roman"), verdana);
    EXPECT_GT(TTF_FontHeight(verdana), 120);
    EXPECT_EQ(Calls().Count("TTF_OpenFont"), 0U);
}

TEST_F(SystemFontProviderTest, HasNoFontForWhatIsNotThere) {
    const SystemFontProvider& provider = SystemFontProvider::Instance();
    EXPECT_EQ(provider.GetFont("Arial"), nullptr);
    EXPECT_EQ(provider.GetFont("Georgia"), nullptr);
    EXPECT_EQ(provider.GetFont("verdana"), nullptr);
    EXPECT_EQ(provider.GetFont(""), nullptr);
}

TEST_F(SystemFontProviderTest, IsOne) {
    EXPECT_EQ(&SystemFontProvider::Instance(), &SystemFontProvider::Instance());
}

}  // namespace
}  // namespace Corvanta::UI
