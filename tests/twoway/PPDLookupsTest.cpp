// SPDX-License-Identifier: Apache-2.0
#include "twoway/PPDLookups.h"

#include <cstring>

#include "PPDX/PPDObjects/PPDXScrollPane.h"
#include "tests/PPDX/PPDObjects/Controls/ControlHelpers.h"
#include "tests/PPDX/PPDObjects/PPDText.h"
#include "tests/platform/TestSupport.h"
#include "twoway/RandomFileName.h"

namespace {

TEST(PPDLookupsTest, DisplayNamesOfPopupItemsCountFromOne) {
    auto const popup =
        NewPopup("*InputSlot", {{"Auto", "自動", nullptr}, {"Upper", "Upper tray", nullptr}});
    struct {
        long index;
        PPDXPopupControl* popup;
        bool result;
        char const* name;
    } const cases[] = {
        {1, popup.get(), true, "自動"}, {2, popup.get(), true, "Upper tray"},
        {0, popup.get(), false, ""},    {3, popup.get(), false, ""},
        {-1, popup.get(), false, ""},   {1, nullptr, false, ""},
    };
    for (auto const& row : cases) {
        CFRef<CFMutableStringRef> const name(CFStringCreateMutableCopy(nullptr, 0, Str("old")));
        EXPECT_EQ(GetPPDPopupItemDisplayNameAsCFString(row.popup, row.index, name), row.result);
        EXPECT_EQ(Text(name), row.name) << row.index;
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
    EXPECT_FALSE(GetScrollPane(nullptr, "Layout", pane));
}

TEST(RandomFileNameTest, ANameIsThePrefixAndANewUUID) {
    char text[kRandomFileNameSize];
    CFRef<CFStringRef> const name(CreateRandomFileName("/tmp/É", text));
    EXPECT_EQ(Text(name), text);
    ASSERT_EQ(Text(name).find("/tmp/É"), 0U);
    CFRef<CFUUIDRef> const uuid(CFUUIDCreateFromString(nullptr, Str(text + std::strlen("/tmp/É"))));
    EXPECT_NE(uuid.Get(), nullptr) << text;
    CFRef<CFStringRef> const other(CreateRandomFileName("/tmp/É", nullptr));
    EXPECT_NE(Text(name), Text(other));
    CFRef<CFStringRef> const tooLong(CreateRandomFileName(std::string(220, 'x').c_str(), text));
    EXPECT_EQ(CFStringGetLength(tooLong), 256);
    EXPECT_STREQ(text, "");
}

}  // namespace
