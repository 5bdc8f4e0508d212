// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/JsonText.h"

class PPDXControl;

// An option as JSON: what all controls have, then what its kind adds.
class ControlJson {
  public:
    static Json Describe(PPDXControl& control);
};
