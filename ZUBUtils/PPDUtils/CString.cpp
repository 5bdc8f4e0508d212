// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/CString.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <new>
#include <string_view>

#include "ZUBUtils/PPDUtils/Arena.h"
#include "platform/CoreFoundation.h"
#include "platform/TextEncodingConverter.h"
#include "platform/Wiping.h"

namespace {

constexpr std::size_t kLargestText = UINT32_MAX - 1;
constexpr std::size_t kBytesPerUnitInAnyEncoding = 4;
constexpr std::size_t kBytesPerUnitInApplicationEncoding = 2;

// Room for `length` bytes and a terminator, null when there is none.
char* NewBuffer(std::size_t length) {
    return length <= kLargestText ? new (std::nothrow) char[length + 1] : nullptr;
}

bool SameLetter(char left, char right) {
    return std::tolower(static_cast<unsigned char>(left)) ==
           std::tolower(static_cast<unsigned char>(right));
}

}  // namespace

CString::CString(char const* text) {
    SetBuffer(text);
}

CString::CString(CString const& other) {
    SetBuffer(other.mBuffer);
}

CString::CString(CString&& other) noexcept
    : mBuffer(other.mBuffer), mLength(other.mLength), mOwnsBuffer(other.mOwnsBuffer) {
    other.Initialize();
}

CString::CString(Arena& arena, std::string_view text)
    : mBuffer(arena.CopyText(text)),
      mLength(static_cast<std::uint32_t>(text.size())),
      mOwnsBuffer(false) {}

CString::CString(__CFString const* string) {
    std::uint32_t const encodings[] = {CFStringGetSystemEncoding(), kCFStringEncodingUTF8};
    Convert(string, kBytesPerUnitInAnyEncoding, encodings, std::size(encodings));
}

CString::~CString() {
    ClearBuffer();
}

CString& CString::operator=(char const* text) {
    SetBuffer(text);
    return *this;
}

CString& CString::operator=(CString const& other) {
    SetBuffer(other.mBuffer);
    return *this;
}

CString& CString::operator=(__CFString const* string) {
    std::uint32_t const encoding = GetApplicationTextEncoding();
    if (!Convert(string, kBytesPerUnitInApplicationEncoding, &encoding, 1) && !SetBuffer("")) {
        ClearBuffer();
    }
    return *this;
}

CString& CString::operator+(char const* text) {
    std::size_t const length = text != nullptr ? std::strlen(text) : 0;
    if (length != 0) {
        Splice(mLength, 0, text, length);
    }
    return *this;
}

bool CString::operator==(CString const& other) const {
    return mBuffer != nullptr && other.mBuffer != nullptr && mLength == other.mLength &&
           std::memcmp(mBuffer, other.mBuffer, mLength) == 0;
}

bool CString::operator==(char const* text) const {
    return mBuffer != nullptr && text != nullptr && std::strcmp(mBuffer, text) == 0;
}

bool CString::Contains(char const* text) const {
    if (mBuffer == nullptr || text == nullptr) {
        return false;
    }
    std::string_view const whole(mBuffer, mLength);
    std::string_view const wanted(text);
    return wanted.empty() || std::search(whole.begin(), whole.end(), wanted.begin(), wanted.end(),
                                         SameLetter) != whole.end();
}

void CString::Remove(char const* at, unsigned long count) {
    if (!HoldsPosition(at)) {
        return;
    }
    std::size_t const position = static_cast<std::size_t>(at - mBuffer);
    std::size_t const removed = std::min<std::size_t>(count, mLength - position);
    std::size_t const tail = mLength - position - removed;
    std::memmove(mBuffer + position, mBuffer + position + removed, tail + 1);
    mLength -= static_cast<std::uint32_t>(removed);
    Wipe(mBuffer + mLength + 1, removed);
}

char* CString::Insert(char const* at, char const* text) {
    if (!HoldsPosition(at) || text == nullptr || *text == '\0') {
        return nullptr;
    }
    std::size_t const position = static_cast<std::size_t>(at - mBuffer);
    return Splice(position, 0, text, std::strlen(text)) ? mBuffer : nullptr;
}

void CString::Replace(CString const& what, CString const& with) {
    char const* const found = mBuffer != nullptr && what.mBuffer != nullptr
                                  ? std::strstr(mBuffer, what.mBuffer)
                                  : nullptr;
    if (found == nullptr) {
        return;
    }
    // Both may be this very string, so nothing is changed before the new text stands.
    Splice(static_cast<std::size_t>(found - mBuffer), what.mLength,
           with.mBuffer != nullptr ? with.mBuffer : "", with.mLength);
}

void CString::Initialize() {
    mBuffer = nullptr;
    mLength = 0;
    mOwnsBuffer = true;
}

void CString::ClearBuffer() {
    Adopt(nullptr, 0);
}

void CString::Adopt(char* buffer, std::size_t length) {
    if (mOwnsBuffer && mBuffer != nullptr) {
        Wipe(mBuffer, mLength + std::size_t{1});
        delete[] mBuffer;
    }
    mBuffer = buffer;
    mLength = static_cast<std::uint32_t>(length);
    mOwnsBuffer = true;
}

bool CString::SetBuffer(char const* text) {
    if (text == mBuffer) {
        return true;
    }
    if (text == nullptr) {
        ClearBuffer();
        return true;
    }
    std::size_t const length = std::strlen(text);
    char* const buffer = NewBuffer(length);
    if (buffer == nullptr) {
        return false;
    }
    std::memcpy(buffer, text, length + 1);
    Adopt(buffer, length);
    return true;
}

bool CString::HoldsPosition(char const* at) const {
    return mBuffer != nullptr && at >= mBuffer && at <= mBuffer + mLength;
}

bool CString::Splice(std::size_t position, std::size_t removed, char const* text,
                     std::size_t length) {
    std::size_t const tail = mLength - position - removed;
    char* const buffer = NewBuffer(position + length + tail);
    if (buffer == nullptr) {
        return false;
    }
    char* end = std::copy_n(mBuffer, position, buffer);
    end = std::copy_n(text, length, end);
    if (mBuffer != nullptr) {
        end = std::copy_n(mBuffer + position + removed, tail, end);
    }
    *end = '\0';
    Adopt(buffer, static_cast<std::size_t>(end - buffer));
    return true;
}

bool CString::Convert(__CFString const* string, std::size_t bytesPerUnit,
                      std::uint32_t const* encodings, std::size_t encodingCount) {
    if (string == nullptr) {
        return false;
    }
    std::size_t const size = static_cast<std::size_t>(CFStringGetLength(string)) * bytesPerUnit;
    char* const buffer = NewBuffer(size);
    if (buffer == nullptr) {
        return false;
    }
    bool const converted = std::any_of(encodings, encodings + encodingCount, [&](auto encoding) {
        return CFStringGetCString(string, buffer, static_cast<CFIndex>(size + 1), encoding);
    });
    if (converted) {
        std::size_t const length = std::strlen(buffer);
        Wipe(buffer + length, size - length);  // an earlier try may have come farther
        Adopt(buffer, length);
    } else {
        Wipe(buffer, size + 1);
        delete[] buffer;
    }
    return converted;
}
