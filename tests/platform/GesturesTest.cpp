// SPDX-License-Identifier: Apache-2.0
#include "tests/platform/WindowTestSupport.h"

namespace {

class GesturesTest : public WindowTest {
  protected:
    void SetUp() override {
        WindowTest::SetUp();
        mListener.hear = Log("heard");
        mListener.Install(GetWindowEventTarget(mWindow), {kClick, kHit, kChange, kCommand});
    }

    void Key(char32_t key, std::uint32_t modifiers = 0) {
        EXPECT_EQ(InputResult::kDone, UserPressedKey(mWindow, key, modifiers));
    }
    ControlRef Focus() {
        ControlRef focus = nullptr;
        GetKeyboardFocus(mWindow, &focus);
        return focus;
    }
    std::string Selection(ControlRef field) {
        ControlView view;
        DescribeControl(field, &view);
        return std::to_string(view.selection.selStart) + "-" +
               std::to_string(view.selection.selEnd);
    }

    Listener mListener;
};

TEST_F(GesturesTest, APressIsAClickAndInsideThenAChangeAHitAndTheCommandNobodyTook) {
    ControlRef const box = CheckBox();
    SetControlCommandID(box, 77);
    EXPECT_EQ(InputResult::kDone, UserPressed(box, 0, true));
    EXPECT_EQ("heard:13 heard:151 heard:1/11 heard:1/77", TakeLog());
    EXPECT_EQ(1, GetControl32BitValue(box));
    EXPECT_EQ(InputResult::kDone, UserPressed(box, 0, false));
    EXPECT_EQ("heard:13", TakeLog());
    EXPECT_EQ(1, GetControl32BitValue(box));
    mListener.hear = [&](EventRef event) {
        return Log("heard",
                   GetEventKind(event) == kEventControlHit ? noErr : eventNotHandledErr)(event);
    };
    UserPressed(box, 0, true);
    EXPECT_EQ("heard:13 heard:151 heard:1/11", TakeLog());
    mListener.hear = Log("heard", noErr);
    UserPressed(box, 0, true);
    EXPECT_EQ("heard:13", TakeLog()) << "a click that is taken ends the gesture";
    EXPECT_EQ(0, GetControl32BitValue(box));
}

TEST_F(GesturesTest, OnlyTheHitTellsWhereOnAScrollBarAndAPaneHasNone) {
    ControlRef const pane = Pane();
    UserPressed(pane, 0, true);
    EXPECT_EQ("heard:13", TakeLog());
    ControlRef const button = Button();
    UserPressed(button, 22, true);
    EXPECT_EQ("heard:13 heard:1/22", TakeLog());
}

TEST_F(GesturesTest, InputIsRefusedWhereAHandCouldNotReach) {
    ControlRef const pane = Pane();
    ControlRef const button = Button();
    EmbedControl(button, pane);
    auto const press = [&] { return UserPressed(button, 0, true); };
    DisableControl(pane);
    EXPECT_EQ(InputResult::kDisabled, press());
    HideControl(pane);
    EXPECT_EQ(InputResult::kHidden, press());
    ShowControl(pane);
    EnableControl(pane);
    HideWindow(mWindow);
    EXPECT_EQ(InputResult::kHidden, press());
    EXPECT_EQ(InputResult::kHidden, UserPressedKey(mWindow, 'a', 0));
    ShowWindow(mWindow);
    WindowRef const dialog = NewWindow();
    mFace.SetNextStep([&] {
        EXPECT_EQ(InputResult::kBlocked, press());
        EXPECT_EQ(InputResult::kBlocked, UserTyped(mWindow, u"a").result);
        QuitAppModalLoopForWindow(dialog);
        return true;
    });
    EXPECT_EQ(noErr, RunAppModalLoopForWindow(dialog));
    DisposeControl(button);
    EXPECT_EQ(InputResult::kMissing, press());
    EXPECT_EQ("", TakeLog());
}

TEST_F(GesturesTest, TrackingAnswersFromThePressAndNeverWaits) {
    ControlRef const button = Button();
    Point where = {};
    std::uint16_t result = 0;
    for (bool const inside : {true, false}) {
        mListener.hear = [&](EventRef) {
            EXPECT_EQ(noErr, TrackMouseLocation(GetWindowPort(mWindow), &where, &result));
            Rect bounds = {};
            GetControlBounds(button, &bounds);
            EXPECT_EQ(inside, PtInRect(where, &bounds));
            return noErr;
        };
        UserPressed(button, 0, inside);
        EXPECT_EQ(kMouseTrackingMouseUp, result);
    }
    EXPECT_EQ(paramErr, TrackMouseLocation(GetWindowPort(mWindow), &where, &result));
    EXPECT_EQ(kMouseTrackingMouseUp, result) << "who waits for it must not wait for ever";
}

TEST_F(GesturesTest, APopupTellsItsPressBeforeItsItemsAreLookedAt) {
    ControlRef const popup = Popup("abc");
    UserPressed(popup, 0, true);
    EXPECT_EQ("heard:13", TakeLog());
    EXPECT_EQ(InputResult::kDone, UserPicked(popup, 2));
    EXPECT_EQ("heard:13 heard:151 heard:1/0", TakeLog());
    EXPECT_EQ(InputResult::kDone, UserPicked(popup, 2));
    EXPECT_EQ("heard:13 heard:1/0", TakeLog()) << "the same item is no change";
    mListener.hear = [&](EventRef event) {
        DisableMenuItem(GetControlPopupMenuHandle(popup), 3);
        return Log("heard")(event);
    };
    EXPECT_EQ(InputResult::kRefused, UserPicked(popup, 3));
    EXPECT_EQ("heard:13", TakeLog());
    mListener.hear = [&](EventRef event) {
        DeleteMenuItem(GetControlPopupMenuHandle(popup), 1);
        return Log("heard")(event);
    };
    EXPECT_EQ(InputResult::kRefused, UserPicked(popup, 3)) << "the press was sent";
    EXPECT_EQ("heard:13", TakeLog());
    EXPECT_EQ(InputResult::kMissing, UserPicked(popup, 4));
    EXPECT_EQ(InputResult::kMissing, UserPicked(popup, 0));
    EXPECT_EQ("", TakeLog());
    EXPECT_EQ(2, GetControl32BitValue(popup));
}

TEST_F(GesturesTest, ArrowsOnAPopupTakeTheNextEnabledItemAndSpaceIsAClick) {
    ControlRef const popup = Popup("abcd");
    SetControl32BitValue(popup, 1);
    DisableMenuItem(GetControlPopupMenuHandle(popup), 2);
    UserFocused(popup);
    Key(kDownKey);
    EXPECT_EQ("heard:13 heard:151 heard:1/0", TakeLog());
    EXPECT_EQ(3, GetControl32BitValue(popup));
    Key(kUpKey);
    EXPECT_EQ(1, GetControl32BitValue(popup));
    TakeLog();
    Key(kUpKey);
    EXPECT_EQ("heard:13", TakeLog()) << "no item that way: the press alone";
    Key(kSpaceKey);
    EXPECT_EQ("heard:13", TakeLog());
}

TEST_F(GesturesTest, AKeyGoesAsTextThenRawAndThenDoesItsOwn) {
    ControlRef const field = Field("ab");
    UserFocused(field);
    std::string seen;
    OSStatus textAnswer = eventNotHandledErr;
    Listener text{[&](EventRef event) {
        char16_t unit = 0;
        GetEventParameter(event, kEventParamTextInputSendText, typeUnicodeText, nullptr,
                          sizeof unit, nullptr, &unit);
        seen += "text" + std::to_string(unit);
        EXPECT_EQ(kShiftKey, GetCurrentKeyModifiers());
        return textAnswer;
    }};
    Listener raw{[&](EventRef event) {
        std::uint8_t byte = 0;
        GetEventParameter(event, kEventParamKeyMacCharCodes, typeChar, nullptr, 1, nullptr, &byte);
        seen += " raw" + std::to_string(byte);
        return eventNotHandledErr;
    }};
    text.Install(GetControlEventTarget(field), {kText});
    raw.Install(GetWindowEventTarget(mWindow), {kRawKey});
    Key(U'é', kShiftKey);
    EXPECT_EQ("text233 raw142", seen) << "a byte of Mac Roman";
    EXPECT_EQ("abé", ShownText(field));
    EXPECT_EQ(0U, GetCurrentKeyModifiers());
    textAnswer = noErr;
    seen.clear();
    Key(U'x', kShiftKey);
    EXPECT_EQ("text120", seen);
    EXPECT_EQ("abé", ShownText(field));
}

TEST_F(GesturesTest, AFieldEditsItsText) {
    ControlRef const field = Field("abcd");
    UserFocused(field);
    EXPECT_EQ("4-4", Selection(field)) << "a text that is set leaves the point at its end";
    struct {
        int from, to;
        char32_t key;
        std::uint32_t modifiers;
        char const *text, *selection;
    } const cases[] = {
        {1, 3, U'x', 0, "axd", "2-2"},           {1, 3, kBackspaceKey, 0, "ad", "1-1"},
        {1, 3, kLeftKey, 0, "abcd", "1-1"},      {1, 3, kRightKey, 0, "abcd", "3-3"},
        {0, 0, kBackspaceKey, 0, "abcd", "0-0"}, {4, 4, kDeleteKey, 0, "abcd", "4-4"},
        {1, 1, kDeleteKey, 0, "acd", "1-1"},     {2, 2, kHomeKey, 0, "abcd", "0-0"},
        {9, 2, kEndKey, 0, "abcd", "4-4"},       {2, 2, U'v', kCommandKey, "abcd", "2-2"},
        {2, 2, U'😀', 0, "ab😀cd", "4-4"},         {-1, 1, kLeftKey, 0, "abcd", "0-0"},
    };
    for (auto const& row : cases) {
        SetControlData(field, 0, "text"_code, 4, "abcd");
        EXPECT_EQ(InputResult::kDone, UserSelectedText(field, row.from, row.to));
        Key(row.key, row.modifiers);
        EXPECT_EQ(row.text, ShownText(field)) << static_cast<int>(row.key);
        EXPECT_EQ(row.selection, Selection(field)) << row.text << static_cast<int>(row.key);
    }
    CFStringRef const pair = Str("😀").Release();
    SetControlData(field, 0, "cfst"_code, sizeof pair, &pair);
    CFRelease(pair);
    Key(kBackspaceKey);
    EXPECT_EQ("", ShownText(field)) << "a surrogate pair is one character";
}

TEST_F(GesturesTest, TypingCountsTheCharactersThatWentIntoTheText) {
    EXPECT_EQ(InputResult::kRefused, UserTyped(mWindow, u"ab").result) << "no focus";
    EXPECT_EQ(0, mFace.TakeBeeps());
    ControlRef const field = Field();
    UserFocused(field);
    Listener digits{[&](EventRef event) {
        char16_t unit = 0;
        GetEventParameter(event, kEventParamTextInputSendText, typeUnicodeText, nullptr,
                          sizeof unit, nullptr, &unit);
        if (unit >= u'0' && unit <= u'9') {
            return eventNotHandledErr;
        }
        SysBeep(5);
        return noErr;
    }};
    digits.Install(GetControlEventTarget(field), {kText});
    TypedResult const mixed = UserTyped(mWindow, u"1a2b");
    EXPECT_EQ(InputResult::kDone, mixed.result);
    EXPECT_EQ(2, mixed.taken);
    EXPECT_EQ("12", ShownText(field));
    EXPECT_EQ(2, mFace.TakeBeeps());
    EXPECT_EQ(InputResult::kRefused, UserTyped(mWindow, u"xy").result);
    DisposeControl(field);
    EXPECT_EQ(0, UserTyped(mWindow, u"1").taken);
}

TEST_F(GesturesTest, AFullFieldBeepsAndKeepsItsText) {
    ControlRef const field = Field(std::string(32767, 'a').c_str());
    UserFocused(field);
    EXPECT_EQ(0, UserTyped(mWindow, u"b").taken);
    EXPECT_EQ(1, mFace.TakeBeeps());
    UserSelectedText(field, 0, 1);
    EXPECT_EQ(1, UserTyped(mWindow, u"b").taken);
}

TEST_F(GesturesTest, TabGoesRoundWhatCanHaveTheFocusInTheOrderOfEmbedding) {
    ControlRef const pane = Pane();
    ControlRef const button = Button();
    ControlRef const field = Field("abc");
    ControlRef const box = CheckBox();
    EmbedControl(box, pane);
    DisableControl(button);
    for (ControlRef const next : {box, field, box}) {
        Key(kTabKey);
        EXPECT_EQ(next, Focus());
    }
    Key(kTabKey, kShiftKey);
    EXPECT_EQ(field, Focus());
    EXPECT_EQ("3-3", Selection(field)) << "going into a field leaves its selection";
    EXPECT_EQ(noErr, SetKeyboardFocus(mWindow, field, 1));
    EXPECT_EQ("0-3", Selection(field)) << "a dialog that puts it there selects everything";
    EXPECT_EQ(errCouldntSetFocus, SetKeyboardFocus(mWindow, pane, 1));
    UserFocused(box);
    HideControl(pane);
    ShowControl(pane);
    EXPECT_EQ(nullptr, Focus()) << "hiding takes it away for good";
}

TEST_F(GesturesTest, ReturnAndEscapeHitTheButtonsWhereNobodyTookThem) {
    ControlRef const ok = Button();
    ControlRef const cancel = Button();
    SetControlCommandID(ok, 1);
    SetControlCommandID(cancel, 2);
    SetWindowDefaultButton(mWindow, ok);
    SetWindowCancelButton(mWindow, cancel);
    UserFocused(Field());
    Key(kReturnKey);
    EXPECT_EQ("heard:1/10 heard:1/1", TakeLog()) << "a hit alone";
    Key(kEscapeKey);
    UserClosedWindow(mWindow);
    EXPECT_EQ("heard:1/10 heard:1/2 heard:1/10 heard:1/2", TakeLog());
    DisableControl(ok);
    Key(kReturnKey);
    DisposeControl(cancel);
    Key(kEscapeKey);
    EXPECT_EQ(InputResult::kMissing, UserClosedWindow(mWindow));
    EXPECT_EQ("", TakeLog());
}

TEST_F(GesturesTest, AnAlertAnswersToTheKeysThroughItsDefaultButton) {
    ControlRef const ok = Button();
    SetWindowDefaultButton(mWindow, ok);
    EXPECT_EQ(nullptr, Focus());
    mFace.SetNextStep([&] {
        EXPECT_EQ(ok, Focus());
        QuitAppModalLoopForWindow(mWindow);
        return true;
    });
    RunAppModalLoopForWindow(mWindow);
}

// Of a tree of 10,000 controls a gesture looks at the way up and at nothing beside it.
TEST_F(GesturesTest, AClickCostsWhatItTouchesAndNotTheTree) {
    ControlRef const pane = Pane();
    for (int count = 0; count < 10000; ++count) {
        EmbedControl(Button(), pane);
    }
    ControlRef const box = CheckBox();
    EmbedControl(box, pane);
    mFace.Settle();
    long const before = VisitedControls();
    EXPECT_EQ(InputResult::kDone, UserPressed(box, 0, true));
    mFace.Settle();
    EXPECT_LE(VisitedControls() - before, 60);
    EXPECT_EQ("heard:13 heard:151 heard:1/11", TakeLog());

    auto const cost = [](auto const& act) {
        long const start = VisitedControls();
        act();
        return VisitedControls() - start;
    };
    Rect const larger = {0, 0, 300, 300}, moved = {1, 1, 301, 301};
    EXPECT_LE(cost([&] { SetControlBounds(pane, &larger); }), 5) << "nothing moves along";
    EXPECT_LE(10000, cost([&] { SetControlBounds(pane, &moved); })) << "a walk shows";
    HideControl(pane);
    UserFocused(Field());
    mFace.Settle();
    EXPECT_LE(cost([&] { Key(kTabKey); }), 60) << "nobody looks into what is hidden";
}

}  // namespace
