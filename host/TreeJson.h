// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/JsonText.h"

class ZUBPPD;

// All that came of reading a PPD, as one JSON document.
class TreeJson {
  public:
    static Json Describe(ZUBPPD& ppd);
};
