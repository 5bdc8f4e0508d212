// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/JobKeywords.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace {

constexpr std::array<std::string_view, 12> kExpertKeywords = {
    "*ZURGBOverride", "*ZUColorRendDict", "*ZURGBSep",       "*ZUSimulation",
    "*ZUSimSpeed",    "*ZUOutProfile",    "*ZUSpotColors",   "*ZUPureBlack",
    "*ZUBlkOvpCtrl",  "*ZUKOnlyGrayCMYK", "*ZUKOnlyGrayRGB", "*ZUPaperSim",
};

// Mostly the byte behind what all of them begin with settles it.
bool BeginsSpecialChromvaleKeyword(std::string_view text) {
    constexpr std::size_t kTelling = std::string_view("*ZU").size();
    return std::ranges::any_of(kSpecialChromvaleKeywords, [text](std::string_view special) {
        return text.size() >= special.size() && text[kTelling] == special[kTelling] &&
               text.starts_with(special);
    });
}

}  // namespace

bool HoldsSpecialChromvaleKeyword(std::string_view keyword) {
    // An asterisk begins each of them, and mostly a keyword has no second one.
    for (std::size_t at = 0; at < keyword.size(); at = keyword.find('*', at + 1)) {
        if (BeginsSpecialChromvaleKeyword(keyword.substr(at))) {
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
