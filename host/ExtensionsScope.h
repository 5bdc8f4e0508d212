// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PPDX/PPDObjects/ZUBPPD.h"

// Reads PPDs at an extension level: 0, 1 or 2, any other number for all. The level is the
// process's; whoever runs next finds the former one.
class ExtensionsScope {
  public:
    explicit ExtensionsScope(int level) : mFormer(ZUBPPD::GetExtensions()) {
        ZUBPPD::SetExtensions(static_cast<_EXTENSIONS_SUPPORT_>(level));
    }
    ExtensionsScope(ExtensionsScope const&) = delete;
    ExtensionsScope& operator=(ExtensionsScope const&) = delete;
    ~ExtensionsScope() { ZUBPPD::SetExtensions(mFormer); }

  private:
    _EXTENSIONS_SUPPORT_ mFormer;
};
