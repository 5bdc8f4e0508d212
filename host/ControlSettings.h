// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "PPDX/PPDObjects/ConstraintFix.h"
#include "host/Options.h"
#include "host/Outcome.h"
#include "platform/CoreFoundation.h"

class PPDXControl;
class ZUBPPD;

// Makes the user's choices on the controls of a parsed PPD, hidden ones and orphans too. What
// doesn't come out as it was asked for is told on `err`, one line each.
class ControlSettings {
  public:
    // `file` is the PPD's name for messages.
    ControlSettings(ZUBPPD& ppd, std::string const& file, std::ostream& err);

    // With two-way communication on, a profile also goes into the note of its option's keyword, as
    // the Job Properties application would put it there. Called ahead of Apply.
    void FillNotesOfProfiles() { mFillsNotes = true; }
    // Takes the lists that don't stand at their default as chosen before: CheckRules speaks of them
    // too. Called ahead of Apply.
    void NoteKept();
    // In the order given. Stops at the first keyword that the PPD doesn't have. A choice that a
    // control doesn't take as it is, and a colour profile that can't stand in a job, is warned of.
    Outcome Apply(std::vector<ControlSetting> const& settings);
    // Gives *InputSlot the paper source of the operating system, a keyword, over what Apply made of
    // it. Warns of one that the PPD lacks, and of a choice that doesn't count for it.
    void ApplyPaperFeed(std::string const& keyword);
    // Makes the changes that the choices made so far need, if there are such; tells each, and
    // what can't be helped so. Leaves those choices as they are.
    void Fix();
    // Warns of each choice that a rule sets against the present selection, with what stands against
    // it. Called when all choices are made.
    void CheckRules();

    // Lines told so far.
    std::size_t Warnings() const { return mWarnings; }

  private:
    Outcome Apply(ControlSetting const& setting);
    std::vector<std::string> ChosenKeywords() const;
    void Make(ConstraintFix::Change const& change, std::string const& choice);
    void Set(PPDXControl& control, ControlSetting const& setting);
    void FillNote(char const* keyword, CFStringRef value);
    void Note(PPDXControl& control);
    void Warn(std::string const& text);

    ZUBPPD& mPPD;
    std::string const& mFile;
    std::ostream& mErr;
    std::vector<PPDXControl*> mChosen;  // each once; the PPD's
    std::vector<PPDXControl*> mKept;    // from before
    bool mFillsNotes = false;
    std::size_t mWarnings = 0;
};
