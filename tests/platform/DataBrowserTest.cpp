// SPDX-License-Identifier: Apache-2.0
#include "platform/DataBrowser.h"

#include <numeric>

#include "tests/platform/WindowTestSupport.h"

namespace {

// A list with the columns NAME and SIZE, made from a nib; items below 100 are containers. An item's
// name is its number.
class DataBrowserTest : public WindowTest {
  protected:
    void SetUp() override {
        WindowTest::SetUp();
        sTest = this;
        mFolder.Write("Contents/Info.plist", "<plist><dict/></plist>");
        mFolder.Write("Contents/Resources/L.nib", kNib);
        CFRef<CFBundleRef> const bundle(CFBundleCreate(nullptr, FileURL(mFolder.Path(), true)));
        IBNibRef nib = nullptr;
        CreateNibReferenceWithCFBundle(bundle, CFSTR("L"), &nib);
        ASSERT_EQ(noErr, CreateWindowFromNib(nib, CFSTR("W"), &mListWindow));
        DisposeNibReference(nib);
        ShowWindow(mListWindow);
        WindowView view;
        DescribeWindow(mListWindow, &view);
        mList = EmbeddedControls(view.root).at(0);
        DataBrowserCallbacks callbacks = {};
        InitDataBrowserCallbacks(&callbacks);
        callbacks.itemData = NewDataBrowserItemDataUPP(Give);
        callbacks.itemNotification = NewDataBrowserItemNotificationUPP(Hear);
        ASSERT_EQ(noErr, SetDataBrowserCallbacks(mList, &callbacks));
    }

    static OSStatus Give(ControlRef, DataBrowserItemID item, DataBrowserPropertyID property,
                         DataBrowserItemDataRef data, bool set) {
        sTest->mLastData = data;
        if (set) {
            return errDataBrowserPropertyNotSupported;
        }
        if (property == kDataBrowserItemIsContainerProperty) {
            return SetDataBrowserItemDataBooleanValue(data, item < 100);
        }
        if (sTest->onGive) {
            sTest->onGive(item);
        }
        return property == "NAME"_code ? SetDataBrowserItemDataText(data, Str(std::to_string(item)))
                                       : noErr;
    }
    static void Hear(ControlRef, DataBrowserItemID item, DataBrowserItemNotification message) {
        sTest->mLog.push_back(std::to_string(item) + ":" + std::to_string(message));
        if (sTest->onHear) {
            sTest->onHear(item);
        }
    }
    static bool ByLastDigit(ControlRef, DataBrowserItemID one, DataBrowserItemID two,
                            DataBrowserPropertyID) {
        return one % 10 < two % 10;
    }

    void Add(DataBrowserItemID container, std::vector<DataBrowserItemID> const& items) {
        EXPECT_EQ(noErr,
                  AddDataBrowserItems(mList, container, static_cast<std::uint32_t>(items.size()),
                                      items.data(), kDataBrowserItemNoProperty));
    }
    InputResult Select(std::vector<DataBrowserItemID> const& items) {
        return UserSelectedRows(mList, static_cast<std::uint32_t>(items.size()), items.data());
    }
    std::string Rows() {
        ListView view;
        DescribeList(mList, &view);
        std::string text;
        for (RowView const& row : view.rows) {
            text += (text.empty() ? "" : " ") + Text(row.cells.at(0));
        }
        return text;
    }

    static constexpr char const* kNib =
        "<plist><dict><key>W</key><dict><key>Bounds</key><array><integer>0</integer><integer>0"
        "</integer><integer>9</integer><integer>9</integer></array><key>Controls</key><array><dict>"
        "<key>Kind</key><string>list</string><key>Bounds</key><array><integer>0</integer><integer>"
        "0</integer><integer>9</integer><integer>9</integer></array><key>Columns</key><array><dict>"
        "<key>Code</key><string>NAME</string></dict><dict><key>Code</key><string>SIZE</string>"
        "<key>Fixed</key><true/></dict></array></dict></array></dict></dict></plist>";
    static DataBrowserTest* sTest;

    TemporaryFolder mFolder;
    WindowRef mListWindow = nullptr;
    ControlRef mList = nullptr;
    DataBrowserItemDataRef mLastData = nullptr;
    std::function<void(DataBrowserItemID)> onGive;
    std::function<void(DataBrowserItemID)> onHear;
};
DataBrowserTest* DataBrowserTest::sTest = nullptr;

TEST_F(DataBrowserTest, ItemsAreUniqueAndComeBackLastFirst) {
    Add(0, {101, 103, 102, 103, 0});
    EXPECT_EQ("101 103 102", Rows());
    DataBrowserItemID items[4] = {9, 9, 9, 9};
    EXPECT_EQ(noErr, GetDataBrowserItems(mList, 0, true, kDataBrowserItemAnyState, items, 4));
    EXPECT_EQ((std::vector<DataBrowserItemID>{102, 103, 101, 0}), std::vector(items, items + 4));
    DataBrowserItemID const gone[] = {103, 999};
    EXPECT_EQ(noErr, RemoveDataBrowserItems(mList, 0, 2, gone, 0));
    EXPECT_EQ("101 102", Rows());
    EXPECT_EQ(errDataBrowserItemNotFound, AddDataBrowserItems(mList, 999, 1, gone, 0));
    EXPECT_EQ(noErr, RemoveDataBrowserItems(mList, 0, 0, nullptr, 0));
    EXPECT_EQ(noErr, AddDataBrowserItems(mList, 0, 3, nullptr, 0));
    EXPECT_EQ("1 2 3", Rows());
    EXPECT_EQ(paramErr, SetDataBrowserItemDataText(mLastData, CFSTR("late")));
}

TEST_F(DataBrowserTest, AContainerShowsItsItemsWhileItIsOpen) {
    Add(0, {1, 2});
    onHear = [&](DataBrowserItemID item) { Add(item, {item * 100, item * 100 + 1}); };
    EXPECT_EQ(InputResult::kMissing, UserOpenedRow(mList, 100, true));
    EXPECT_EQ(InputResult::kDone, UserOpenedRow(mList, 1, true));
    EXPECT_EQ(InputResult::kDone, UserOpenedRow(mList, 1, true));
    EXPECT_EQ("1:8", TakeLog()) << "it was open already";
    EXPECT_EQ("1 100 101 2", Rows());
    EXPECT_EQ(InputResult::kMissing, UserOpenedRow(mList, 100, true)) << "it holds none";
    onHear = nullptr;
    EXPECT_EQ(InputResult::kDone, Select({101, 2}));
    EXPECT_EQ(InputResult::kDone, UserOpenedRow(mList, 1, false));
    EXPECT_EQ("1 2", Rows());
    EXPECT_FALSE(IsDataBrowserItemSelected(mList, 101));
    EXPECT_EQ(InputResult::kMissing, Select({101}));
    DataBrowserItemID const several[] = {1, 100, 1};
    RemoveDataBrowserItems(mList, 0, 3, several, 0);
    std::uint32_t count = 9;
    EXPECT_EQ(noErr, GetDataBrowserItemCount(mList, 0, true, kDataBrowserItemAnyState, &count));
    EXPECT_EQ(1U, count) << "what lay below went along";
}

TEST_F(DataBrowserTest, TheUserReplacesTheSelectionAndItsFirstIsTheAnchor) {
    Add(0, {101, 102, 103});
    EXPECT_EQ(InputResult::kDone, Select({103, 101}));
    EXPECT_EQ("103:5 101:5", TakeLog());
    DataBrowserItemID first = 0, last = 0;
    GetDataBrowserSelectionAnchor(mList, &first, &last);
    EXPECT_EQ(103U, first);
    EXPECT_EQ(101U, last);
    EXPECT_EQ(InputResult::kMissing, Select({102, 999}));
    EXPECT_EQ(InputResult::kDone, Select({101, 102}));
    EXPECT_EQ("102:5", TakeLog()) << "the other was selected before";
    SetDataBrowserSelectedItems(mList, 1, &first, kDataBrowserItemsAdd);
    SetDataBrowserSelectedItems(mList, 1, &last, kDataBrowserItemsToggle);
    EXPECT_EQ("", TakeLog()) << "the logic tells itself nothing";
    GetDataBrowserSelectionAnchor(mList, &first, &last);
    EXPECT_EQ(102U, first);
    EXPECT_EQ(103U, last);
    UserFocused(mList);
    UserPressedKey(mListWindow, kUpKey, 0);
    GetDataBrowserSelectionAnchor(mList, &first, &last);
    EXPECT_EQ(102U, last);
    EXPECT_EQ(InputResult::kDone, Select({}));
    GetDataBrowserSelectionAnchor(mList, &first, &last);
    EXPECT_EQ(0U, first + last);
}

TEST_F(DataBrowserTest, AClickedHeadingSortsAndTurnsRoundAndTheListStaysSorted) {
    Add(0, {121, 103, 112});
    EXPECT_EQ(InputResult::kDone, UserSorted(mList, "NAME"_code));
    EXPECT_EQ("103 112 121", Rows());
    Add(0, {110});
    EXPECT_EQ("103 110 112 121", Rows());
    EXPECT_EQ(InputResult::kDone, UserSorted(mList, "NAME"_code));
    EXPECT_EQ("121 112 110 103", Rows());
    DataBrowserCallbacks callbacks = {0, Give, Hear, ByLastDigit};
    SetDataBrowserCallbacks(mList, &callbacks);
    EXPECT_EQ(noErr, UpdateDataBrowserItems(mList, 0, 0, nullptr, 0, 0));
    EXPECT_EQ("103 112 121 110", Rows());
    EXPECT_EQ(InputResult::kRefused, UserSorted(mList, "SIZE"_code));
    EXPECT_EQ(InputResult::kMissing, UserSorted(mList, "none"_code));
}

TEST_F(DataBrowserTest, ItsOwnerMayChangeAndEndTheListWhileItIsAsked) {
    Add(0, {103, 102, 101});
    onGive = [&](DataBrowserItemID) { RemoveDataBrowserItems(mList, 0, 0, nullptr, 0); };
    EXPECT_EQ("103 102 101", Rows()) << "the rows as they were when somebody began to look";
    onGive = nullptr;
    Add(0, {103, 102});
    onGive = [&](DataBrowserItemID item) { Add(0, {item + 10}); };
    EXPECT_EQ(InputResult::kDone, UserSorted(mList, "NAME"_code));
    onGive = [&](DataBrowserItemID) { DisposeControl(mList); };
    EXPECT_EQ(InputResult::kDone, UserSorted(mList, "NAME"_code));
    onGive = nullptr;
    EXPECT_EQ(InputResult::kMissing, UserSorted(mList, "NAME"_code));
}

TEST_F(DataBrowserTest, AComparisonThatContradictsItselfSortsSomehow) {
    std::vector<DataBrowserItemID> items(60);
    std::iota(items.begin(), items.end(), 100U);
    Add(0, items);
    static unsigned sSeed;
    sSeed = 1;
    DataBrowserCallbacks const callbacks = {
        0, Give, Hear, [](ControlRef, DataBrowserItemID, DataBrowserItemID, DataBrowserPropertyID) {
            sSeed = sSeed * 1103515245 + 12345;
            return (sSeed >> 16) % 2 == 0;
        }};
    SetDataBrowserCallbacks(mList, &callbacks);
    for (int round = 0; round < 20; ++round) {
        UserSorted(mList, "NAME"_code);
    }
    std::uint32_t count = 0;
    GetDataBrowserItemCount(mList, 0, false, kDataBrowserItemAnyState, &count);
    EXPECT_EQ(60U, count);
}

}  // namespace
