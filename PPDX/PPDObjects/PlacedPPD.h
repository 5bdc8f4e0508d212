// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "PPDX/PPDObjects/FileLines.h"
#include "PPDX/PPDObjects/ZUBPPD.h"

// A PPD that knows in which lines its rules and controls stand. It costs what a ZUBPPD costs and
// the file's bytes besides: for those who explain a PPD, not for those who print with it.
class PlacedPPD : public ZUBPPD {
  public:
    // A rule as it was read. Bytes as they stand in the file; a blank option is the empty text.
    struct Rule {
        std::string key1;
        std::string option1;
        std::string key2;
        std::string option2;
        bool requirement;
        long line;
    };

    // Throws std::bad_alloc. The second takes in orphans and hidden elements too.
    PlacedPPD(CFURLRef url, _PARSE_OPTIONS_ options);
    explicit PlacedPPD(FSSpec const& file);

    std::vector<Rule> const& Rules() const { return mRules; }  // in the order of the file
    FileLines const& Lines() const { return mLines; }
    // The line of the flags, or the only line, that made the control; 1 for one that isn't of the
    // file.
    long LineOf(PPDXControl const& control) const;

  protected:
    void TakeRule(std::string_view key1, std::string_view option1, std::string_view key2,
                  std::string_view option2, bool requirement) override;
    void ControlTaken(PPDXControl& control) override;

  private:
    PlacedPPD(std::unique_ptr<PPDFile> file, _PARSE_OPTIONS_ options);

    FileLines mLines;
    std::vector<Rule> mRules;
    std::unordered_map<PPDXControl const*, long> mControlPlaces;
};
