// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/BoyerMoore.h"

#include <algorithm>
#include <cstring>

#include "ZUBUtils/PPDUtils/ClampTo32Bits.h"

namespace {

constexpr short kLongestSearchString = 255;  // the greatest step that a skip byte can hold

}  // namespace

BoyerMoore::BoyerMoore() = default;

BoyerMoore::BoyerMoore(char const* text, short length, void* data, long dataLength) {
    BoyerMoore::SetSearchString(text, length);
    if (data != nullptr) {
        BoyerMoore::SetSearchData(data, dataLength);
    }
}

BoyerMoore::~BoyerMoore() = default;

void BoyerMoore::SetSearchString(char const* text, short length) {
    bool const usable = text != nullptr && length > 0 && length <= kLongestSearchString;
    mSearchStringLength = usable ? length : std::int16_t{0};
    if (usable) {
        std::memcpy(mSearchString, text, static_cast<std::size_t>(length));
    }
    BuildSkipTable();
}

void BoyerMoore::SetSearchString(unsigned char* text) {
    if (text == nullptr) {
        SetSearchString(nullptr, 0);
    } else {
        SetSearchString(reinterpret_cast<char const*>(text + 1), text[0]);
    }
}

void BoyerMoore::GetSearchString(char* text) {
    *std::copy_n(mSearchString, mSearchStringLength, text) = '\0';
}

void BoyerMoore::SetSearchData(void* data, long length) {
    mData = data;
    mDataLength = ClampTo32Bits(length);
    mStart = 0;
}

long BoyerMoore::Search() {
    PrepareSearchData();
    long const searchable = static_cast<long>(mDataLength) - mStart;
    long const length = mSearchStringLength;
    long match = -1;
    long i = length - 1;
    while (mBase != nullptr && length != 0 && i < searchable && match < 0) {
        long j = length - 1;
        while (j >= 0 && mSearchString[j] == mBase[i]) {
            --i;
            --j;
        }
        if (j < 0) {
            match = i + 1;
        } else {
            i += std::max<long>(mSkipTable[mBase[i]], length - j);
        }
    }
    CleanupSearchData();
    return match;
}

long BoyerMoore::Search(long start, char const* text, short length) {
    mStart = ClampTo32Bits(start);
    if (text != nullptr) {
        SetSearchString(text, length);
    }
    return Search();
}

long BoyerMoore::Search(long start, unsigned char* text) {
    mStart = ClampTo32Bits(start);
    if (text != nullptr) {
        SetSearchString(text);
    }
    return Search();
}

void BoyerMoore::SetCaseSensitve(bool caseSensitive) {
    mCaseInsensitive = !caseSensitive;
}

bool BoyerMoore::GetCaseSensitive() {
    return !mCaseInsensitive;
}

short BoyerMoore::GetSearchStringLength() {
    return mSearchStringLength;
}

void BoyerMoore::PrepareSearchData() {
    bool const startsInside = mData != nullptr && mStart >= 0 && mStart <= mDataLength;
    mBase = startsInside ? static_cast<std::uint8_t const*>(mData) + mStart : nullptr;
}

void BoyerMoore::CleanupSearchData() {}

void BoyerMoore::BuildSkipTable() {
    std::fill_n(mSkipTable, kSkipTableSize, static_cast<std::uint8_t>(mSearchStringLength));
    for (int k = 0; k < mSearchStringLength; ++k) {
        mSkipTable[mSearchString[k]] = static_cast<std::uint8_t>(mSearchStringLength - k - 1);
    }
}
