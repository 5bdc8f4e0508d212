// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/HexLanguageExceptions.h"

#include <iterator>

namespace {

constexpr char const* kLanguages[] = {
    "Japanese",   "ChineseTrad", "ChineseSimp", "Chinese", "Korean",    "Czech",
    "Russian",    "Bulg",        "Estonian",    "Greek",   "Hungarian", "Latvian",
    "Lithuanian", "Polish",      "Romanian",    "Slovak",  "Slovenian",
};

}  // namespace

HexLanguageExceptions::HexLanguageExceptions()
    : mLanguages(std::begin(kLanguages), std::end(kLanguages)) {}

HexLanguageExceptions::~HexLanguageExceptions() = default;

bool HexLanguageExceptions::IsException(std::string const& language) const {
    return mLanguages.contains(language);
}
