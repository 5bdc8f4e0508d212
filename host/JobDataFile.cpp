// SPDX-License-Identifier: Apache-2.0
#include "host/JobDataFile.h"

#include <nlohmann/json.hpp>

#include "host/JsonText.h"

namespace {

bool TakeSite(CFTypeRef element, std::int32_t& site) {
    return element != nullptr && CFGetTypeID(element) == CFNumberGetTypeID() &&
           CFNumberGetValue(static_cast<CFNumberRef>(element), kCFNumberSInt32Type, &site);
}

bool TakeText(CFTypeRef element, JobText& text) {
    if (element == nullptr || CFGetTypeID(element) != CFDataGetTypeID()) {
        return false;
    }
    auto const data = static_cast<CFDataRef>(element);
    text.assign(reinterpret_cast<char const*>(CFDataGetBytePtr(data)),
                static_cast<std::size_t>(CFDataGetLength(data)));
    return true;
}

}  // namespace

Outcome JobDataFile::Take(CFTypeRef list) {
    mPairs.clear();
    if (TakePairs(list)) {
        return Outcome::Done();
    }
    mPairs.clear();
    return Outcome::Failed("the commit has no list of pairs");
}

bool JobDataFile::TakePairs(CFTypeRef list) {
    if (list == nullptr || CFGetTypeID(list) != CFArrayGetTypeID()) {
        return false;
    }
    auto const array = static_cast<CFArrayRef>(list);
    CFIndex const count = CFArrayGetCount(array);
    for (CFIndex i = 0; i < count; i += 2) {
        Pair pair;
        // Beyond the end of an odd list there is null, which is no text.
        if (!TakeSite(CFArrayGetValueAtIndex(array, i), pair.site) ||
            !TakeText(CFArrayGetValueAtIndex(array, i + 1), pair.text)) {
            return false;
        }
        mPairs.push_back(std::move(pair));
    }
    return true;
}

std::string JobDataFile::JSON() const {
    Json document = Json::array();
    for (Pair const& pair : mPairs) {
        document.push_back({{"site", pair.site}, {"text", JsonText::Bytes(pair.text)}});
    }
    return document.dump(2) + "\n";
}
