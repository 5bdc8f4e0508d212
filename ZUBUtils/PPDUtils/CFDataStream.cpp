// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/CFDataStream.h"

#include <algorithm>
#include <cstring>
#include <utility>

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
    mSource = length <= UINT32_MAX ? CFDataCreateCopy(nullptr, data) : nullptr;
    mValid = mSource != nullptr;
    mDataSize = mValid ? static_cast<std::uint32_t>(length) : 0;
    mLastError = mValid ? std::int16_t{noErr} : std::int16_t{memFullErr};
}

CFDataStream::~CFDataStream() {
    CFRelease(mSource);
    CFRelease(mBuffer);
}

// The source stays: who has asked for Data() may still look at it.
bool CFDataStream::MakeBuffer() {
    if (mBuffer != nullptr || mSource == nullptr) {
        return mBuffer != nullptr;
    }
    CFIndex const size = CFDataGetLength(mSource);
    CFMutableDataRef const copy = CFDataCreateMutable(nullptr, size);
    CFDataAppendBytes(copy, CFDataGetBytePtr(mSource), size);
    if (CFDataGetLength(copy) != size) {
        CFRelease(copy);
        return false;
    }
    mBuffer = copy;
    return true;
}

void CFDataStream::expect(unsigned long size) {
    if (mBuffer == nullptr || mDataSize != 0 || size > UINT32_MAX) {
        return;
    }
    if (CFMutableDataRef const roomy = CFDataCreateMutable(nullptr, static_cast<CFIndex>(size))) {
        CFRelease(std::exchange(mBuffer, roomy));
    }
}

bool CFDataStream::out(void* data, unsigned long size) {
    bool const fits = size <= UINT32_MAX - mDataSize && MakeBuffer();
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
    CFDataRef const bytes = Data();
    if (bytes == nullptr) {
        return false;
    }
    unsigned long const available = std::min<unsigned long>(size, mDataSize - mReadPosition);
    if (available != 0) {
        std::memcpy(data, CFDataGetBytePtr(bytes) + mReadPosition, available);
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
