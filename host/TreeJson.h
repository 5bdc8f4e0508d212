// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ostream>

#include "host/JsonText.h"

class ZUBPPD;

// All that came of reading a PPD, as one JSON document.
class TreeJson {
  public:
    // Control by control, since the document as a whole takes many times what the PPD does.
    static void Write(ZUBPPD& ppd, std::ostream& out);
    // Its array of controls alone, as they are now.
    static Json Controls(ZUBPPD& ppd);
};
