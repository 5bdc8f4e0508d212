// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/SubstitutedCode.h"

#include <cstdlib>
#include <memory>
#include <new>
#include <utility>

#include "PPDX/PPDObjects/Controls/PPDXControl.h"

SubstitutedCode::~SubstitutedCode() {
    std::free(mCode);
}

void SubstitutedCode::Discard() {
    std::free(std::exchange(mCode, nullptr));
    mLength = 0;
}

long SubstitutedCode::PostScript(PPDXControl& control, char const* value, unsigned char* out) {
    if (control.Keyword() == nullptr) {
        return 0;
    }
    if (mCode == nullptr) {
        Substitute(control, value);
    }
    return control.GeneratePSOutputData(out, mCode, mLength, value, true);
}

void SubstitutedCode::Substitute(PPDXControl& control, char const* value) {
    mLength = 0;
    // The base operation gives the code as the PPD has it.
    long const size = control.PPDXControl::PostScript(nullptr);
    if (size < 1) {
        return;
    }
    std::unique_ptr<unsigned char[]> const code(
        new (std::nothrow) unsigned char[static_cast<std::size_t>(size)]);
    if (code == nullptr) {
        return;
    }
    control.PPDXControl::PostScript(code.get());
    mLength = static_cast<std::int32_t>(
        control.Inject(control.Keyword(), code.get(), size, value, mCode));
}
