// SPDX-License-Identifier: Apache-2.0
#include "host/ControlSettings.h"

#include <algorithm>
#include <cstring>

#include "PPDX/PPDObjects/ConstraintFix.h"
#include "PPDX/PPDObjects/Controls/PPDText.h"
#include "PPDX/PPDObjects/Controls/PPDXControl.h"
#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/RuledSelection.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "VelonFeatures/Project/Core/JobKeywords.h"
#include "VelonFeatures/Project/Core/ProfileNotes.h"
#include "ZUBUtils/PPDUtils/PlainText.h"
#include "constraints/ConstraintsEngine.h"
#include "constraints/UIConstraints.h"
#include "host/ControlNames.h"
#include "host/JsonText.h"
#include "host/PeopleText.h"
#include "host/TakenChoice.h"
#include "platform/CFRef.h"

namespace {

constexpr char kInputSlot[] = "*InputSlot";

using Pair = std::pair<long, long>;

// A profile that isn't the PPD's own and would end what it stands in.
bool IsUnfitProfile(PPDXControl& control, CFStringRef asked, std::string_view text) {
    auto* const popup = dynamic_cast<PPDXPopupControl*>(&control);
    return popup != nullptr && popup->TakesUnknownValues() && !IsPlainProfileText(text) &&
           !popup->HasValue(asked);
}

bool HasItem(PPDXPopupControl& popup, char const* keyword) {
    _PopupItem const* item = popup.FirstItem();
    while (item != nullptr && !item->HasKeyword(keyword)) {
        item = popup.NextItem();
    }
    return item != nullptr;
}

// The selected pairs that a rule sets against the choice, whichever of the two the rule begins
// with; those of the choice's own rules first.
std::vector<Pair> Blockers(UIConstraints& constraints, KVCache const& selection, Pair choice) {
    ConstraintForest const& rules = constraints.GetConstraintForest();
    std::vector<Pair> found;
    auto const add = [&](Pair pair) {
        if (pair.first != choice.first && std::ranges::find(found, pair) == found.end()) {
            found.push_back(pair);
        }
    };
    KVCache chosen;
    chosen.add(choice);
    ConstraintsEngine const all(&selection, &rules, &constraints.GetKeyForest(), nullptr);
    KVCache const conflicts = all.Test(&chosen).conflicts;
    for (long position = 0; position < conflicts.size(); ++position) {
        add(conflicts.GetKV(position));
    }
    ConstraintsEngine const back(&chosen, &rules, &constraints.GetKeyForest(), nullptr);
    for (long position = 0; position < selection.size(); ++position) {
        if (back.HasConflict(selection.GetKV(position))) {
            add(selection.GetKV(position));
        }
    }
    return found;
}

std::string Text(char const* bytes) {
    CFRef<CFStringRef> const text(CopyPPDText(bytes));
    return text ? JsonText::ToUTF8(text) : std::string();
}

}  // namespace

ControlSettings::ControlSettings(ZUBPPD& ppd, std::string const& file, std::ostream& err)
    : mPPD(ppd), mFile(file), mErr(err) {}

Outcome ControlSettings::Apply(std::vector<ControlSetting> const& settings) {
    for (ControlSetting const& setting : settings) {
        if (Outcome outcome = Apply(setting); !outcome.Ok()) {
            return outcome;
        }
    }
    return Outcome::Done();
}

void ControlSettings::NoteKept() {
    DisplayOptionsScope const all(kDisplayAll);
    PPDXControls* const controls = mPPD.GetControls();
    PPDXPopupControl* popup = controls == nullptr ? nullptr : controls->FirstPopupControl();
    for (; popup != nullptr; popup = controls->NextPopupControl()) {
        char const* const keyword = popup->CurrentKeyword();
        char const* const byDefault = popup->GetDefaultKeyword();
        if (keyword != nullptr && byDefault != nullptr && std::strcmp(keyword, byDefault) != 0) {
            mKept.push_back(popup);
        }
    }
}

Outcome ControlSettings::Apply(ControlSetting const& setting) {
    PPDXControl* const control = ControlNames::Find(mPPD, setting.keyword);
    if (control == nullptr) {
        return Outcome::Failed(ControlNames::Unknown(mPPD, mFile, setting.keyword));
    }
    Set(*control, setting);
    return Outcome::Done();
}

void ControlSettings::Set(PPDXControl& control, ControlSetting const& setting) {
    CFRef<CFStringRef> const asked = JsonText::FromUTF8(setting.value.View());
    CFRef<CFStringRef> const before(control.CopyCurrentControlValueString());
    Note(control);
    if (!IsUnfitProfile(control, asked, setting.value.View())) {
        control.SetCurrentControlWithCFString(asked);
        FillNote(control.Keyword(), asked);
        if (StandsAt(control, setting.value.View())) {
            return;
        }
    }
    CFRef<CFStringRef> const after(control.CopyCurrentControlValueString());
    bool const stays = !after || !before || CFEqual(after, before);
    // What was kept out of the command line isn't told here either.
    if (!setting.file.empty()) {
        Warn(setting.keyword + " doesn't take what the file for it holds");
        return;
    }
    std::string const value(setting.value.View());
    Warn(setting.keyword + " doesn't take " + (value.empty() ? "an empty value" : value) + " and " +
         (stays ? "stays " : "is now ") + (stays && after ? "at " : "") +
         (after ? JsonText::ToUTF8(after) : std::string("unset")) +
         ControlNames::AskChoice(mPPD, control, value));
}

void ControlSettings::FillNote(char const* keyword, CFStringRef value) {
    bool const isProfile = std::ranges::any_of(
        kSpecialChromvaleKeywords,
        [keyword](char const* special) { return std::strcmp(special, keyword) == 0; });
    if (mFillsNotes && isProfile) {
        KeepInProfileNote(mPPD, keyword, value);
    }
}

void ControlSettings::ApplyPaperFeed(std::string const& keyword) {
    auto* const slot = dynamic_cast<PPDXPopupControl*>(ControlNames::Find(mPPD, kInputSlot));
    if (slot == nullptr || !HasItem(*slot, keyword.c_str())) {
        Warn(mFile + " has no paper feed " + keyword +
             (slot == nullptr ? std::string() : ControlNames::AskChoice(mPPD, *slot, keyword)));
        return;
    }
    char const* const chosen = slot->CurrentKeyword();
    bool const isChosen = std::ranges::find(mChosen, slot) != mChosen.end();
    if (isChosen && (chosen == nullptr || keyword != chosen)) {
        Warn("the paper feed " + keyword + " wins over " + kInputSlot + "=" + Text(chosen));
    }
    slot->SetKeywordSelect(keyword.c_str(), true);
    Note(*slot);
}

void ControlSettings::CheckRules() {
    for (PPDXControl* const kept : mKept) {
        Note(*kept);
    }
    if (mPPD.GetUIConstraints() == nullptr || mChosen.empty()) {
        return;
    }
    UIConstraints& constraints = *mPPD.GetUIConstraints();
    CStringSoup const& texts = constraints.GetConstraintStrings();
    KVCache const selection = RuledSelection(mPPD);
    for (PPDXControl* const control : mChosen) {
        long const key = texts.Find(control->Keyword());
        long const option = selection.GetItem(key);
        if (option < 0) {
            continue;
        }
        std::string blockers;
        for (auto const& [otherKey, other] : Blockers(constraints, selection, {key, option})) {
            blockers += (blockers.empty() ? "" : ", ") + PeopleText::Bytes(texts.Find(otherKey)) +
                        "=" + PeopleText::Bytes(texts.Find(other));
        }
        if (!blockers.empty()) {
            Warn(PeopleText::Bytes(control->Keyword()) + "=" +
                 PeopleText::Bytes(texts.Find(option)) + " stands against " + blockers +
                 "; zubprint fix says what to change");
        }
    }
}

std::vector<std::string> ControlSettings::ChosenKeywords() const {
    std::vector<std::string> keywords;
    for (PPDXControl const* const control : mChosen) {
        keywords.emplace_back(control->Keyword());
    }
    return keywords;
}

void ControlSettings::Fix() {
    if (mPPD.GetUIConstraints() == nullptr) {
        return;
    }
    std::vector<std::string> const chosen = ChosenKeywords();
    CStringSoup const& texts = mPPD.GetUIConstraints()->GetConstraintStrings();
    ConstraintFix finder(mPPD);
    for (std::string const& keyword : chosen) {
        long const option =
            mPPD.GetUIConstraints()->GetSelection().GetItem(texts.Find(keyword.c_str()));
        if (option < 0) {
            continue;
        }
        std::string const choice =
            PeopleText::Bytes(keyword) + "=" + PeopleText::Bytes(texts.Find(option));
        ConstraintFix::Fix const fix = finder.Find(keyword.c_str(), texts.Find(option), chosen);
        if (!fix.possible) {
            mErr << Outcome::Line("not fixed: no other choice than yours could be changed to let " +
                                  choice + " stand");
        }
        for (ConstraintFix::Change const& change : fix.changes) {
            Make(change, choice);
        }
    }
}

void ControlSettings::Make(ConstraintFix::Change const& change, std::string const& choice) {
    PPDXControl* const control = ControlNames::Find(mPPD, change.keyword);
    if (control == nullptr) {
        return;  // CheckRules tells what stays
    }
    bool const isHardware = ControlNames::IsHardware(*control);
    mErr << Outcome::Line(
        "fixed: " + PeopleText::Bytes(change.keyword) + "=" + PeopleText::Bytes(change.to) +
        (change.from.empty() ? std::string() : " instead of " + PeopleText::Bytes(change.from)) +
        ", for " + choice + (isHardware ? ", if the printer has it" : ""));
    Set(*control, {change.keyword, WipedText(Text(change.to.c_str()))});
}

void ControlSettings::Note(PPDXControl& control) {
    if (std::ranges::find(mChosen, &control) == mChosen.end()) {
        mChosen.push_back(&control);
    }
}

void ControlSettings::Warn(std::string const& text) {
    ++mWarnings;
    mErr << Outcome::Warning(text);
}
