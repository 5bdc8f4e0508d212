// SPDX-License-Identifier: Apache-2.0
#include "tests/platform/WindowTestSupport.h"

namespace {

// A bundle with one nib, "Test", of these windows.
class NibTest : public WindowTest {
  protected:
    IBNibRef Open(std::string const& windows) {
        mFolder.Write("Contents/Info.plist", "<plist><dict/></plist>");
        mFolder.Write("Contents/Resources/Test.nib", "<plist><dict>" + windows + "</dict></plist>");
        IBNibRef nib = nullptr;
        EXPECT_EQ(noErr, CreateNibReferenceWithCFBundle(Bundle(), CFSTR("Test"), &nib));
        return nib;
    }
    CFRef<CFBundleRef> Bundle() {
        return CFRef<CFBundleRef>(CFBundleCreate(nullptr, FileURL(mFolder.Path(), true)));
    }
    // A window "W" with these controls.
    static std::string Window(std::string const& controls) {
        return "<key>W</key><dict><key>Class</key><integer>11</integer><key>Title</key>"
               "<string>Title</string>" +
               Bounds(5, 10, 105, 210) + "<key>Controls</key><array>" + controls +
               "</array></dict>";
    }
    static std::string Bounds(int top, int left, int bottom, int right) {
        std::string text = "<key>Bounds</key><array>";
        for (int const edge : {top, left, bottom, right}) {
            text += "<integer>" + std::to_string(edge) + "</integer>";
        }
        return text + "</array>";
    }
    static std::string Control(std::string const& kind, std::string const& rest) {
        return "<dict><key>Kind</key><string>" + kind + "</string>" + Bounds(1, 2, 3, 4) + rest +
               "</dict>";
    }

    TemporaryFolder mFolder;
};

TEST_F(NibTest, ANibOpensWhenItIsAPropertyList) {
    IBNibRef nib = Open("");
    mFolder.Write("Contents/Resources/Bad.nib", "no list");
    for (auto const name : {CFSTR("Bad"), CFSTR("Absent"), CFSTR("../Resources/Test")}) {
        IBNibRef other = nib;
        EXPECT_EQ(CreateNibReferenceWithCFBundle(Bundle(), name, &other),
                  kIBCarbonRuntimeCantFindNibFile);
        EXPECT_EQ(other, nullptr);
    }
    DisposeNibReference(nib);
    DisposeNibReference(nib);
    DisposeNibReference(nullptr);
    WindowRef window = mWindow;
    EXPECT_EQ(paramErr, CreateWindowFromNib(nib, CFSTR("W"), &window));
    EXPECT_EQ(nullptr, window);
}

TEST_F(NibTest, AWindowComesWithItsControlsAsDescribed) {
    IBNibRef const nib = Open(
        Window(Control("pane", "<key>Controls</key><array>" +
                                   Control("popb",
                                           "<key>Signature</key><string>Cntl</string><key>ID</key>"
                                           "<integer>2000</integer><key>Items</key><array><string>A"
                                           "</string><string>B</string></array><key>Value</key>"
                                           "<integer>2</integer>"
                                           "<key>Hidden</key><true/>") +
                                   "</array>") +
               Control("push",
                       "<key>Title</key><string>OK</string><key>Command</key><string>ok  </string>"
                       "<key>Default</key><true/><key>Cancel</key><true/><key>Disabled</key>"
                       "<true/><key>Size</key><integer>11</integer>") +
               Control("edit", "<key>Title</key><string>ab</string><key>Password</key><true/>") +
               Control("list",
                       "<key>Columns</key><array><dict><key>Code</key><string>SHOR</string>"
                       "<key>Disclosure</key><true/><key>Fixed</key><true/></dict></array>")));
    WindowRef window = nullptr;
    ASSERT_EQ(noErr, CreateWindowFromNib(nib, CFSTR("W"), &window));
    DisposeNibReference(nib);
    WindowView shown;
    ASSERT_TRUE(DescribeWindow(window, &shown));
    EXPECT_EQ("W", Text(shown.name));
    EXPECT_EQ("Title", Text(shown.title));
    EXPECT_TRUE(shown.isSheet);
    EXPECT_FALSE(shown.isVisible);
    EXPECT_EQ((Rect{5, 10, 105, 210}), shown.bounds);
    std::vector<ControlRef> const controls = EmbeddedControls(shown.root);
    ASSERT_EQ(4U, controls.size());
    EXPECT_EQ(controls[1], shown.defaultButton);
    EXPECT_EQ(controls[1], shown.cancelButton);

    ControlID const id = {"Cntl"_code, 2000};
    ControlRef popup = nullptr;
    EXPECT_EQ(noErr, GetControlByID(window, &id, &popup));
    ControlView view;
    ASSERT_TRUE(DescribeControl(popup, &view));
    EXPECT_EQ(controls[0], view.container);
    EXPECT_EQ(2U, view.items.size());
    EXPECT_EQ(2, view.value);
    EXPECT_FALSE(view.isVisible);
    ASSERT_TRUE(DescribeControl(controls[1], &view));
    EXPECT_EQ("ok  "_code, view.command);
    EXPECT_FALSE(view.isEnabled);
    EXPECT_EQ(11, view.font.size);
    EXPECT_EQ("••", ShownText(controls[2]));
    ListView list;
    ASSERT_TRUE(DescribeList(controls[3], &list));
    ASSERT_EQ(1U, list.columns.size());
    EXPECT_TRUE(list.columns[0].isDisclosure);
    EXPECT_FALSE(list.columns[0].sorts);
}

TEST_F(NibTest, AWrongDescriptionMakesNoPartOfAWindow) {
    std::string const wrong[] = {
        Control("what", ""),
        Control("push", "<key>Title</key><integer>1</integer>"),
        Control("push", "<key>Signature</key><string>abc</string>"),
        Control("push", "<key>Items</key><array><string>A</string></array>"),
        Control("popb", "<key>Items</key><array><integer>1</integer></array>"),
        Control("edit", "<key>Columns</key><array/>"),
        Control("push", "<key>Value</key><integer>99999999999</integer>"),
        "<dict><key>Kind</key><string>push</string></dict>",
        "<string>control</string>",
        Control("pane", "<key>Controls</key><array>" + Control("what", "") + "</array>"),
    };
    for (std::string const& control : wrong) {
        IBNibRef const nib = Open(Window(Control("push", "") + control));
        WindowRef window = mWindow;
        EXPECT_EQ(kIBCarbonRuntimeObjectNotOfRequestedType,
                  CreateWindowFromNib(nib, CFSTR("W"), &window))
            << control;
        EXPECT_EQ(nullptr, window);
        EXPECT_EQ(1U, WindowsInOrder().size());
        EXPECT_EQ(kIBCarbonRuntimeCantFindObject,
                  CreateWindowFromNib(nib, CFSTR("Other"), &window));
        DisposeNibReference(nib);
    }
}

TEST_F(NibTest, RadioButtonsAreTheItemsOfTheirGroup) {
    std::string const button = "<key>Title</key><string>";
    IBNibRef const nib = Open(Window(Control(
        "rgrp",
        "<key>Maximum</key><integer>3</integer><key>Controls</key>"
        "<array>" +
            Control("rado", button + "One</string>") + Control("rado", button + "Two</string>") +
            Control("rado", button + "Three</string>") + "</array>")));
    WindowRef window = nullptr;
    ASSERT_EQ(noErr, CreateWindowFromNib(nib, CFSTR("W"), &window));
    DisposeNibReference(nib);
    ShowWindow(window);
    WindowView shown;
    DescribeWindow(window, &shown);
    ControlRef const group = EmbeddedControls(shown.root).at(0);
    EXPECT_TRUE(EmbeddedControls(group).empty());
    ControlRef third = nullptr;
    EXPECT_EQ(noErr, GetIndexedSubControl(group, 3, &third));
    EXPECT_EQ(InputResult::kDone, UserPressed(third, 0, true));
    EXPECT_EQ(3, GetControl32BitValue(group));
    ControlRef second = nullptr;
    GetIndexedSubControl(group, 2, &second);
    DisableControl(second);
    EXPECT_EQ(InputResult::kRefused, UserChose(group, 2));
    UserFocused(group);
    UserPressedKey(window, kUpKey, 0);
    EXPECT_EQ(1, GetControl32BitValue(group)) << "the disabled one is passed over";
    HideControl(second);
    ControlView view;
    DescribeControl(group, &view);
    ASSERT_EQ(2U, view.items.size());
    EXPECT_EQ(3, view.items[1].number) << "a hidden one counts";
    EXPECT_EQ(InputResult::kDone, UserPicked(group, view.items[1].number));
    EXPECT_EQ(3, GetControl32BitValue(group));
    EXPECT_EQ(errControlIDNotFound, GetIndexedSubControl(group, 4, &third));
    EXPECT_EQ(nullptr, third);
}

}  // namespace
