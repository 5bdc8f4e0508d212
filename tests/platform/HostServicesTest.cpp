// SPDX-License-Identifier: Apache-2.0
#include "platform/Controls.h"
#include "platform/PlugInHost.h"
#include "tests/platform/TestSupport.h"

namespace {

using CFUUIDTest = OwnershipTest;
using PlugInHostTest = OwnershipTest;
using ControlsTest = OwnershipTest;

TEST_F(CFUUIDTest, TextIsReadInEitherCaseAndOnlyInItsOneShape) {
    CFRef<CFUUIDRef> const uuid(
        CFUUIDCreateFromString(nullptr, CFSTR("bcb07250-B738-11d3-8519-0050E4603277")));
    ASSERT_TRUE(uuid);
    EXPECT_EQ(CFUUIDGetUUIDBytes(uuid).byte[0], 0xBC);
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
    CFRef<CFUUIDRef> const second(CFUUIDCreate(nullptr));
    EXPECT_FALSE(CFEqual(first, second));
    CFRef<CFStringRef> const text(CFUUIDCreateString(nullptr, first));
    EXPECT_EQ(CFStringGetCharacterAtIndex(text, 14), u'4');
    EXPECT_NE(std::u16string_view(u"89AB").find(CFStringGetCharacterAtIndex(text, 19)),
              std::u16string_view::npos);
    CFRef<CFUUIDRef> const again(CFUUIDCreateFromString(nullptr, text));
    EXPECT_TRUE(CFEqual(first, again));
}

TEST_F(PlugInHostTest, InstancesAreCountedForEachFactory) {
    CFRef<CFUUIDRef> const factory(CFUUIDCreate(nullptr));
    CFRef<CFUUIDRef> const other(CFUUIDCreate(nullptr));
    CFPlugInAddInstanceForFactory(factory);
    CFPlugInAddInstanceForFactory(factory);
    CFPlugInAddInstanceForFactory(other);
    CFPlugInRemoveInstanceForFactory(factory);
    EXPECT_EQ(CFPlugInInstanceCount(factory), 1);
    EXPECT_EQ(CFPlugInInstanceCount(other), 1);
    CFPlugInRemoveInstanceForFactory(factory);
    CFPlugInRemoveInstanceForFactory(factory);
    CFPlugInRemoveInstanceForFactory(other);
    EXPECT_EQ(CFPlugInInstanceCount(factory), 0);
}

TEST_F(ControlsTest, APaneLeadsToItsWindowAndASheetToItsParent) {
    auto* document = CreateHostWindow({100, 50, 500, 650}, nullptr);
    auto* sheet = CreateHostWindow({120, 60, 400, 460}, document);
    auto* pane = CreateUserPane(sheet, true);
    EXPECT_TRUE(IsControlVisible(pane));
    EXPECT_FALSE(IsControlVisible(nullptr));
    EXPECT_EQ(GetControlOwner(pane), sheet);
    WindowRef parent = nullptr;
    EXPECT_EQ(GetSheetWindowParent(sheet, &parent), noErr);
    EXPECT_EQ(parent, document);
    EXPECT_EQ(GetSheetWindowParent(document, &parent), errInvalidWindowRef);
    EXPECT_EQ(parent, nullptr);

    MoveWindow(sheet, -5, 32767, false);
    Rect bounds{};
    EXPECT_EQ(GetWindowBounds(sheet, kWindowContentRgn, &bounds), noErr);
    EXPECT_EQ(bounds.left, -5);
    EXPECT_EQ(bounds.right, 395);
    EXPECT_EQ(bounds.top, 32767);
    EXPECT_EQ(bounds.bottom, 32767);  // as far as a coordinate goes
    EXPECT_EQ(GetWindowBounds(nullptr, kWindowContentRgn, &bounds), errInvalidWindowRef);
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
    EXPECT_NE(nib, nullptr);
    DisposeNibReference(nib);
    for (auto const name : {CFSTR("Bad"), CFSTR("Absent"), CFSTR("../Resources/Pane")}) {
        EXPECT_EQ(CreateNibReferenceWithCFBundle(bundle, name, &nib),
                  kIBCarbonRuntimeCantFindNibFile);
        EXPECT_EQ(nib, nullptr);
    }
    EXPECT_NE(CreateNibReferenceWithCFBundle(nullptr, CFSTR("Pane"), &nib), noErr);
}

}  // namespace
