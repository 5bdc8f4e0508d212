// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/ZUBJobTicket.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <memory>
#include <new>

#include "PPDX/PPDObjects/Controls/PPDXControl.h"
#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"
#include "VelonFeatures/Project/Core/ServerPreset.h"
#include "VelonFeatures/Project/Core/TicketKeys.h"
#include "platform/CFRef.h"

namespace {

constexpr std::size_t kLocalTextSize = 1024;
constexpr std::size_t kPathSize = 256;
constexpr mode_t kFileMode = 0666;

// A path in bytes, terminated.
struct FilePath {
    explicit FilePath(CFStringRef path) {
        CFStringGetCString(path, mText, sizeof(mText), kCFStringEncodingUTF8);
    }
    char mText[kPathSize] = {};
};

}  // namespace

ZUBJobTicket::ZUBJobTicket(PrintSettingsTicket* settings, CFStringRef dataKey)
    : JobTicket(TicketKey(kPrintSettingsTicketName)), mSettings(settings) {
    if (settings != nullptr && dataKey != nullptr) {
        mDataKey = CFStringCreateCopy(nullptr, dataKey);
        mJobValid = Create();
    }
}

ZUBJobTicket::~ZUBJobTicket() {
    CFRelease(mList);
    CFRelease(mDataKey);
}

bool ZUBJobTicket::Create() {
    CFRelease(mList);
    mCount = 0;
    mList = CFArrayCreateMutable(nullptr, 0);
    mLastStatus = mList == nullptr ? memFullErr : noErr;
    return mList != nullptr;
}

bool ZUBJobTicket::Add(PostScriptInjectionSite site, unsigned char const* bytes,
                       unsigned long length) {
    mLastStatus = noErr;
    if (mList == nullptr || bytes == nullptr || length == 0) {
        return true;
    }
    if (!mSiteNumber || mSite != site) {
        std::int32_t const number = site;
        mSite = site;
        mSiteNumber = CFRef<CFNumberRef>(CFNumberCreate(nullptr, kCFNumberSInt32Type, &number));
    }
    CFRef<CFDataRef> const data(CFDataCreate(nullptr, bytes, static_cast<CFIndex>(length)));
    if (!mSiteNumber || !data) {
        mLastStatus = memFullErr;
        return false;
    }
    if (!ServerPresetKeywordShouldBeDiscarded(bytes, length)) {
        return Append(mSiteNumber, data);
    }
    return true;
}

// Both or neither: half a pair would shift all that come behind it.
bool ZUBJobTicket::Append(CFNumberRef site, CFDataRef data) {
    CFIndex const count = CFArrayGetCount(mList);
    CFArrayAppendValue(mList, site);
    CFArrayAppendValue(mList, data);
    if (CFArrayGetCount(mList) != count + 2) {
        while (CFArrayGetCount(mList) > count) {
            CFArrayRemoveValueAtIndex(mList, count);
        }
        mLastStatus = memFullErr;
        return false;
    }
    mDirty = true;
    ++mCount;
    return true;
}

bool ZUBJobTicket::AddText(PostScriptInjectionSite site, char const* text) {
    return Add(site, reinterpret_cast<unsigned char const*>(text), std::strlen(text));
}

bool ZUBJobTicket::Add(PostScriptInjectionSite site, PPDXControl* control) {
    if (control == nullptr) {
        return false;
    }
    unsigned char local[kLocalTextSize];
    std::unique_ptr<unsigned char[]> large;
    unsigned char* text = local;
    long const size = control->PostScript(nullptr);
    if (size > static_cast<long>(sizeof(local))) {
        large.reset(new (std::nothrow) unsigned char[static_cast<std::size_t>(size)]);
        text = large.get();
    }
    if (text == nullptr) {
        mLastStatus = memFullErr;
        return false;
    }
    long const length = size > 0 ? control->PostScript(text) : 0;
    return Add(site, text, static_cast<unsigned long>(length));
}

bool ZUBJobTicket::Save(CFStringRef client) {
    if (mSettings == nullptr) {
        return false;
    }
    if (!mDirty) {
        return true;
    }
    if (client == nullptr) {
        return false;
    }
    if (mCount == 0) {
        return true;
    }
    CFRef<CFStringRef> const path(CreateFilePath());
    mLastStatus = path ? WriteList(path) : memFullErr;
    if (mLastStatus != noErr) {
        return false;
    }
    mLastStatus = mSettings->Set(client, mDataKey, path, false);
    mDirty = false;
    return mLastStatus == noErr;
}

CFStringRef ZUBJobTicket::CreateFilePath() {
    CFRef<CFUUIDRef> const uuid(CFUUIDCreate(nullptr));
    CFRef<CFStringRef> const name(uuid ? CFUUIDCreateString(nullptr, uuid) : nullptr);
    CFRef<CFMutableStringRef> path(
        name ? CFStringCreateMutableCopy(nullptr, 0, CFSTR("/tmp/Velon.temp")) : nullptr);
    if (!path) {
        return nullptr;
    }
    CFStringAppend(path, name);
    return path.Release();
}

OSStatus ZUBJobTicket::WriteList(CFStringRef path) {
    CFRef<CFDataRef> const data(CFPropertyListCreateXMLData(nullptr, mList));
    FilePath const file(path);
    CFRef<CFURLRef> const url(CFURLCreateFromFileSystemRepresentation(
        nullptr, reinterpret_cast<std::uint8_t const*>(file.mText),
        static_cast<CFIndex>(std::strlen(file.mText)), false));
    if (!data || !url) {
        return memFullErr;
    }
    std::int32_t error = noErr;
    if (!CFURLWriteDataAndPropertiesToResource(url, data, &error)) {
        return error;
    }
    chmod(file.mText, kFileMode);
    return noErr;
}

bool ZUBJobTicket::EnforceCopiesLimit(CFStringRef client, long copies) {
    mLastStatus = mSettings == nullptr
                      ? kNoTicket
                      : mSettings->Set(client, TicketKey(kCopiesKey), copies, false);
    return mLastStatus == noErr;
}

long ZUBJobTicket::GetCopies() {
    long copies = 0;
    mLastStatus =
        mSettings == nullptr ? kNoTicket : mSettings->GetInt(TicketKey(kCopiesKey), copies);
    return copies;
}

bool ZUBJobTicket::Invalidate(CFStringRef /*client*/) {
    if (mDataKey != nullptr && mSettings != nullptr) {
        mLastStatus = mSettings->Release(mDataKey);
    }
    return true;
}
