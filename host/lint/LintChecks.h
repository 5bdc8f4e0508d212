// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "host/lint/LintFinding.h"

class PPDXControl;
class PlacedPPD;

// What can be told of a PPD that was read, each kind of check in a function. They add what they
// find.
class LintChecks {
  public:
    // Whether the file has anything of the extension grammar.
    static bool IsExtended(PlacedPPD const& ppd);
    // What the reader reports of the file at `path`, and where it stopped.
    static void Reading(PlacedPPD& ppd, std::string const& path, LintFindings& findings);
    // Lines, and values of options, that are read in part. Called behind Reading, with what that
    // found.
    static void Lines(PlacedPPD& ppd, LintFindings& findings);
    // Whether there is anything for the extension, and whether print takes the file at `path`.
    static void Use(PlacedPPD& ppd, std::string const& path, LintFindings& findings);
    // Rules that do nothing or fight, and choices that they leave no way to.
    static void Rules(PlacedPPD& ppd, LintFindings& findings);
    // Defaults that don't count, choices that stand twice, and ends that name another block.
    static void Blocks(PlacedPPD& ppd, LintFindings& findings);
    // Options that nothing mentions, and choices without a name for people.
    static void Options(PlacedPPD& ppd, LintFindings& findings);
    // Code that Ghostscript's scanner doesn't take; a note where there is no Ghostscript.
    static void Code(PlacedPPD& ppd, LintFindings& findings);

    // A sentence of its own: a full stop behind it unless it ends in a question.
    static std::string Sentence(std::string const& text);
    // The keyword that an opening line such as *OpenUI has; empty for any other line.
    static std::string OpenedIn(std::string_view line);
    // The line of a choice in the block of its control; that of the control when it isn't found.
    static long LineOfChoice(PlacedPPD const& ppd, PPDXControl const& control,
                             std::string const& option);
};
