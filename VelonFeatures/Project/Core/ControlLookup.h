// SPDX-License-Identifier: Apache-2.0
#pragma once

class PPDXControl;
class PPDXControls;
class ZUBPPD;

PPDXControls* ControlsOf(ZUBPPD* ppd);  // borrowed; null without a PPD
// The control of this keyword whatever the process's display option, which stays as it is;
// borrowed. Null when there is none, and for a null `ppd`.
PPDXControl* FindAnyControl(ZUBPPD* ppd, char const* keyword);
// What a special option of this keyword says; borrowed, null without such an option. Leaves the
// process's display option at 1 when there is a PPD, as does the next.
char const* SpecialOptionText(ZUBPPD* ppd, char const* keyword);
bool IsSpecialOptionTrue(ZUBPPD* ppd, char const* keyword);  // whether it says "True"
