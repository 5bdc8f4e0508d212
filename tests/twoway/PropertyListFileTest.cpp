// SPDX-License-Identifier: Apache-2.0
#include "twoway/PropertyListFile.h"

#include "tests/platform/TestSupport.h"
#include "twoway/PrinterListFile.h"

namespace {

class PropertyListFileTest : public OwnershipTest {
  protected:
    CFRef<CFURLRef> URL(std::string const& name = "") const {
        return FileURL(mFolder.Path(name), name.empty());
    }

    TemporaryFolder mFolder;
};

TEST_F(PropertyListFileTest, WhatIsSavedIsReadBackWhicheverWayTheFileIsNamed) {
    std::filesystem::create_directories(mFolder.Path("Library/Preferences"));
    ScopedVariable const home("HOME", mFolder.Path().c_str());
    CFRef<CFMutableArrayRef> const list(CFArrayCreateMutable(nullptr, 0));
    CFArrayAppendValue(list, CFSTR("first"));
    CFArrayAppendValue(list, kCFBooleanTrue);
    PropertyListFile below("/Library/Preferences/list.plist", kCFPropertyListImmutable);
    EXPECT_TRUE(below.IsFileValid()) << "a missing file is no failure";
    EXPECT_EQ(nullptr, below.PropertyList());
    ASSERT_TRUE(below.Save(list));

    PropertyListFile const byURL(URL("Library/Preferences/list.plist"), kCFPropertyListImmutable);
    PropertyListFile const inDirectory(URL("Library/Preferences"), CFSTR("list.plist"),
                                       kCFPropertyListImmutable);
    PropertyListFile const byPath("/Library/Preferences/list.plist", kCFPropertyListImmutable);
    for (PropertyListFile const* file : {&byURL, &inDirectory, &byPath}) {
        EXPECT_TRUE(file->IsFileValid());
        EXPECT_TRUE(CFEqual(list, file->PropertyList()));
    }
}

TEST_F(PropertyListFileTest, FailuresLeaveAnErrorAndNoList) {
    PropertyListFile missing(URL("none/list.plist"), kCFPropertyListImmutable);
    EXPECT_FALSE(missing.Save(CFSTR("text"))) << "its folder doesn't exist";
    EXPECT_NE(0, missing.FileError());

    mFolder.Write("text", "no list");
    PropertyListFile damaged(URL("text"), kCFPropertyListImmutable);
    EXPECT_EQ(nullptr, damaged.PropertyList());
    EXPECT_NE(0, damaged.FileError());
    EXPECT_FALSE(damaged.Save(nullptr));
    EXPECT_TRUE(damaged.Save(CFSTR("text")));
    EXPECT_EQ(0, damaged.FileError());
    EXPECT_TRUE(damaged.CreatePropertyListFromFile(URL("text"), kCFPropertyListImmutable));
    EXPECT_TRUE(CFEqual(CFSTR("text"), damaged.PropertyList()));

    PropertyListFile const nowhere(nullptr, CFSTR("list.plist"), kCFPropertyListImmutable);
    EXPECT_FALSE(nowhere.IsFileValid());
    for (char const* home : {static_cast<char const*>(nullptr), "relative", ""}) {
        ScopedVariable const noHome("HOME", home);
        PropertyListFile homeless("/list.plist", kCFPropertyListImmutable);
        EXPECT_TRUE(homeless.IsFileValid());
        EXPECT_FALSE(homeless.Save(CFSTR("text")));
    }
}

TEST_F(PropertyListFileTest, APrinterListNeedsANameInItsArray) {
    struct {
        char const* list;
        bool isValid;
    } const cases[] = {
        {"<dict><key>PCFILENAME</key><array><string>ZUB</string></array></dict>", true},
        {"<dict><key>PCFILENAME</key><string>ZUB</string></dict>", false},
        {"<dict><key>PCFILENAME</key><array/></dict>", false},
        {"<dict/>", false},
    };
    EXPECT_FALSE(PrinterListFile(URL(), kCFPropertyListImmutable).IsFileValid()) << "no file";
    for (auto const& row : cases) {
        mFolder.Write("PrinterList.plist", std::string("<plist>") + row.list + "</plist>");
        PrinterListFile const printers(URL(), kCFPropertyListImmutable);
        EXPECT_EQ(row.isValid, printers.IsFileValid()) << row.list;
        EXPECT_EQ(row.isValid ? 1 : 0, CFArrayGetCount(printers.PCFileNames())) << row.list;
    }
}

}  // namespace
