// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/ZUBJobTicket.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

#include "PPDX/PPDObjects/Controls/PPDXControl.h"
#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"
#include "VelonFeatures/Project/Core/ServerPreset.h"
#include "VelonFeatures/Project/Core/TicketKeys.h"
#include "platform/CFRef.h"
#include "platform/PropertyListArray.h"
#include "platform/Wiping.h"

namespace {

constexpr std::size_t kPathSize = 256;
constexpr mode_t kFileMode = 0666;

// Appends both or neither: half a pair would shift all that come behind it.
bool AppendPair(CFMutableArrayRef list, JobEntries::Entry const& entry) {
    std::int32_t const site = entry.site;
    CFRef<CFNumberRef> const number(CFNumberCreate(nullptr, kCFNumberSInt32Type, &site));
    CFRef<CFDataRef> const data(
        CFDataCreate(nullptr, entry.bytes, static_cast<CFIndex>(entry.length)));
    if (!number || !data) {
        return false;
    }
    CFIndex const count = CFArrayGetCount(list);
    CFArrayAppendValue(list, number);
    CFArrayAppendValue(list, data);
    bool const isWhole = CFArrayGetCount(list) == count + 2;
    while (!isWhole && CFArrayGetCount(list) > count) {
        CFArrayRemoveValueAtIndex(list, count);
    }
    return isWhole;
}

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
    mEntries.Clear();
    mCount = 0;
    mList = CFArrayCreateMutable(nullptr, 0);
    mLastStatus = mList == nullptr ? memFullErr : noErr;
    return mList != nullptr;
}

CFArrayRef ZUBJobTicket::List() const {
    CFIndex listed = mList != nullptr ? CFArrayGetCount(mList) / 2 : 0;
    bool const isWhole = mEntries.ForEach(
        [&](JobEntries::Entry const& entry) { return listed-- > 0 || AppendPair(mList, entry); });
    return isWhole ? mList : nullptr;
}

bool ZUBJobTicket::Keep(OSStatus status) {
    mLastStatus = status;
    return status == noErr;
}

bool ZUBJobTicket::Add(PostScriptInjectionSite site, unsigned char const* bytes,
                       unsigned long length) {
    if (mList == nullptr || bytes == nullptr || length == 0) {
        return Keep(noErr);
    }
    unsigned char* const room = mEntries.Room(length);
    if (room == nullptr) {
        return Keep(memFullErr);
    }
    std::memcpy(room, bytes, length);
    return AddFromRoom(site, room, length);
}

bool ZUBJobTicket::AddFromRoom(PostScriptInjectionSite site, unsigned char* bytes,
                               unsigned long length) {
    if (ServerPresetKeywordShouldBeDiscarded(bytes, length)) {
        Wipe(bytes, length);
    } else {
        mEntries.Add(site, length);
        mDirty = true;
        ++mCount;
    }
    return Keep(noErr);
}

bool ZUBJobTicket::AddText(PostScriptInjectionSite site, char const* text) {
    return Add(site, reinterpret_cast<unsigned char const*>(text), std::strlen(text));
}

bool ZUBJobTicket::Add(PostScriptInjectionSite site, PPDXControl* control) {
    if (control == nullptr) {
        return false;
    }
    long const size = control->PostScript(nullptr);
    if (mList == nullptr || size <= 0) {
        return Keep(noErr);
    }
    unsigned char* const room = mEntries.Room(static_cast<std::size_t>(size));
    if (room == nullptr) {
        return Keep(memFullErr);
    }
    long const length = control->PostScript(room);
    return length <= 0 || AddFromRoom(site, room, static_cast<unsigned long>(length));
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
    PropertyListArray list;
    mEntries.ForEach([&](JobEntries::Entry const& entry) {
        list.AddInteger(entry.site);
        list.AddData(entry.bytes, entry.length);
        return true;
    });
    CFRef<CFDataRef> const data(list.CreateXMLData());
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
