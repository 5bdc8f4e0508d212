// SPDX-License-Identifier: Apache-2.0
#include "host/ControlSettings.h"

#include "PPDX/PPDObjects/Controls/PPDXControl.h"
#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "host/JsonText.h"
#include "platform/CFRef.h"

namespace {

// The colour profile options take, beside what they have, any text that fits.
bool TakesAsNew(PPDXControl& control, CFStringRef asked) {
    auto* const popup = dynamic_cast<PPDXPopupControl*>(&control);
    char text[PPDXPopupControl::kUnknownValueSize];
    return popup != nullptr && popup->TakesUnknownValues() &&
           CFStringGetCString(asked, text, sizeof text, kCFStringEncodingUTF8);
}

// A boolean takes any text and a number any number. The others must then stand at what was asked,
// or at least have moved: some choices also go by a second name.
bool Took(PPDXControl& control, CFStringRef asked, CFStringRef before, CFStringRef after) {
    bool const choosy = control.Type() == kPopupType || control.Type() == kSpecialOptionType;
    return !choosy || CFEqual(after, asked) || !CFEqual(after, before) ||
           TakesAsNew(control, asked);
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

Outcome ControlSettings::Apply(ControlSetting const& setting) {
    DisplayOptionsScope const all(kDisplayAll);
    CNTL_TYPE type = kControlType;
    PPDXControls* const controls = mPPD.GetControls();
    PPDXControl* const control =
        controls == nullptr ? nullptr : controls->Find(setting.keyword.c_str(), type, true);
    if (control == nullptr) {
        return Outcome::Failed(mFile + " has no control " + setting.keyword);
    }
    Set(*control, setting);
    return Outcome::Done();
}

void ControlSettings::Set(PPDXControl& control, ControlSetting const& setting) {
    CFRef<CFStringRef> const asked = JsonText::FromUTF8(setting.value);
    CFRef<CFStringRef> const before(control.CopyCurrentControlValueString());
    control.SetCurrentControlWithCFString(asked);
    CFRef<CFStringRef> const after(control.CopyCurrentControlValueString());
    if (!Took(control, asked, before, after)) {
        mErr << "zubprint: warning: " << setting.keyword << " doesn't take " << setting.value
             << (after ? " and stays at " + JsonText::ToUTF8(after)
                       : std::string(" and stays unset"))
             << '\n';
    }
}
