// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "VelonFeatures/Project/Core/JobEntries.h"
#include "VelonFeatures/Project/Core/JobTicket.h"
#include "VelonFeatures/Project/Core/PostScriptInjectionSite.h"
#include "platform/CoreFoundation.h"

class PPDXControl;
class PrintSettingsTicket;
class ZUBPPD;

// The job's injection list: pairs of a site and bytes in the order in which they were added, and
// the file that they are handed on in. Lives for one Initialize or Sync.
class ZUBJobTicket : public JobTicket {
  public:
    // `settings`, which must outlive this object, takes everything that is stored; `dataKey` is
    // copied. Usable only with both.
    ZUBJobTicket(PrintSettingsTicket* settings, CFStringRef dataKey);
    ~ZUBJobTicket() override;

    bool IsJobValid() const { return mJobValid; }
    OSStatus LastStatus() const { return mLastStatus; }  // memFullErr after a lack of memory
    std::uint32_t Count() const { return mCount; }       // pairs added
    // Number, data, number, data ...: borrowed, with all that was added so far. Null for a ticket
    // that isn't usable and without memory.
    CFArrayRef List() const;

    bool Create();  // a new, empty list
    // False without memory; what was added before stays. A length of 0 and an outdated server
    // preset add nothing and are no failure.
    bool Add(PostScriptInjectionSite site, unsigned char const* bytes, unsigned long length);
    bool AddText(PostScriptInjectionSite site, char const* text);
    // Adds what the control would emit now; false also for null.
    bool Add(PostScriptInjectionSite site, PPDXControl* control);
    // Writes the list into a new file "/tmp/Velon.temp" and a UUID, readable and writable for all,
    // and puts its path into the settings. An XML property list: one array, <integer> and <data>
    // alternating. The file appears whole or not at all. An empty list writes nothing and is no
    // failure; after a failure the settings still name the former file. Nothing here removes a
    // file.
    bool Save(CFStringRef client);

    // ---- Choices. Each is false with LastStatus() set when the settings lack them or can't take
    // them; a null PPD is false too. ----

    // Every control's value under `key`, as a dictionary of texts by keyword.
    bool SavePPDForAllKeys(ZUBPPD* ppd, CFStringRef key);
    // The values under `printerKey`, or under `bundleID` when that is null, to the controls that
    // they name. Installable options keep theirs.
    bool RestorePPDForAllKeys(ZUBPPD* ppd, CFStringRef bundleID, CFStringRef printerKey);
    // The same for the controls of these keywords alone, installable options too.
    bool SavePPDForKeys(ZUBPPD* ppd, CFStringRef key, CFArrayRef keywords);
    bool RestorePPDForKeys(ZUBPPD* ppd, CFStringRef key, CFArrayRef keywords);
    // The whole PPD as an archive under `key`.
    bool SavePPD(ZUBPPD* ppd, CFStringRef key, CFURLRef url);
    // The PPD of the file `url` from its archive under `key`; the caller releases it. Null when
    // there is none, and for a file that isn't an accepted printer's.
    ZUBPPD* RestorePPD(CFStringRef key, CFURLRef url);

    bool EnforceCopiesLimit(CFStringRef client, long copies);
    long GetCopies();  // 0 when the settings don't tell
    // Takes the path of the last job data file out of the settings; the file stays. True whether
    // or not there was one.
    bool Invalidate(CFStringRef client);

  private:
    bool ReadChoices(CFStringRef key, CFDictionaryRef& choices);  // borrowed from the settings
    bool WriteChoices(CFStringRef key, CFDictionaryRef choices);
    // Makes what was written into the room of mEntries an entry.
    bool AddFromRoom(PostScriptInjectionSite site, unsigned char* bytes, unsigned long length);
    bool Keep(OSStatus status);  // as LastStatus(); whether it is good
    // A new path "/tmp/Velon.temp..."; the caller releases it.
    static CFStringRef CreateFilePath();
    OSStatus WriteList(CFStringRef path);

    PrintSettingsTicket* mSettings;  // not owned
    CFStringRef mDataKey = nullptr;  // owned
    std::uint32_t mCount = 0;
    JobEntries mEntries;
    // Owned. Takes the entries when somebody asks for the list; null as long as there is none.
    CFMutableArrayRef mList = nullptr;
    OSStatus mLastStatus = noErr;
    bool mDirty = true;
    bool mJobValid = false;
};
