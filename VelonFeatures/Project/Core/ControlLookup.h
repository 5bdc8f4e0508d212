// SPDX-License-Identifier: Apache-2.0
#pragma once

class PPDXControl;
class PPDXControls;
class ZUBPPD;

PPDXControls* ControlsOf(ZUBPPD* ppd);  // borrowed; null without a PPD
// The control of this keyword whatever the process's display option, which stays as it is;
// borrowed. Null when there is none, and for a null `ppd`.
PPDXControl* FindAnyControl(ZUBPPD* ppd, char const* keyword);
