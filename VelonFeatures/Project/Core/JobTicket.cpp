// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/JobTicket.h"

#include <algorithm>
#include <limits>

#include "VelonFeatures/Project/Core/TicketKeys.h"

JobTicket::JobTicket(CFStringRef ticketName) {
    mStatus = PMTicketCreate(ticketName, &mTicket);
    mOwnsTicket = mStatus == noErr;
    mValid = mOwnsTicket;
}

JobTicket::JobTicket(PMPrintSession session) : mSession(session) {
    if (session != nullptr) {
        TakeSessionTicket(TicketKey(kPrintSettingsTicket));
        mValid = true;
    }
}

JobTicket::~JobTicket() {
    if (mOwnsTicket) {
        PMTicketReleaseAndClear(&mTicket);
    }
}

void JobTicket::TakeSessionTicket(CFStringRef name) {
    long number = 0;
    Get(name, number);
    mTicket = static_cast<PMTicketRef>(number);
    mValid = mTicket != 0;
}

OSStatus JobTicket::Get(CFStringRef key, long& value) {
    CFTypeRef data = nullptr;
    mStatus = PMSessionGetDataFromSession(mSession, key, &data);
    std::int32_t number = 0;
    if (data != nullptr && CFGetTypeID(data) == CFNumberGetTypeID()) {
        CFNumberGetValue(static_cast<CFNumberRef>(data), kCFNumberSInt32Type, &number);
    }
    if (number == 0) {
        mStatus = kNoSessionValue;
        return mStatus;
    }
    value = number;
    return mStatus;
}

OSStatus JobTicket::Get(CFStringRef key, CFDataRef& value) {
    value = nullptr;
    mStatus = mTicket == 0 ? kNoTicket : PMTicketGetCFData(mTicket, 0, 0, key, &value);
    return mStatus;
}

OSStatus JobTicket::Get(CFStringRef key, CFStringRef& value) {
    value = nullptr;
    mStatus = mTicket == 0 ? kNoTicket : PMTicketGetCFString(mTicket, 0, 0, key, &value);
    return mStatus;
}

OSStatus JobTicket::Get(CFStringRef key, CFDictionaryRef& value) {
    value = nullptr;
    mStatus = mTicket == 0 ? kNoTicket : PMTicketGetCFDictionary(mTicket, 0, 0, key, &value);
    return mStatus;
}

OSStatus JobTicket::GetInt(CFStringRef key, long& value) {
    std::int32_t number = 0;
    mStatus = mTicket == 0 ? kNoTicket : PMTicketGetSInt32(mTicket, 0, 0, key, &number);
    value = number;
    return mStatus;
}

OSStatus JobTicket::Set(CFStringRef client, CFStringRef key, CFArrayRef value, bool locked) {
    mStatus = mTicket == 0 ? kNoTicket : PMTicketSetCFArray(mTicket, client, key, value, locked);
    return mStatus;
}

OSStatus JobTicket::Set(CFStringRef client, CFStringRef key, CFStringRef value, bool locked) {
    mStatus = mTicket == 0 ? kNoTicket : PMTicketSetCFString(mTicket, client, key, value, locked);
    return mStatus;
}

OSStatus JobTicket::Set(CFStringRef client, CFStringRef key, CFDataRef value, bool locked) {
    mStatus = mTicket == 0 ? kNoTicket : PMTicketSetCFData(mTicket, client, key, value, locked);
    return mStatus;
}

OSStatus JobTicket::Set(CFStringRef client, CFStringRef key, CFDictionaryRef value, bool locked) {
    mStatus =
        mTicket == 0 ? kNoTicket : PMTicketSetCFDictionary(mTicket, client, key, value, locked);
    return mStatus;
}

OSStatus JobTicket::Set(CFStringRef client, CFStringRef key, long value, bool locked) {
    using Limits = std::numeric_limits<std::int32_t>;
    auto const number =
        static_cast<std::int32_t>(std::clamp<long>(value, Limits::min(), Limits::max()));
    mStatus = mTicket == 0 ? kNoTicket : PMTicketSetSInt32(mTicket, client, key, number, locked);
    return mStatus;
}

OSStatus JobTicket::Release(CFStringRef key) {
    mStatus = mTicket == 0 ? kNoTicket : PMTicketReleaseItem(mTicket, key);
    return mStatus;
}
