// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/CFDataStream.h"

#include <algorithm>
#include <cstring>

#include "platform/CoreFoundation.h"
#include "platform/MacTypes.h"

CFDataStream::CFDataStream() : mBuffer(CFDataCreateMutable(nullptr, 0)) {
    mValid = mBuffer != nullptr;
    mLastError = mValid ? std::int16_t{noErr} : std::int16_t{memFullErr};
}

CFDataStream::CFDataStream(__CFData const* data) {
    CFIndex const length = CFDataGetLength(data);
    if (length == 0) {
        return;
    }
    mBuffer = CFDataCreateMutable(nullptr, 0);
    mValid = CFDataStream::out(const_cast<std::uint8_t*>(CFDataGetBytePtr(data)),
                               static_cast<unsigned long>(length));
}

CFDataStream::~CFDataStream() {
    CFRelease(mBuffer);
}

bool CFDataStream::out(void* data, unsigned long size) {
    bool const fits = mBuffer != nullptr && size <= UINT32_MAX - mDataSize;
    if (fits && size != 0) {
        CFDataAppendBytes(mBuffer, static_cast<std::uint8_t const*>(data),
                          static_cast<CFIndex>(size));
    }
    // An append that found no memory shows in the length alone.
    if (!fits || CFDataGetLength(mBuffer) != static_cast<CFIndex>(mDataSize + size)) {
        mLastError = memFullErr;
        return false;
    }
    mDataSize += static_cast<std::uint32_t>(size);
    mLastError = noErr;
    return true;
}

bool CFDataStream::in(void* data, unsigned long size, unsigned long* count, short* error) {
    if (mBuffer == nullptr) {
        return false;
    }
    unsigned long const available = std::min<unsigned long>(size, mDataSize - mReadPosition);
    if (available != 0) {
        std::memcpy(data, CFDataGetBytePtr(mBuffer) + mReadPosition, available);
    }
    if (size > available) {
        std::memset(static_cast<std::uint8_t*>(data) + available, 0, size - available);
    }
    mReadPosition += static_cast<std::uint32_t>(available);
    mLastError = noErr;
    if (count != nullptr) {
        *count = size;
    }
    if (error != nullptr) {
        *error = mLastError;
    }
    return true;
}
