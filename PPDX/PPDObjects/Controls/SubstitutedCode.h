// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

class PPDXControl;

// A control's code with its value put in. Made when it is first asked for and kept until the value
// changes, so that asking for the length and then for the bytes costs one substitution.
class SubstitutedCode {
  public:
    SubstitutedCode() = default;
    SubstitutedCode(SubstitutedCode const&) = delete;
    SubstitutedCode& operator=(SubstitutedCode const&) = delete;
    ~SubstitutedCode();

    void Discard();
    // The control's framed feature text with `value` in the frame line and in the code, as
    // PPDXControl::PostScript() returns it. 0 for a control without a keyword.
    long PostScript(PPDXControl& control, char const* value, unsigned char* out);

  private:
    void Substitute(PPDXControl& control, char const* value);

    unsigned char* mCode = nullptr;  // owned, from malloc; null when stale
    std::int32_t mLength = 0;
};
