// SPDX-License-Identifier: Apache-2.0
#include <pwd.h>
#include <unistd.h>

#include "platform/Controls.h"
#include "platform/PlugInHost.h"
#include "platform/Testing.h"
#include "platform/UserIdentity.h"
#include "tests/platform/TestSupport.h"

namespace {

using CFUUIDTest = OwnershipTest;
using ControlsTest = OwnershipTest;

TEST_F(CFUUIDTest, TextIsReadInEitherCaseAndOnlyInItsOneShape) {
    CFRef<CFUUIDRef> const uuid(
        CFUUIDCreateFromString(nullptr, CFSTR("bcb07250-B738-11d3-8519-0050E4603277")));
    ASSERT_TRUE(uuid);
    EXPECT_EQ(CFUUIDGetUUIDBytes(uuid).byte[15], 0x77);
    CFRef<CFStringRef> const text(CFUUIDCreateString(nullptr, uuid));
    EXPECT_EQ(Text(text), kPrinterInfoTypeID);
    for (char const* bad :
         {"", "BCB07250B73811D385190050E4603277", "BCB07250-B738-11D3-8519-0050E460327",
          "BCB07250-B738-11D3-8519-0050E460327G", "BCB07250-B738-11D3-85190-050E4603277",
          "BCB07250-B738-11D3-8519-0050E46032771"}) {
        EXPECT_EQ(CFUUIDCreateFromString(nullptr, Str(bad)), nullptr) << bad;
    }
}

TEST_F(CFUUIDTest, NewOnesDifferAndAreMarkedAsRandom) {
    CFRef<CFUUIDRef> const first(CFUUIDCreate(nullptr));
    EXPECT_FALSE(CFEqual(first, CFRef<CFUUIDRef>(CFUUIDCreate(nullptr))));
    EXPECT_EQ(CFUUIDGetUUIDBytes(first).byte[6] >> 4, 4);
    EXPECT_EQ(CFUUIDGetUUIDBytes(first).byte[8] >> 6, 2);
}

TEST_F(ControlsTest, APaneLeadsToItsWindowAndASheetToItsParent) {
    auto* document = CreateHostWindow({100, 50, 500, 650}, nullptr);
    auto* sheet = CreateHostWindow({120, 60, 400, 460}, document);
    auto* pane = CreateUserPane(sheet, true);
    EXPECT_TRUE(IsControlVisible(pane));
    EXPECT_EQ(GetControlOwner(pane), sheet);
    WindowRef parent = nullptr;
    EXPECT_EQ(GetSheetWindowParent(sheet, &parent), noErr);
    EXPECT_EQ(parent, document);
    EXPECT_EQ(GetSheetWindowParent(document, &parent), errInvalidWindowRef);

    MoveWindow(sheet, -5, 32767, false);
    Rect bounds{};
    EXPECT_EQ(GetWindowBounds(sheet, kWindowContentRgn, &bounds), noErr);
    EXPECT_EQ(bounds.left, -5);
    EXPECT_EQ(bounds.right, 395);
    EXPECT_EQ(bounds.top, 32767);
    EXPECT_EQ(bounds.bottom, 32767);  // as far as a coordinate goes
    DisposeUserPane(pane);
    DisposeHostWindow(sheet);
    DisposeHostWindow(document);
}

TEST_F(ControlsTest, ANibOpensWhenItIsAPropertyList) {
    TemporaryFolder const folder;
    folder.Write("Contents/Info.plist", "<plist><dict/></plist>");
    folder.Write("Contents/Resources/Pane.nib", "<plist><dict/></plist>");
    folder.Write("Contents/Resources/Bad.nib", "no list");
    CFRef<CFBundleRef> const bundle(CFBundleCreate(nullptr, FileURL(folder.Path(), true)));
    IBNibRef nib = nullptr;
    EXPECT_EQ(CreateNibReferenceWithCFBundle(bundle, CFSTR("Pane"), &nib), noErr);
    DisposeNibReference(nib);
    for (auto const name : {CFSTR("Bad"), CFSTR("Absent"), CFSTR("../Resources/Pane")}) {
        EXPECT_EQ(CreateNibReferenceWithCFBundle(bundle, name, &nib),
                  kIBCarbonRuntimeCantFindNibFile);
        EXPECT_EQ(nib, nullptr);
    }
}

TEST(UserIdentityTest, TheNameIsTheRealUsersUnlessATestSaysAnother) {
    passwd const* const account = getpwuid(getuid());
    ASSERT_NE(account, nullptr);
    EXPECT_EQ(Text(CFRef<CFStringRef>(CSCopyUserName())), account->pw_name);
    SetUserName("J\xC3\xBCrg");
    EXPECT_EQ(Text(CFRef<CFStringRef>(CSCopyUserName())), "J\xC3\xBCrg");
    SetUserName(nullptr);
}

}  // namespace
