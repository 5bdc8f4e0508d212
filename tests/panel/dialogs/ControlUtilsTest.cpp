// SPDX-License-Identifier: Apache-2.0
#include "panel/dialogs/ControlUtils.h"

#include <array>
#include <filesystem>

#include "panel/dialogs/CustomCarbonEvent.h"
#include "panel/dialogs/EventHack.h"
#include "panel/dialogs/PaneControls.h"
#include "panel/dialogs/ResourcePicture.h"
#include "platform/RunLoop.h"
#include "tests/panel/dialogs/DialogFixture.h"

namespace {

class ControlUtilsTest : public DialogFixture {
  protected:
    static Rect BoundsOf(ControlRef control) { return ViewOf(control).bounds; }
    // Contents/Resources of a bundle with this executable, which takes the built one's place.
    class OtherBundle {
      public:
        OtherBundle() : mFormer(PDEBundle::mBundle) {
            mFolder.Write("Contents/Info.plist",
                          "<plist><dict><key>CFBundleExecutable</key><string>ZUB</string></dict>"
                          "</plist>");
            mBundle = CFRef<CFBundleRef>(CFBundleCreate(nullptr, FileURL(mFolder.Path(), true)));
            PDEBundle::mBundle = mBundle;
        }
        OtherBundle(OtherBundle const&) = delete;
        OtherBundle& operator=(OtherBundle const&) = delete;
        ~OtherBundle() { PDEBundle::mBundle = mFormer; }

        std::string Resources() const { return mFolder.Path("Contents/Resources/"); }
        void AddPicture(std::string const& name) const {
            mFolder.Write("Contents/Resources/" + name,
                          std::string("\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR\0\0\0\x20\0\0\0\x30", 24));
        }

      private:
        TemporaryFolder mFolder;
        CFRef<CFBundleRef> mBundle;
        CFBundleRef mFormer;
    };
};

TEST_F(ControlUtilsTest, LongTitlesAreSmallAndCondensed) {
    struct {
        std::size_t length;
        int size, style;
    } const cases[] = {{20, 13, 0},  {21, 14, 32}, {22, 13, 32}, {23, 13, 32},
                       {24, 12, 32}, {25, 12, 32}, {26, 11, 32}, {27, 11, 32},
                       {28, 10, 32}, {30, 10, 32}, {31, 9, 32},  {90, 9, 32}};
    for (auto const& row : cases) {
        ControlRef const button = Button();
        std::string const title(row.length, 'x');
        ControlUtils::SetControlTitle(button, title.c_str());
        ControlView const view = ViewOf(button);
        EXPECT_EQ(title, Text(view.title));
        EXPECT_EQ(row.size, view.font.size) << row.length;
        EXPECT_EQ(row.style, view.font.style) << row.length;
    }
    ControlRef text = nullptr;
    Rect const bounds = {0, 0, 20, 20};
    CreateStaticTextControl(mWindow, &bounds, CFSTR(""), nullptr, &text);
    std::string const line(40, 'x');
    ControlUtils::SetControlTitle(text, line.c_str());
    EXPECT_EQ(line, ShownText(text));
    EXPECT_EQ(13, ViewOf(text).font.size);
    SetSystemTextEncoding(0);
    ControlUtils::SetControlTitle(text, "\x8E");
    EXPECT_EQ("é", ShownText(text));
}

TEST_F(ControlUtilsTest, AFontIsChangedWhereSomethingIsTold) {
    ControlRef const button = Button();
    EXPECT_EQ(noErr, ControlUtils::setControlFontInfo(button, -1, 9, -1, 1));
    EXPECT_EQ(noErr, ControlUtils::setControlFontInfo(button, -1, -1, 32, -1));
    ControlFontStyleRec const font = ViewOf(button).font;
    EXPECT_EQ((std::array<int, 4>{0, 9, 32, 1}),
              (std::array<int, 4>{font.font, font.size, font.style, font.just}));
    EXPECT_EQ(paramErr, ControlUtils::setControlFontInfo(nullptr, 0, 9, 0, 0));
}

// A letter is 7 points wide, 6 at size 11 (5.9 a letter, rounded up once).
TEST_F(ControlUtilsTest, EachKindGrowsByItsRule) {
    struct {
        OSType kind;
        std::size_t letters;
        bool growRight;
        int size;
        int left, right;  // from 100 to 200
    } const cases[] = {
        {"push"_code, 10, true, 13, 100, 200},  // 98 fit
        {"push"_code, 11, true, 13, 100, 233},  // 105 + 28
        {"push"_code, 11, false, 13, 67, 200},
        {"push"_code, 12, true, 11, 100, 200},  // 72 + 28 fit
        {"push"_code, 60, true, 13, 100, 328},  // at most 200 + 28
        {"push"_code, 60, false, 13, -276, 200},
        {"cbox"_code, 3, true, 13, 100, 141},
        {"cbox"_code, 3, false, 13, 159, 200},
        {"stxt"_code, 3, false, 13, 100, 149},
        {"popb"_code, 8, true, 13, 100, 200},  // the menu is 100 wide
        {"popb"_code, 9, true, 13, 100, 231},
        {"popb"_code, 40, false, 13, 100, 290},  // at most 190
        {"edit"_code, 40, true, 13, 100, 200},
    };
    Rect const bounds = {0, 100, 20, 200};
    for (auto const& row : cases) {
        ControlRef control = nullptr;
        auto const text = Str(std::string(row.letters, 'x'));
        switch (row.kind) {
            case "push"_code:
                CreatePushButtonControl(mWindow, &bounds, text, &control);
                break;
            case "cbox"_code:
                CreateCheckBoxControl(mWindow, &bounds, text, 0, true, &control);
                break;
            case "stxt"_code:
                CreateStaticTextControl(mWindow, &bounds, text, nullptr, &control);
                break;
            case "edit"_code:
                CreateEditUnicodeTextControl(mWindow, &bounds, text, false, nullptr, &control);
                break;
            default:
                CreatePopupButtonControl(mWindow, &bounds, nullptr, &control);
                AppendMenuItemTextWithCFString(GetControlPopupMenuHandle(control), text, 0, 0,
                                               nullptr);
        }
        ControlUtils::setControlFontInfo(control, -1, static_cast<std::int16_t>(row.size), -1, -1);
        ControlUtils::SizeControl(control, mWindow, row.growRight);
        Rect const expected = {0, static_cast<std::int16_t>(row.left), 20,
                               static_cast<std::int16_t>(row.right)};
        EXPECT_EQ(expected, BoundsOf(control))
            << row.letters << " letters, " << BoundsOf(control).left << " to "
            << BoundsOf(control).right;
    }
    ControlUtils::SizeControl(nullptr, mWindow, true);
}

TEST_F(ControlUtilsTest, RadioButtonsAreNamedShownAndHiddenByTheirPlace) {
    TemporaryFolder folder;
    folder.Write("Contents/Info.plist", "<plist><dict/></plist>");
    std::string const button =
        "<dict><key>Kind</key><string>rado</string><key>Bounds</key>"
        "<array><integer>0</integer><integer>0</integer><integer>9</integer>"
        "<integer>9</integer></array></dict>";
    std::string group = button;
    group.replace(group.find("rado"), 4, "rgrp");
    group.insert(group.size() - 7, "<key>Controls</key><array>" + button + button + "</array>");
    folder.Write("Contents/Resources/R.nib",
                 "<plist><dict><key>W</key><dict><key>Bounds</key><array><integer>0</integer>"
                 "<integer>0</integer><integer>9</integer><integer>9</integer></array>"
                 "<key>Controls</key><array>" +
                     group + "</array></dict></dict></plist>");
    CFRef<CFBundleRef> const bundle(CFBundleCreate(nullptr, FileURL(folder.Path(), true)));
    IBNibRef nib = nullptr;
    CreateNibReferenceWithCFBundle(bundle, CFSTR("R"), &nib);
    WindowRef window = nullptr;
    ASSERT_EQ(noErr, CreateWindowFromNib(nib, CFSTR("W"), &window));
    DisposeNibReference(nib);
    ControlRef const radios = EmbeddedControls(ViewOf(window).root).at(0);
    ControlUtils::SetRadioButtonText(radios, 1, CFSTR("One"));
    ControlUtils::SetRadioButtonText(radios, 2, CFSTR("Two"));
    ControlUtils::HideRadioButton(radios, 1);
    ControlUtils::HideRadioButton(radios, 3);
    ASSERT_EQ(1U, ViewOf(radios).items.size());
    EXPECT_EQ("Two", Text(ViewOf(radios).items[0].title));
    ControlUtils::ShowRadioButton(radios, 1);
    EXPECT_EQ("One", Text(ViewOf(radios).items.at(0).title));
    ControlUtils::SetControlTitle(radios, CFSTR("Group"));
    EXPECT_EQ("Group", Text(ViewOf(radios).title));
}

TEST_F(ControlUtilsTest, APictureIsDrawnFromTheResourcesOrItsPlaceErased) {
    OtherBundle const bundle;
    bundle.AddPicture("7.png");
    bundle.AddPicture("icons/A4.png");
    char folder[ControlUtils::kResourcePathSize];
    ControlUtils::GetResourceURL(folder);
    EXPECT_EQ(bundle.Resources(), folder);
    ControlRef const pane = Pane({20, 30, 60, 80});
    ControlRef const beside = Pane({20, 90, 60, 140});
    ControlUtils::DrawResourcePicture(pane, 7);
    EXPECT_EQ(bundle.Resources() + "7.png", Text(ViewOf(pane).picture));
    ControlUtils::DrawPNG(GetWindowPort(mWindow), pane, "icons/A4.png");
    EXPECT_EQ(bundle.Resources() + "icons/A4.png", Text(ViewOf(pane).picture));
    EXPECT_EQ(nullptr, ViewOf(beside).picture);
    for (char const* const missing : {"none.png", ""}) {
        ControlUtils::DrawPNG(GetWindowPort(mWindow), pane, "7.png");
        ControlUtils::DrawPNG(GetWindowPort(mWindow), pane, missing);
        EXPECT_EQ(nullptr, ViewOf(pane).picture) << missing;
    }
    ControlUtils::DrawPNG(nullptr, pane, "7.png");
    EXPECT_EQ(nullptr, ViewOf(pane).picture);
    EXPECT_EQ(nullptr, LoadAnImageRef(nullptr));
    ControlUtils::DrawResourcePicture(pane, 7);
    PDEBundle::mBundle = nullptr;
    ControlUtils::GetResourceURL(folder);
    EXPECT_STREQ("", folder);
    auto const former = std::filesystem::current_path();
    std::filesystem::current_path(bundle.Resources());
    ControlUtils::DrawResourcePicture(pane, 7);
    std::filesystem::current_path(former);
    EXPECT_EQ(nullptr, ViewOf(pane).picture) << "the working directory has none of its pictures";
}

TEST_F(ControlUtilsTest, APostedEventComesByItsPriorityAndOnlyToALivingWindow) {
    Listener listener{Log("window")};
    listener.Install(GetWindowEventTarget(mWindow), {kCommand});
    for (EventPriority const priority :
         {kEventPriorityLow, kEventPriorityHigh, kEventPriorityStandard}) {
        CustomCarbonEvent event(static_cast<OSType>(priority), mWindow, "cmds"_code, 1);
        EXPECT_TRUE(event.mEventValid);
        EXPECT_EQ(noErr, event.send(nullptr, priority));
    }
    EXPECT_EQ("", TakeLog());
    mFace.Settle();
    EXPECT_EQ("window:1/2 window:1/1 window:1/0", TakeLog());
    CustomCarbonEvent nowhere(1, nullptr, "cmds"_code, 1);
    EXPECT_EQ(paramErr, nowhere.addParameter("name"_code, "TEXT"_code, 1, "x"));
    EXPECT_EQ(paramErr, nowhere.setEventTarget(GetWindowEventTarget(mWindow)));
    EXPECT_EQ(paramErr, nowhere.send(nullptr, 1));
    CustomCarbonEvent late(1, mWindow, "cmds"_code, 1);
    EXPECT_EQ(noErr, late.addParameter("name"_code, "TEXT"_code, 1, "x"));
    EXPECT_EQ(paramErr, late.setEventTarget(nullptr));
    DisposeWindow(std::exchange(mWindow, nullptr));
    EXPECT_EQ(paramErr, late.send(nullptr, 1));
}

TEST_F(ControlUtilsTest, TheLoopIsWokenThroughOneSource) {
    struct Waker : HeadlessFace {
        void Wake(double) override { ++wakes; }
        int wakes = 0;
    } waker;
    InstallFace(&waker, &waker);
    EXPECT_EQ(EventHack::kAlreadyInstalled, gEventHack.testHack());
    waker.Settle();
    EXPECT_FALSE(platform::RunLoop::NextDue());
    gEventHack.wakeHack();
    EXPECT_EQ(1, waker.wakes);
    EXPECT_TRUE(platform::RunLoop::NextDue()) << "the first source still works";
    InstallFace(&mFace, &mFace);
}

TEST_F(ControlUtilsTest, AControlIsCentredInThePaneButNotBeyondItsCorner) {
    WindowRef const other = CreateHostWindow({0, 0, 100, 201}, nullptr);
    ControlRef const pane = Pane({10, 20, 210, 310});
    ControlRef const narrow = Pane({5, 5, 55, 55});
    ControlRef const control = Button(other, {1, 2, 21, 82});
    ControlID const id = {"Ctrl"_code, 1};
    SetControlID(control, &id);
    HideControl(control);
    ControlRef out = nullptr;
    EXPECT_EQ(noErr, MyEmbedControl(other, pane, id, &out));
    EXPECT_EQ(control, out);
    EXPECT_EQ((Rect{1 + 50 + 10, 2 + 44 + 20, 21 + 50 + 10, 82 + 44 + 20}), BoundsOf(control));
    EXPECT_TRUE(IsControlVisible(control));
    EXPECT_EQ(mWindow, GetControlOwner(control));
    ControlRef const second = Button(other, {1, 2, 21, 82});
    EXPECT_EQ(noErr, MyEmbedControl(other, narrow, second, &out));
    EXPECT_EQ((Rect{6, 7, 26, 87}), BoundsOf(second));
    EXPECT_EQ(errControlIDNotFound, MyEmbedControl(other, pane, id, &out)) << "it went away";
    EXPECT_EQ(nullptr, out);
    EXPECT_EQ(errCantEmbedIntoSelf, MyEmbedControl(mWindow, second, narrow, &out));
    EXPECT_EQ(nullptr, out);
}

}  // namespace
