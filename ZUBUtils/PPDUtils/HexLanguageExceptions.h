// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <set>
#include <string>

// The languages, by their *LanguageVersion text, whose bytes above 127 are in the encoding that the
// PPD names. For any other language such bytes are Mac Roman, whatever the PPD says.
class HexLanguageExceptions {
  public:
    HexLanguageExceptions();
    HexLanguageExceptions(HexLanguageExceptions const&) = delete;
    HexLanguageExceptions& operator=(HexLanguageExceptions const&) = delete;
    virtual ~HexLanguageExceptions();

    bool IsException(std::string const& language) const;  // compared exactly

  private:
    std::set<std::string> mLanguages;
};
