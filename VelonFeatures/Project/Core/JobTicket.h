// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/CoreFoundation.h"
#include "platform/PrintManager.h"

constexpr OSStatus kNoSessionValue = -30875;
constexpr OSStatus kNoTicket = -30891;

// A ticket with typed access to its items. What the Get functions give out is borrowed and lives
// until its key is set or released; an out-parameter is null or 0 on failure.
class JobTicket {
  public:
    explicit JobTicket(CFStringRef ticketName);  // makes a ticket, which goes with this object
    // On the session's print settings ticket. Valid for every session, also for one that has no
    // such ticket; not valid for null. The session must outlive this object.
    explicit JobTicket(PMPrintSession session);
    JobTicket(JobTicket const&) = delete;
    JobTicket& operator=(JobTicket const&) = delete;
    virtual ~JobTicket();

    bool IsValid() const { return mValid; }
    OSStatus Status() const { return mStatus; }  // of the last call
    PMTicketRef Ticket() const { return mTicket; }

    // A number from the session's data, not from the ticket. kNoSessionValue when there is none or
    // it is 0; `value` then stays as it was.
    OSStatus Get(CFStringRef key, long& value);
    // From the ticket: kNoTicket without one, else the print manager's result.
    OSStatus Get(CFStringRef key, CFDataRef& value);
    OSStatus Get(CFStringRef key, CFStringRef& value);
    OSStatus Get(CFStringRef key, CFDictionaryRef& value);
    OSStatus GetInt(CFStringRef key, long& value);
    // Into the ticket, which keeps a copy; results as above. A number has 32 bits: what lies
    // beyond them is clamped.
    OSStatus Set(CFStringRef client, CFStringRef key, CFArrayRef value, bool locked);
    OSStatus Set(CFStringRef client, CFStringRef key, CFStringRef value, bool locked);
    OSStatus Set(CFStringRef client, CFStringRef key, CFDataRef value, bool locked);
    OSStatus Set(CFStringRef client, CFStringRef key, CFDictionaryRef value, bool locked);
    OSStatus Set(CFStringRef client, CFStringRef key, long value, bool locked);
    OSStatus Release(CFStringRef key);

  protected:
    // Goes over to the ticket that the session holds under `name`, and is valid only if there is
    // one.
    void TakeSessionTicket(CFStringRef name);

  private:
    PMPrintSession mSession = nullptr;  // not owned; null for a ticket made by name
    PMTicketRef mTicket = 0;
    bool mOwnsTicket = false;
    OSStatus mStatus = noErr;
    bool mValid = false;
};
