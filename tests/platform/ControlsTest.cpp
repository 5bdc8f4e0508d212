// SPDX-License-Identifier: Apache-2.0
#include <limits>

#include "platform/DataBrowser.h"
#include "tests/ZUBUtils/PPDUtils/FailingNew.h"
#include "tests/platform/WindowTestSupport.h"

namespace {

using ControlsTest = WindowTest;

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
    EXPECT_EQ(bounds, (Rect{32767, -5, 32767, 395})) << "as far as a coordinate goes";
    DisposeHostWindow(document);
    EXPECT_EQ(GetSheetWindowParent(sheet, &parent), errInvalidWindowRef);
    auto* homeless = CreateUserPane(nullptr, true);
    EXPECT_EQ(GetControlOwner(homeless), nullptr);
    DisposeUserPane(homeless);
    for (WindowRef const window : {sheet, document}) {
        DisposeHostWindow(window);
    }
    EXPECT_EQ(GetControlOwner(pane), nullptr);
    DisposeUserPane(pane);
}

TEST_F(ControlsTest, WindowsStandInTheOrderInWhichTheyWereShownAndKeepTheirNumbers) {
    WindowRef const hidden = CreateHostWindow({}, nullptr);
    WindowRef const other = NewWindow();
    EXPECT_EQ(other, FrontWindow());
    SelectWindow(mWindow);
    SelectWindow(hidden);
    EXPECT_EQ(mWindow, FrontWindow());
    EXPECT_EQ((std::vector{hidden, mWindow, other}), WindowsInOrder());
    HideWindow(other);
    ShowWindow(other);
    WindowView view;
    ASSERT_TRUE(DescribeWindow(other, &view));
    EXPECT_EQ(2, view.number);
    ASSERT_TRUE(DescribeWindow(hidden, &view));
    EXPECT_EQ(0, view.number) << "never shown";
    EXPECT_EQ(paramErr, ShowSheetWindow(other, mWindow)) << "no sheet";
    EXPECT_FALSE(DescribeWindow(nullptr, &view));
    EXPECT_EQ(nullptr, view.window);
}

TEST_F(ControlsTest, EmbeddingMovesTheBranchWithItsIdentifiersAlsoToAnotherWindow) {
    WindowRef const other = NewWindow();
    ControlRef const pane = Pane({10, 20, 100, 200});
    ControlRef const box = CheckBox();
    EmbedControl(box, pane);
    ControlID const id = {"Cntl"_code, 3000};
    SetControlID(box, &id);
    SetKeyboardFocus(mWindow, box, 1);
    ControlRef root = nullptr;
    GetRootControl(other, &root);
    ASSERT_EQ(noErr, EmbedControl(pane, root));
    EXPECT_EQ(other, GetControlOwner(box));
    ControlRef found = nullptr;
    EXPECT_EQ(noErr, GetControlByID(other, &id, &found));
    EXPECT_EQ(box, found);
    EXPECT_EQ(errControlIDNotFound, GetControlByID(mWindow, &id, &found));
    EXPECT_EQ(nullptr, found);
    GetKeyboardFocus(mWindow, &found);
    EXPECT_EQ(nullptr, found);
    EXPECT_EQ(errCantEmbedIntoSelf, EmbedControl(pane, box));
    EXPECT_EQ(paramErr, EmbedControl(root, pane));

    Rect const moved = {15, 50, 90, 60};
    SetControlBounds(pane, &moved);
    Rect bounds = {};
    GetControlBounds(box, &bounds);
    EXPECT_EQ((Rect{45, 40, 65, 120}), bounds) << "what is embedded moves along";
    DisposeWindow(mWindow);
    EXPECT_TRUE(IsControlVisible(box)) << "it left before its first window went";
}

TEST_F(ControlsTest, AnIdentifierFindsWhoGotItLastAndEndsWithIt) {
    ControlRef const first = Button();
    ControlRef const second = Button();
    ControlID const id = {"ok  "_code, 0};
    SetControlID(first, &id);
    SetControlID(second, &id);
    ControlRef found = nullptr;
    GetControlByID(mWindow, &id, &found);
    EXPECT_EQ(second, found);
    Rect const moved = {50, 50, 70, 90};
    SetControlBounds(first, &moved);
    GetControlByID(mWindow, &id, &found);
    EXPECT_EQ(second, found) << "who moves is found no sooner";
    ControlID const none = {0, 0};
    SetControlID(second, &none);
    GetControlByID(mWindow, &id, &found);
    EXPECT_EQ(first, found);
    DisposeControl(first);
    EXPECT_EQ(errControlIDNotFound, GetControlByID(mWindow, &id, &found));
    EXPECT_EQ(errControlIDNotFound, GetControlByID(mWindow, &none, &found));
}

// What a lookup that failed leaves, an address, and what was a control once.
TEST_F(ControlsTest, NullForeignAndDeadReferencesAreRefusedAndClearWhatTheyWouldFill) {
    ControlRef const dead = Popup("a");
    MenuRef const menu = GetControlPopupMenuHandle(dead);
    EventTargetRef const target = GetControlEventTarget(dead);
    DisposeControl(dead);
    ControlRef const heir = Popup("b");
    EXPECT_NE(dead, heir) << "no later control gets the reference";
    EXPECT_EQ(0, CountMenuItems(menu));
    EXPECT_EQ(paramErr, InstallEventHandler(target, Listener::Routine, 0, nullptr, this, nullptr));
    int notAControl = 0;
    for (ControlRef const control :
         {static_cast<ControlRef>(nullptr), dead, reinterpret_cast<ControlRef>(&notAControl),
          reinterpret_cast<ControlRef>(mWindow), reinterpret_cast<ControlRef>(~0ULL)}) {
        Rect bounds = {1, 1, 1, 1};
        EXPECT_EQ(paramErr, GetControlBounds(control, &bounds));
        EXPECT_EQ(Rect{}, bounds);
        CFStringRef title = CFSTR("former");
        EXPECT_EQ(paramErr, CopyControlTitleAsCFString(control, &title));
        EXPECT_EQ(nullptr, title);
        std::uint64_t data = 1;
        EXPECT_EQ(paramErr, GetControlData(control, 0, "font"_code, sizeof data, &data, nullptr));
        EXPECT_EQ(0U, data);
        std::uint32_t count = 1;
        EXPECT_EQ(paramErr, GetDataBrowserItemCount(control, 0, true, 1, &count));
        EXPECT_EQ(0U, count);
        EXPECT_EQ(paramErr, EnableControl(control));
        EXPECT_EQ(paramErr, DisposeControl(control));
        EXPECT_EQ(paramErr, EmbedControl(heir, control));
        SetControl32BitValue(control, 1);
        EXPECT_EQ(0, GetControl32BitValue(control));
        EXPECT_EQ(nullptr, GetControlPopupMenuHandle(control));
        EXPECT_EQ(nullptr, GetControlEventTarget(control));
        EXPECT_EQ(InputResult::kMissing, UserPressed(control, 0, true));
    }
}

TEST_F(ControlsTest, ValuesStayWithinTheirRangeAndA16BitFormGivesTheNearest) {
    ControlRef const control = CheckBox();
    SetControl32BitValue(control, 5);
    EXPECT_EQ(1, GetControl32BitValue(control));
    SetControl32BitMaximum(control, 100000);
    SetControl32BitValue(control, 70000);
    EXPECT_EQ(32767, GetControlValue(control));
    SetControl32BitMaximum(control, 10);
    EXPECT_EQ(10, GetControl32BitValue(control)) << "a new limit moves the value";
    SetControl32BitMaximum(control, -3);
    SetControl32BitValue(control, 99);
    EXPECT_EQ(99, GetControl32BitValue(control)) << "no range keeps nothing";
    DisableControl(control);
    SetControl32BitValue(control, 98);
    EXPECT_EQ(98, GetControl32BitValue(control)) << "a disabled one takes values too";
}

TEST_F(ControlsTest, DataGoesInAndOutByTagAndSize) {
    ControlRef const field = Field("grün");
    char bytes[8] = {};
    std::int64_t size = 0;
    EXPECT_EQ(noErr, GetControlData(field, 0, "text"_code, sizeof bytes, bytes, &size));
    EXPECT_EQ(std::string("gr\x9Fn"), std::string(bytes, static_cast<std::size_t>(size)));
    EXPECT_EQ(noErr, GetControlData(field, 0, "text"_code, 2, bytes, &size));
    EXPECT_EQ(4, size) << "bytes are cut, the size is whole";
    CFRef<CFStringRef> const secret = Str("abc");
    CFStringRef const given = secret;
    EXPECT_EQ(noErr, SetControlData(field, 0, "pwcf"_code, sizeof given, &given));
    EXPECT_EQ("•••", ShownText(field));
    CFRef<CFStringRef> read;
    EXPECT_EQ(noErr, GetControlData(field, 0, "pwcf"_code, sizeof given, read.Receive(), nullptr));
    EXPECT_EQ("abc", Text(read));
    EXPECT_EQ(noErr, GetControlData(field, 0, "cfst"_code, sizeof given, read.Receive(), nullptr));
    EXPECT_EQ("•••", Text(read)) << "nobody reads a password by the way";
    EXPECT_EQ(errDataSizeMismatch, GetControlData(field, 0, "cfst"_code, 4, bytes, nullptr));
    EXPECT_EQ(errDataSizeMismatch, SetControlData(field, 0, "sele"_code, 3, bytes));
    ControlEditTextSelectionRec selection = {-4, 99};
    EXPECT_EQ(noErr, SetControlData(field, 0, "sele"_code, sizeof selection, &selection));
    EXPECT_EQ(noErr, GetControlData(field, 0, "sele"_code, sizeof selection, &selection, nullptr));
    EXPECT_EQ(0, selection.selStart);
    EXPECT_EQ(3, selection.selEnd);
    EXPECT_EQ(errDataNotSupported, SetControlData(Button(), 0, "cfst"_code, sizeof given, &given));
    EXPECT_EQ(errDataNotSupported, SetControlData(field, 0, "none"_code, 0, nullptr));
}

TEST_F(ControlsTest, AFontTakesWhatItsFlagsNameAndKeepsTheRest) {
    ControlRef const button = Button();
    ControlFontStyleRec font = {kControlUseFontMask, kControlFontSmallSystemFont, 99, 99, 99};
    SetControlFontStyle(button, &font);
    font = {kControlUseFaceMask, 99, 99, 32, 99};
    SetControlFontStyle(button, &font);
    EXPECT_EQ(noErr, GetControlData(button, 0, "font"_code, sizeof font, &font, nullptr));
    EXPECT_EQ(kSmallSystemFontSize, font.size);
    EXPECT_EQ(32, font.style);
    EXPECT_EQ(0, font.just);
    Point size = {};
    std::int16_t baseline = 0;
    GetThemeTextDimensions(CFSTR("12345"), kThemeSmallSystemFont, &size, &baseline);
    EXPECT_EQ(30, size.h) << "35 x 11 / 13, rounded up";
    EXPECT_EQ(14, size.v);
}

TEST_F(ControlsTest, AMenusItemsCountFromOneAndCarryTheirReasons) {
    ControlRef const popup = Popup("abc");
    MenuRef const menu = GetControlPopupMenuHandle(popup);
    EXPECT_EQ(7 + 44, GetMenuWidth(menu));
    DisableMenuItem(menu, 2);
    SetMenuItemHelp(menu, 2, CFSTR("why"));
    EXPECT_EQ(noErr, DeleteMenuItem(menu, 1));
    ControlView view;
    ASSERT_TRUE(DescribeControl(popup, &view));
    ASSERT_EQ(2U, view.items.size());
    EXPECT_EQ("b", Text(view.items[0].title));
    EXPECT_EQ("why", Text(view.items[0].help));
    EXPECT_FALSE(view.items[0].isEnabled);
    EnableMenuItem(menu, 1);
    CFRef<CFStringRef> help;
    EXPECT_EQ(noErr, CopyMenuItemHelp(menu, 1, help.Receive()));
    EXPECT_FALSE(help) << "what can be chosen needs no reason";
    DisableMenuItem(menu, 0);
    EXPECT_FALSE(IsMenuItemEnabled(menu, 1));
    EXPECT_EQ(InputResult::kRefused, UserChose(popup, 1));
    for (MenuItemIndex const item : {MenuItemIndex{0}, MenuItemIndex{3}}) {
        EXPECT_EQ(menuItemNotFoundErr, SetMenuItemTextWithCFString(menu, item, CFSTR("x")));
    }
    EXPECT_EQ(nullptr, GetControlPopupMenuHandle(Button()));
}

TEST_F(ControlsTest, AControlThatCannotBeMadeLeavesNothingBehind) {
    ControlRef root = nullptr;
    GetRootControl(mWindow, &root);
    Rect const bounds = {0, 0, 10, 10};
    ControlRef control = root;
    FailCreationAfter(0);
    EXPECT_EQ(memFullErr, CreatePushButtonControl(mWindow, &bounds, nullptr, &control));
    EXPECT_EQ(nullptr, control);
    FailCreationAfter(-1);
    EXPECT_TRUE(EmbeddedControls(root).empty());
    for (long allowed = 0; allowed < 2; ++allowed) {
        FailCreationAfter(allowed);
        EXPECT_EQ(nullptr, CreateHostWindow(bounds, nullptr));
        FailCreationAfter(-1);
    }
    EXPECT_EQ(1U, WindowsInOrder().size());
}

TEST_F(ControlsTest, WhatFindsNoMemoryChangesNothing) {
    ControlRef const pane = Pane();
    ControlRef const box = CheckBox();
    EmbedControl(box, pane);
    ControlID const id = {"Cntl"_code, 1}, another = {"Cntl"_code, 2};
    SetControlID(box, &id);
    WindowRef const other = NewWindow();
    ControlRef root = nullptr, found = nullptr;
    GetRootControl(other, &root);
    long allowed = 0;
    for (OSStatus status = memFullErr; status != noErr; ++allowed) {
        FailAnyNewAfter(allowed);
        status = EmbedControl(pane, root);
        FailAnyNewAfter(-1);
        WindowRef const owner = status == noErr ? other : mWindow;
        EXPECT_EQ(owner, GetControlOwner(pane));
        EXPECT_EQ(owner, GetControlOwner(box));
        EXPECT_EQ(noErr, GetControlByID(owner, &id, &found));
    }
    EXPECT_LT(1, allowed);
    FailAnyNewAfter(0);
    EXPECT_EQ(memFullErr, SetControlID(box, &another));
    FailAnyNewAfter(-1);
    EXPECT_EQ(errControlIDNotFound, GetControlByID(other, &another, &found));
    EXPECT_EQ(noErr, GetControlByID(other, &id, &found));

    CFRef<CFMutableStringRef> const changing(CFStringCreateMutable(nullptr, 0));
    SetWindowTitleWithCFString(other, CFSTR("former"));
    FailCreationAfter(0);
    EXPECT_EQ(memFullErr, SetWindowTitleWithCFString(other, changing));
    FailCreationAfter(-1);
    CFRef<CFStringRef> title;
    CopyWindowTitleAsCFString(other, title.Receive());
    EXPECT_EQ("former", Text(title));
}

TEST_F(ControlsTest, PropertiesAndReferencesStayWithTheControl) {
    ControlRef const control = Button();
    std::intptr_t const value = 0x123456789A;
    SetControlReference(control, value);
    EXPECT_EQ(value, GetControlReference(control));
    EXPECT_EQ(noErr, SetControlProperty(control, 1, 2, sizeof value, &value));
    std::intptr_t read = 0;
    std::uint32_t size = 0;
    EXPECT_EQ(noErr, GetControlProperty(control, 1, 2, sizeof read, &size, &read));
    EXPECT_EQ(value, read);
    EXPECT_EQ(8U, size);
    EXPECT_EQ(controlPropertyNotFoundErr,
              GetControlProperty(control, 2, 1, sizeof read, nullptr, &read));
    EXPECT_EQ(0, read);
}

}  // namespace
