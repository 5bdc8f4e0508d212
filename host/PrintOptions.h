// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/ControlSetting.h"

// Pages on a sheet.
struct PageLayout {
    int rows;
    int columns;
};

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

    std::string document;  // empty for none
    std::string output;    // where the document goes with the job in it; empty for nowhere

    std::string tickets;  // a file that keeps the tickets between runs; empty for none
    // What the operating system's own panes would put into the tickets. None leaves what the
    // tickets file has, or a default.
    std::optional<int> orientation;
    std::optional<PageLayout> layout;
    std::optional<std::string> paperFeed;  // a keyword
    std::optional<std::string> paper;
    std::optional<int> copies;
    std::optional<std::string> jobName;

    std::optional<std::string> address;  // for the printer's record, two-way communication on
    bool noAddress = false;              // an empty one, two-way communication off
    // The file whose presence makes all printers share one set of choices.
    std::string commonPresets = "/CommonPresets.txt";
};
