// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/JobKeywords.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace {

constexpr std::array<std::string_view, 12> kExpertKeywords = {
    "*ZURGBOverride", "*ZUColorRendDict", "*ZURGBSep",       "*ZUSimulation",
    "*ZUSimSpeed",    "*ZUOutProfile",    "*ZUSpotColors",   "*ZUPureBlack",
    "*ZUBlkOvpCtrl",  "*ZUKOnlyGrayCMYK", "*ZUKOnlyGrayRGB", "*ZUPaperSim",
};

}  // namespace

bool HoldsSpecialChromvaleKeyword(char const* keyword) {
    // An asterisk begins each of them, and mostly a keyword has no second one.
    for (char const* rest = keyword; rest != nullptr && *rest != '\0';
         rest = std::strchr(rest + 1, '*')) {
        if (std::ranges::any_of(kSpecialChromvaleKeywords, [rest](std::string_view special) {
                return std::strncmp(rest, special.data(), special.size()) == 0;
            })) {
            return true;
        }
    }
    return false;
}

bool isExpertChromvaleControl(char const* keyword) {
    return keyword != nullptr &&
           std::ranges::find(kExpertKeywords, std::string_view(keyword)) != kExpertKeywords.end();
}

bool isBidiKeyword(char const* keyword) {
    std::string_view const text(keyword == nullptr ? "" : keyword);
    return text.size() > 4 && text.ends_with("Bidi");
}
