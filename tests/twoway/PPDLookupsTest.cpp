// SPDX-License-Identifier: Apache-2.0
#include "twoway/PPDLookups.h"

#include <cstring>
#include <utility>

#include "PPDX/PPDObjects/PPDXScrollPane.h"
#include "tests/PPDX/PPDObjects/Controls/ControlHelpers.h"
#include "tests/PPDX/PPDObjects/PPDText.h"
#include "tests/platform/TestSupport.h"
#include "twoway/RandomFileName.h"

namespace {

TEST(PPDLookupsTest, DisplayNamesOfPopupItemsCountFromOne) {
    auto const popup =
        NewPopup("*InputSlot", {{"Auto", "自動", nullptr}, {"Upper", "Upper tray", nullptr}});
    std::pair<long, char const*> const cases[] = {
        {1, "自動"}, {2, "Upper tray"}, {0, ""}, {3, ""}, {-1, ""}};
    for (auto const& [index, expected] : cases) {
        CFRef<CFMutableStringRef> const name(CFStringCreateMutableCopy(nullptr, 0, Str("old")));
        EXPECT_EQ(GetPPDPopupItemDisplayNameAsCFString(popup.get(), index, name), *expected != 0);
        EXPECT_EQ(Text(name), expected) << index;
    }
    EXPECT_FALSE(GetPPDPopupItemDisplayNameAsCFString(popup.get(), 1, nullptr));
}

TEST(PPDLookupsTest, AScrollPaneIsFoundByTheKeywordOfItsPage) {
    PPDPtr const ppd = ParseBody(std::string(kTree) + "*%ZUBPropPage Empty/Empty: True\n");
    PPDXScrollPane* pane = nullptr;
    ASSERT_TRUE(GetScrollPane(ppd.get(), "Layout", pane));
    EXPECT_STREQ(pane->Keyword(), "Pane1");
    char const* const absent[] = {"layout", "Lay", "Empty", "", nullptr};
    for (char const* const keyword : absent) {
        EXPECT_FALSE(GetScrollPane(ppd.get(), keyword, pane));
        EXPECT_EQ(pane, nullptr);
    }
}

TEST(RandomFileNameTest, ANameIsThePrefixAndANewUUID) {
    char text[kRandomFileNameSize];
    CFRef<CFStringRef> const name(CreateRandomFileName("/tmp/É", text));
    EXPECT_EQ(Text(name), text);
    ASSERT_EQ(Text(name).find("/tmp/É"), 0U);
    CFRef<CFUUIDRef> const uuid(CFUUIDCreateFromString(nullptr, Str(text + std::strlen("/tmp/É"))));
    EXPECT_NE(uuid.Get(), nullptr) << text;
    CFRef<CFStringRef> const tooLong(CreateRandomFileName(std::string(220, 'x').c_str(), text));
    EXPECT_EQ(CFStringGetLength(tooLong), 256);
    EXPECT_STREQ(text, "");
}

}  // namespace
