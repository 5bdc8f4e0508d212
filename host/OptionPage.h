// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "host/Options.h"

class ConstraintReasons;
class PPDXControl;
class ZUBPPD;

// What a page about a PPD's options shows, in its order. Texts are for people, UTF-8, but keywords
// and options, which are bytes as they stand in the PPD.
struct OptionPage {
    struct Choice {
        std::string option;
        std::string name;
        bool selected;
        bool constrained;
        std::vector<std::pair<std::string, std::string>> blockers;  // of a constrained one
    };
    struct Option {
        std::string keyword;
        std::string name;
        std::string value;   // empty without one
        std::string limits;  // of a number; empty for any other
        std::vector<Choice> choices;
    };
    struct Group {
        std::string page;  // empty outside of all pages
        std::string name;
        std::vector<Option> options;
    };
    std::vector<Group> groups;

    // Without `options.all`, hidden options and those outside of all groups are left out.
    static OptionPage Of(ZUBPPD& ppd, ListOptions const& options);
};
