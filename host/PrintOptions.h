// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/ControlSetting.h"

// What `zubprint print` was told. Texts are UTF-8.
struct PrintOptions {
    std::string ppd;
    std::vector<ControlSetting> settings;  // made after Initialize, in this order
    bool pairs = false;
    std::string printer = "Demo";
    std::optional<std::string> makeAndModel;  // none: the PPD's *ModelName, else "Demo"
    std::string deviceURI = "ipp://localhost/printers/Demo";
    std::string processName = "zubprint";
    std::string bundleID = "com.zub.print";
    bool compiledPPD = true;
    bool customPaper = false;
    std::string bundle;  // empty: the built one
    int commits = 1;
};
