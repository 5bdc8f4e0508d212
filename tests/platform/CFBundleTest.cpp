// SPDX-License-Identifier: Apache-2.0
#include "tests/platform/TestSupport.h"

namespace {

std::string Dictionary(std::string const& entries) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist><dict>" + entries + "</dict></plist>";
}

std::string Entry(std::string const& key, std::string const& value) {
    return "<key>" + key + "</key><string>" + value + "</string>";
}

class CFBundleTest : public OwnershipTest {
  protected:
    CFRef<CFBundleRef> Create(std::string const& folder, std::string const& entries) {
        mFolder.Write(folder + "/Contents/Info.plist", Dictionary(entries));
        return CFRef<CFBundleRef>(CFBundleCreate(nullptr, FileURL(mFolder.Path(folder), true)));
    }
    void WriteTexts(std::string const& language, std::string const& entries,
                    std::string const& table = "Localizable") {
        mFolder.Write("a.plugin/Contents/Resources/" + language + ".lproj/" + table + ".strings",
                      Dictionary(entries));
    }

    TemporaryFolder mFolder;
    ScopedVariable mAllLocale{"LC_ALL", nullptr};
    ScopedVariable mMessages{"LC_MESSAGES", nullptr};
    ScopedVariable mLanguage{"LANG", nullptr};
};

TEST_F(CFBundleTest, IsKnownByItsIdentifierAsLongAsItLives) {
    auto first = Create("a.plugin", Entry("CFBundleIdentifier", "zub.test"));
    ASSERT_TRUE(first);
    auto second = Create("b.plugin", Entry("CFBundleIdentifier", "zub.test"));
    EXPECT_EQ(CFBundleGetBundleWithIdentifier(Str("zub.test")), second.Get());
    second = {};
    EXPECT_EQ(CFBundleGetBundleWithIdentifier(Str("zub.test")), first.Get());
    first = {};
    EXPECT_EQ(CFBundleGetBundleWithIdentifier(Str("zub.test")), nullptr);
}

TEST_F(CFBundleTest, TellsItsInformationAndItsPlace) {
    auto const bundle =
        Create("a.plugin", Entry("CFBundleVersion", "1.2") + "<key>CFPlugInTypes</key><dict/>");
    auto const* version = CFBundleGetValueForInfoDictionaryKey(bundle, CFSTR("CFBundleVersion"));
    EXPECT_TRUE(CFEqual(version, CFSTR("1.2")));
    EXPECT_EQ(CFBundleGetValueForInfoDictionaryKey(bundle, CFSTR("absent")), nullptr);
    mFolder.Write("bad/Contents/Info.plist", "<plist><array/></plist>");
    EXPECT_EQ(CFBundleCreate(nullptr, FileURL(mFolder.Path("bad"), true)), nullptr);
    CFRef<CFURLRef> const url(CFBundleCopyBundleURL(bundle));
    EXPECT_TRUE(CFEqual(url, FileURL(mFolder.Path("a.plugin"), true)));
}

TEST_F(CFBundleTest, TextsComeInTheUsersLanguageThenInEnglishThenAsGiven) {
    auto const bundle = Create("a.plugin", "");
    WriteTexts("English", Entry("Title", "Printer") + Entry("Only", "English"));
    WriteTexts("de", Entry("Title", "Drucker"));
    WriteTexts("Japanese", Entry("Title", "プリンタ"));
    WriteTexts("zh_TW", Entry("Title", "印表機"));
    WriteTexts("en", Entry("Pane", "Settings"), "Other");
    auto const text = [&](char const* key, CFStringRef value, CFStringRef table) {
        CFRef<CFStringRef> const found(CFBundleCopyLocalizedString(bundle, Str(key), value, table));
        return Text(found);
    };
    char const* const cases[][2] = {{"C", "Printer"},      {"de_AT.UTF-8", "Drucker"},
                                    {"de", "Drucker"},     {"ja_JP.UTF-8", "プリンタ"},
                                    {"zh_TW", "印表機"},   {"fr_FR", "Printer"},
                                    {"../../x", "Printer"}};
    for (auto const& [language, title] : cases) {
        ScopedVariable const locale("LC_MESSAGES", language);
        EXPECT_EQ(text("Title", nullptr, nullptr), title) << language;
        EXPECT_EQ(text("Only", nullptr, nullptr), "English") << language;
    }
    EXPECT_EQ(text("Pane", nullptr, CFSTR("Other")), "Settings");
    EXPECT_EQ(text("Missing", CFSTR("default"), nullptr), "default");
    EXPECT_EQ(text("Missing", CFSTR(""), nullptr), "Missing");
    EXPECT_EQ(text("Title", nullptr, CFSTR("../English.lproj/Localizable")), "Title");
}

TEST_F(CFBundleTest, FunctionsComeFromItsExecutable) {
    auto const bundle = Create("a.plugin", Entry("CFBundleExecutable", "Module"));
    auto const answer = CFSTR("AnswerOfTheLoadedModule");
    EXPECT_EQ(CFBundleGetFunctionPointerForName(bundle, answer), nullptr);
    std::filesystem::create_directories(mFolder.Path("a.plugin/Contents/MacOS"));
    std::filesystem::copy(LOADED_MODULE_FILE, mFolder.Path("a.plugin/Contents/MacOS/Module"));
    auto* function = CFBundleGetFunctionPointerForName(bundle, answer);
    ASSERT_NE(function, nullptr);
    EXPECT_EQ(reinterpret_cast<int (*)()>(function)(), 4711);
    EXPECT_EQ(CFBundleGetFunctionPointerForName(bundle, CFSTR("NoSuchFunction")), nullptr);
    EXPECT_EQ(CFBundleGetFunctionPointerForName(Create("b.plugin", ""), answer), nullptr);
    for (std::string const& name : {std::string("../../../a.plugin/Contents/MacOS/Module"),
                                    mFolder.Path("a.plugin/Contents/MacOS/Module")}) {
        auto const other = Create("c.plugin", Entry("CFBundleExecutable", name));
        std::filesystem::create_directories(mFolder.Path("c.plugin/Contents/MacOS"));
        EXPECT_EQ(CFBundleGetFunctionPointerForName(other, answer), nullptr) << name;
    }
}

}  // namespace
