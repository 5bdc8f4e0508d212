// SPDX-License-Identifier: Apache-2.0
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <type_traits>

#include "PPDX/PPDObjects/Controls/PPDXBooleanControl.h"
#include "PPDX/PPDObjects/Controls/PPDXFloatRangeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXJobNote.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/Controls/PPDXRangeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXShortcuts.h"
#include "PPDX/PPDObjects/PPDXGroups.h"
#include "PPDX/PPDObjects/PPDXProperties.h"
#include "PPDX/PPDObjects/PPDXProperty.h"
#include "PPDX/PPDObjects/PPDXRollDown.h"
#include "PPDX/PPDObjects/PPDXScrollPane.h"
#include "tests/interface/InterfacePPD.h"

namespace {

// Whether the plug-in exports the function under this very name.
void ExpectExported(char const* name, void* function) {
    static void* const plugIn = dlopen(ZUB_PLUGIN_DIR "/Contents/MacOS/ZUB", RTLD_NOW);
    ASSERT_NE(plugIn, nullptr) << dlerror();
    EXPECT_EQ(dlsym(plugIn, name), function) << name;
}

// The flat function gives what the member gave, which is never the answer for a null handle.
template <typename Result, typename Handle, typename... Arguments>
void ExpectFlat(char const* name, Result (*function)(Handle*, Arguments...), Handle* handle,
                std::type_identity_t<Result> member, std::type_identity_t<Result> onNull,
                std::type_identity_t<Arguments>... arguments) {
    ExpectExported(name, reinterpret_cast<void*>(function));
    EXPECT_NE(member, onNull) << name;
    EXPECT_EQ(function(handle, arguments...), member) << name;
    EXPECT_EQ(function(nullptr, arguments...), onNull) << name;
}
#define EXPECT_FLAT(function, handle, ...) ExpectFlat(#function, function, handle, __VA_ARGS__)

// A pure action: `effect` tells whether it is seen by now.
template <typename Handle, typename Effect, typename... Arguments>
void ExpectAction(char const* name, void (*function)(Handle*, Arguments...), Handle* handle,
                  Effect effect, std::type_identity_t<Arguments>... arguments) {
    ExpectExported(name, reinterpret_cast<void*>(function));
    function(nullptr, arguments...);
    EXPECT_FALSE(effect()) << name;
    function(handle, arguments...);
    EXPECT_TRUE(effect()) << name;
}
#define EXPECT_ACTION(function, handle, ...) ExpectAction(#function, function, handle, __VA_ARGS__)

// The second element of a walk, which stands at the first one afterwards.
template <typename List, typename Element>
Element* Second(List* list, Element* (List::*first)(), Element* (List::*next)()) {
    (list->*first)();
    Element* const second = (list->*next)();
    (list->*first)();
    return second;
}

class FlatFunctionsTest : public testing::Test {
  protected:
    template <typename Control>
    Control* Of(char const* keyword) {
        return ControlOf<Control>(*mPPD, keyword);
    }

    PPDPtr mPPD = ParseTwoOfEach();
    DisplayOptionsScope mAll{kDisplayAll};  // a construction puts the option back
    PPDXControls* mControls = mPPD->GetControls();
};

TEST_F(FlatFunctionsTest, OfTheTree) {
    PPDXGroups* const groups = mPPD->GetGroups();
    EXPECT_FLAT(FirstGroup, groups, groups->First(), nullptr);
    EXPECT_FLAT(NextGroup, groups, Second(groups, &PPDXGroups::First, &PPDXGroups::Next), nullptr);
    EXPECT_FLAT(FindGroup, groups, groups->Find("Fin", false), nullptr, "Fin", false);
    EXPECT_FLAT(GroupCount, groups, groups->Count(), 0);
    PPDXGroups empty;
    EXPECT_FLAT(IsGrouPointerListEmpty, &empty, true, false);

    PPDXProperties* const pages = mPPD->GetProperties();
    PPDXProperty* const page = pages->First();
    EXPECT_FLAT(FirstProperty, pages, page, nullptr);
    EXPECT_FLAT(NextProperty, pages, Second(pages, &PPDXProperties::First, &PPDXProperties::Next),
                nullptr);
    EXPECT_FLAT(FindProperty, pages, pages->Find("econd", false), nullptr, "econd", false);
    EXPECT_FLAT(PropertyCount, pages, 2, 0);
    PPDXProperties noPages;
    EXPECT_FLAT(IsPropertyListEmpty, &noPages, true, false);

    auto* const rollDown = static_cast<PPDXRollDown*>(groups->Find("Finish", true));
    auto* const pane = static_cast<PPDXScrollPane*>(groups->Find("Pane1", true));
    EXPECT_FLAT(IsRollDown, static_cast<PPDXElement*>(rollDown), true, false);
    EXPECT_FLAT(GetRollDownControlList, rollDown, rollDown->Controls(), nullptr);
    EXPECT_FLAT(IsScrollPane, static_cast<PPDXElement*>(pane), true, false);
    EXPECT_FLAT(GetScrollPaneRollDowns, pane, pane->RollDowns(), nullptr);
    EXPECT_FLAT(IsPropertyPage, static_cast<PPDXElement*>(page), true, false);
    EXPECT_FLAT(GetPropertyScrollDown, page, pane, nullptr);
    EXPECT_FALSE(IsRollDown(pane) || IsScrollPane(page) || IsPropertyPage(rollDown));
    PPDXProperty shown("Shown", CFSTR("Shown"), true, true, true);
    EXPECT_ACTION(
        SetPropertyScrollDown, &shown, [&] { return shown.GetScrollDown() == pane; }, pane);
    EXPECT_FLAT(ShowPropInPrintProp, &shown, true, false);
    EXPECT_FLAT(ShowPropInApp, &shown, true, false);
}

TEST_F(FlatFunctionsTest, OfElementsAndErrors) {
    PPDXElement* const control = Of<PPDXControl>("*R1");
    PPDXElement* const orphan = Of<PPDXControl>("*PageSize");
    EXPECT_FLAT(UserName, control, control->UserName(), nullptr);
    EXPECT_FLAT(Keyword, control, control->Keyword(), nullptr);
    EXPECT_FLAT(IsVisible, control, true, false);
    EXPECT_FLAT(IsOrphan, orphan, true, false);
    EXPECT_FLAT(GetParent, control, control->GetParent(), nullptr);
    EXPECT_FLAT(EqualsElement, control, true, false, control);
    EXPECT_FLAT(EqualsKeyWord, control, true, false, "*R1");
    EXPECT_FALSE(IsOrphan(control) || EqualsElement(control, orphan) ||
                 EqualsElement(control, nullptr) || EqualsKeyWord(control, "*R"));

    PPDXErrors errors;
    EXPECT_FLAT(ErrorListIsEmpty, &errors, true, false);
    PPDXErrorObj fatal(28, "*PPD-Adobe", true);
    PPDXErrorObj second(19, false);
    errors.Add(&fatal);
    errors.Add(&second);
    EXPECT_FLAT(FirstError, &errors, &fatal, nullptr);
    EXPECT_FLAT(NextError, &errors, &second, nullptr);
    EXPECT_FLAT(ErrorCount, &errors, 2, 0);
    EXPECT_FLAT(GetErrorKeyword, &fatal, fatal.Keyword(), nullptr);
    EXPECT_FLAT(GetErrorDescription, &fatal, fatal.Description(), nullptr);
    EXPECT_FLAT(IsErrorFatal, &fatal, true, false);
}

TEST_F(FlatFunctionsTest, OfControls) {
    PPDXControl* const control = Of<PPDXControl>("*R1");
    EXPECT_FLAT(GetFirstControlFlag, control, control->FirstControlFlag(), nullptr);
    EXPECT_FLAT(GetNextControlFlag, control,
                Second(control, &PPDXControl::FirstControlFlag, &PPDXControl::NextControlFlag),
                nullptr);
    EXPECT_FLAT(GetControlFlagCount, control, 6, 0);
    EXPECT_FLAT(IsCommandControl, control, true, false);
    EXPECT_FLAT(IsSpoolerControl, control, true, false);
    EXPECT_FLAT(IsSetupControl, control, true, false);
    EXPECT_FLAT(IsMacVJNControl, control, true, false);
    EXPECT_FLAT(IsMacImgShiftControl, control, true, false);
    EXPECT_FLAT(IsNoVelonDriverUIControl, control, true, false);
    EXPECT_FLAT(IsValidControlKeyword, control, true, false, "*Key");
    EXPECT_FALSE(IsValidControlKeyword(control, nullptr));
    EXPECT_FALSE(control->FindControlFlag("Set") || control->FindControlFlag("setup") ||
                 control->FindControlFlag(nullptr));
    EXPECT_FLAT(GetPostScript, control, control->PostScript(nullptr), 0, nullptr);
    auto* const range = static_cast<PPDXRangeControl*>(control);
    range->SetValue(15);
    EXPECT_ACTION(ResetControlToDefault, control, [&] { return range->GetValue() == 10; });

    EXPECT_ACTION(
        SetRangeValue, range, [&] { return range->GetValue() == 15; }, 17);
    EXPECT_FLAT(GetRangeValue, range, 15, 0);
    EXPECT_FLAT(GetRangeDefaultVal, range, 10, 0);
    EXPECT_FLAT(GetRangeIncrement, range, 5, 0);
    EXPECT_FLAT(GetRangeMinimum, range, 2, 0);
    EXPECT_FLAT(GetRangeMaximum, range, 20, 0);
    EXPECT_FLAT(RangePostScript, range, range->PostScript(nullptr), 0, nullptr);
}

TEST_F(FlatFunctionsTest, OfPopupsAndBooleans) {
    auto* const popup = Of<PPDXPopupControl>("*PageSize");
    EXPECT_FLAT(FirstItem, popup, popup->FirstItem(), nullptr);
    EXPECT_FLAT(NextItem, popup,
                Second(popup, &PPDXPopupControl::FirstItem, &PPDXPopupControl::NextItem), nullptr);
    EXPECT_FLAT(IsKeywordSelected, popup, true, false, "A");
    EXPECT_FLAT(SetKeywordSelect, popup, true, false, "B", true);
    EXPECT_FLAT(GetPopupValue, popup, 2, 0);
    EXPECT_FLAT(GetKeywordLocalName, popup, popup->GetKeywordLocalName("A"), nullptr, "A");
    EXPECT_FLAT(GetKeywordPSData, popup, popup->GetKeywordPSData("A", nullptr), 0, "A", nullptr);
    EXPECT_FLAT(GetDefaultKeyword, popup, popup->GetDefaultKeyword(), nullptr);
    EXPECT_FLAT(PopupItemCount, popup, 2, 0);
    EXPECT_FLAT(GetPopupDefaultValue, popup, 1, 0);
    EXPECT_FLAT(PopupPostScript, popup, popup->PostScript(nullptr), 0, nullptr);
    EXPECT_ACTION(
        SetPopupValue, popup, [&] { return popup->GetValue() == 1; }, 1);
    PointerList nothing;
    PPDXPopupControl several("*Several", CFSTR("Several"), nothing, true, true, false, nothing,
                             nullptr, nullptr);
    EXPECT_FLAT(CanSelectMultipleItems, &several, true, false);

    PointerList flags;
    PPDXBooleanControl boolean("*On", CFSTR("On"), flags, true, new CString("Yes"), nullptr, 0,
                               new CString("No"), nullptr, 0, true, nullptr);
    EXPECT_FLAT(DefaultState, &boolean, true, false);
    EXPECT_FLAT(TrueDisplayText, &boolean, boolean.TrueDisplayText(), nullptr);
    EXPECT_FLAT(FalseDisplayText, &boolean, boolean.FalseDisplayText(), nullptr);
    EXPECT_FLAT(IsTrue, &boolean, true, false);
    EXPECT_FLAT(BooleanPostScript, &boolean, boolean.PostScript(nullptr), 0, nullptr);
    EXPECT_ACTION(
        SetValue, &boolean, [&] { return !boolean.IsTrue(); }, false);
}

TEST_F(FlatFunctionsTest, OfTheRegistry) {
    PPDXControls* const all = mControls;
    CNTL_TYPE type = kControlType;
    PPDXControl* const first = all->First(type);
    PPDXControl* const second = all->Next(type);
    EXPECT_FLAT(GetFirst, all, first, nullptr, type);
    EXPECT_FLAT(GetNext, all, second, nullptr, type);
    EXPECT_FLAT(Find, all, second, nullptr, second->Keyword(), type, true);

#define EXPECT_WALK(Kind, Type, find, getFind, keyword)                                       \
    EXPECT_FLAT(GetFirst##Kind, all, all->First##Kind(), nullptr);                            \
    EXPECT_FLAT(GetNext##Kind, all,                                                           \
                Second(all, &PPDXControls::First##Kind, &PPDXControls::Next##Kind), nullptr); \
    EXPECT_FLAT(getFind, all, Of<Type>(keyword), nullptr, keyword, true);                     \
    EXPECT_EQ(all->find(keyword, true), Of<Type>(keyword))
    EXPECT_WALK(PopupControl, PPDXPopupControl, FindPopup, GetFindPopup, "*ZUDuplex");
    EXPECT_WALK(BooleanControl, PPDXBooleanControl, FindBoolean, GetFindBoolean, "*B2");
    EXPECT_WALK(RangeControl, PPDXRangeControl, FindRangeControl, GetFindRangeControl, "*R2");
    EXPECT_WALK(FloatRangeControl, PPDXFloatRangeControl, FindFloatRangeControl,
                GetFindFloatRangeControl, "*F2");
    EXPECT_WALK(JobNote, PPDXJobNote, FindJobNote, GetFindJobNote, "*N2");
#undef EXPECT_WALK

    EXPECT_FLAT(GetPopupCount, all, 4, 0);
    EXPECT_FLAT(GetBooleanCount, all, 2, 0);
    EXPECT_FLAT(GetRangeCount, all, 2, 0);
    EXPECT_FLAT(GetFloatRangeCount, all, 2, 0);
    EXPECT_FLAT(GetJobnoteCount, all, 2, 0);
    EXPECT_FLAT(GetControlCount, all, 13, 0);
    EXPECT_FLAT(GetNoPopups, all, false, true);
    EXPECT_FLAT(GetNoBooleanControls, all, false, true);
    EXPECT_FLAT(GetNoRangeControls, all, false, true);
    EXPECT_FLAT(GetNoFloatRangeControls, all, false, true);
    EXPECT_FLAT(GetNoJobNotes, all, false, true);
    EXPECT_FLAT(GetEmpty, all, false, true);
}

TEST_F(FlatFunctionsTest, OfShortcuts) {
    PPDXShortcuts* const shortcuts = mPPD->GetShortcuts();
    EXPECT_FLAT(FirstShortcut, shortcuts, Of<PPDXControl>("*PageSize"), nullptr);
    EXPECT_FLAT(NextShortcut, shortcuts, Of<PPDXControl>("*InputSlot"), nullptr);
    EXPECT_FLAT(FindShortcut, shortcuts, Of<PPDXControl>("*ZUDuplex"), nullptr, "Dup", false);
    EXPECT_FLAT(GetShortcutCount, shortcuts, 4, 0);
    EXPECT_FLAT(IsShortcutsListEmpty, shortcuts, false, true);
    EXPECT_FLAT(GetPageSizeShortcut, shortcuts, Of<PPDXControl>("*PageSize"), nullptr);
    EXPECT_FLAT(GetInputSlotShortcut, shortcuts, Of<PPDXControl>("*InputSlot"), nullptr);
    EXPECT_FLAT(GetDuplexShortcut, shortcuts, Of<PPDXControl>("*ZUDuplex"), nullptr);
    EXPECT_FLAT(GetOrientationShortcut, shortcuts, Of<PPDXControl>("*ZU_PAPER_ORIENTATION"),
                nullptr);
    // No PPD has a shortcut of these two.
    for (PPDXShortcuts* const handle : {shortcuts, static_cast<PPDXShortcuts*>(nullptr)}) {
        EXPECT_EQ(GetMediaSourceShortcut(handle), nullptr);
        EXPECT_EQ(GetChromvaleShortcut(handle), nullptr);
    }
    ExpectExported("GetMediaSourceShortcut", reinterpret_cast<void*>(GetMediaSourceShortcut));
    ExpectExported("GetChromvaleShortcut", reinterpret_cast<void*>(GetChromvaleShortcut));
}

}  // namespace
