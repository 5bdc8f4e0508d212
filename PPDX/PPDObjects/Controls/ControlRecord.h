// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

#include "PPDX/PPDObjects/Controls/ArchiveTags.h"

class CString;
class Settings;

// One record of an archive: the entries that share an id.
//
// Writing stops at the first entry that the archive refuses; Status() tells its error. Reading
// leaves a field as it was where the entry is missing or has another size.
class ControlRecord {
  public:
    // `status` is that of what the record got so far: after an error nothing is written.
    ControlRecord(Settings& settings, long id, short status = 0);

    short Status() const { return mStatus; }
    void AddMark(unsigned long tag);  // one byte; only its presence counts
    void AddNumber(unsigned long tag, std::int16_t number);
    void AddNumber(unsigned long tag, std::int32_t number);
    void AddNumber(unsigned long tag, float number);
    void AddText(unsigned long tag, CString const* text);              // nothing for null
    void AddBytes(unsigned long tag, void const* bytes, long length);  // nothing for null

    // The archive's answer to whether there is such an entry: 0, or the error.
    short Look(unsigned long tag) const;
    // The entry where it lies, good until the archive changes; empty, too, where it is missing.
    std::string_view View(unsigned long tag) const;
    // Byte order is put right. True when the entry was read.
    bool Read(unsigned long tag, std::int16_t& number) const;
    bool Read(unsigned long tag, std::int32_t& number) const;
    bool Read(unsigned long tag, float& number) const;
    // The same with the archive's error as result, 0 also for an entry of another size.
    template <typename Number>
    short Restore(unsigned long tag, Number& number) const {
        return Read(tag, number) ? short{0} : Look(tag);
    }
    // Null for an entry that is missing or empty; the caller deletes the text, frees the block.
    CString* CopyText(unsigned long tag) const;
    unsigned char* CopyBytes(unsigned long tag, std::int32_t& length) const;  // by malloc

  private:
    void Add(unsigned long tag, void const* bytes, long length);

    Settings& mSettings;
    long mID;
    short mStatus;
};
