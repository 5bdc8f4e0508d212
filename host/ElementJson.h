// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/JsonText.h"

class PPDXElement;

// What pages, groups and controls have in common, as JSON.
class ElementJson {
  public:
    // keyword and name.
    static Json Names(PPDXElement& element);
    // The keyword of the parent; null for an orphan.
    static Json Parent(PPDXElement& element);
};
