// SPDX-License-Identifier: Apache-2.0
#include "constraints/CStringSoup.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t kInitialCapacity = 512;
constexpr std::size_t kBlockSize = 64;  // a longer text gets a block of its own size

char* NewCopy(std::string_view text) {
    char* copy = new char[std::max(kBlockSize, text.size() + 1)];
    std::memcpy(copy, text.data(), text.size());
    copy[text.size()] = '\0';
    return copy;
}

}  // namespace

CStringSoup::CStringSoup() {
    mTexts.reserve(kInitialCapacity);
}

CStringSoup::~CStringSoup() {
    Clear();
}

long CStringSoup::Insert(char const* text) {
    std::string_view const wanted(text);
    if (auto const found = mIds.find(wanted); found != mIds.end()) {
        return found->second;
    }
    long const id = size();
    mTexts.push_back(nullptr);  // first what may throw, so that no copy is lost
    mTexts.back() = NewCopy(wanted);
    mIds.emplace(std::string_view(mTexts.back(), wanted.size()), id);
    return id;
}

char const* CStringSoup::Find(long id) const {
    return mTexts[static_cast<std::size_t>(id)];
}

long CStringSoup::Find(char const* text) const {
    auto const found = mIds.find(text);
    return found == mIds.end() ? -1 : found->second;
}

void CStringSoup::Clear() {
    mIds.clear();
    for (char* text : mTexts) {
        delete[] text;
    }
    mTexts.clear();
}

long CStringSoup::size() const {
    return static_cast<long>(mTexts.size());
}
