// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

struct OpaqueCollection;
struct __CFString;
class CString;
class DataStream;

// A keyed archive: entries addressed by a tag and an id, each with a run of bytes and 32 attribute
// bits. A tag is a four-character code read as a big-endian number, or a small number; an id names
// the record that the entry belongs to. Both are stored in 32 bits. Values are kept in the byte
// order of the machine that wrote them; see FixEndianness. Texts are stored without a terminator.
//
// Operations with a long result return a status, 0 for success, and keep it for LastError(). The
// values beside those named here are the collection's own, above all -5751 for an entry that
// isn't there.
class Settings {
  public:
    static constexpr std::int32_t kNoStream = 201;       // null, or not valid
    static constexpr std::int32_t kNoCollection = 1000;  // see also kWrongSize
    static constexpr std::int32_t kWrongSize = 1000;     // byte order can't be fixed for that size
    static constexpr std::int32_t kNoEntries = 1001;
    static constexpr std::int32_t kPastTheEnd = 1002;

    // Where a compiled PPD counts its property pages; FixEndianness looks there.
    static constexpr unsigned long kPageCountTag = 3000;
    static constexpr long kPageCountID = 3002;

    Settings();
    explicit Settings(OpaqueCollection*& collection);  // takes the collection; valid if not null
    explicit Settings(char** flat);  // a copy of flat data in a handle; error -50 for null
    Settings(Settings const& other);
    Settings& operator=(Settings const& other);
    virtual ~Settings();

    // Stores a value, in place of one that is there already.
    long Add(unsigned long const& tag, long const& id, void const* data, long size);
    // Copies the whole value, for which `data` must have room: ask for the size first, with null
    // `data`, or use GetSettingsField. `size` is 0 on failure. With `fixByteOrder` the copy goes
    // through FixEndianness, whose status is the result.
    long Get(unsigned long const& tag, long const& id, void* data, long& size, bool fixByteOrder);
    // The value where it lies, good until the archive changes. False when there is no such entry.
    bool Look(unsigned long const& tag, long const& id, std::string_view& value);
    // Replaces the value of an entry that exists.
    long Set(unsigned long const& tag, long const& id, void const* data, long size);
    long Remove(unsigned long const& tag, long const& id);

    // Sets or clears the bits of `mask`. A locked entry can't be changed or removed.
    long SetAttribute(unsigned long const& tag, long const& id, long const& mask, bool const& set);
    long Lock(unsigned long const& tag, long const& id);
    long Unlock(unsigned long const& tag, long const& id);

    // Walk all entries in the order in which they were added. One walk at a time: the position is
    // the object's. What is given out is 0 on failure.
    long First(unsigned long& tag, long& id, long& size, long& attributes);
    long Next(unsigned long& tag, long& id, long& size, long& attributes);

    long Count() const;
    bool Empty() const;
    bool Valid() const { return mValid; }
    long LastError() const { return mLastError; }

    // Appends the flat data in pieces: after an error a part of it may stand in the stream.
    long Save(DataStream* stream);
    // Replaces all entries by those of `size` bytes of flat data, 0 for as many as the stream
    // holds. A stream without data leaves the entries alone with the result 0; data that is cut or
    // damaged leaves them alone too.
    long Read(DataStream* stream, unsigned long size);
    // The flat data in a new handle that the caller disposes of; null on failure.
    long GetSettingsHandle(char*** flat);

    // Puts a value of 2, 4 or 70 bytes into this machine's byte order where the archive was
    // written in the other one. That shows in the number of property pages, an entry of every
    // compiled PPD: it is small, so that with swapped bytes it is above 10000. Of 70 bytes, a file
    // reference, the first two fields (2 and 4 bytes) are swapped. Other sizes give kWrongSize and
    // are left alone. Nothing happens for null or with `fix` false.
    long FixEndianness(void* value, long size, bool fix);

  private:
    bool IsForeign();
    bool LooksForeign() const;
    long Keep(long status);
    long Entry(unsigned long& tag, long& id, long& size, long& attributes, long pastTheEnd);

    std::int32_t mLastError = 0;
    bool mValid = false;
    OpaqueCollection* mCollection = nullptr;  // owned, may be null
    std::int32_t mIndex = 0;
    std::optional<bool> mForeign;  // until an entry changes
};

// Reads an entry into a field of exactly `size` bytes, with its byte order fixed where `size` is 2,
// 4 or 70. False, with the field as it was, when the entry is missing or has another size.
bool GetSettingsField(Settings& settings, unsigned long const& tag, long const& id, void* field,
                      long size);

// A text that the caller deletes; null when the entry is missing, empty or there is no memory.
CString* GetSettingsString(Settings& settings, unsigned long const& tag, long const& id);
// A string that the caller releases, from an entry with the external form of one; null likewise.
__CFString const* GetSettingsCFString(Settings& settings, unsigned long const& tag, long const& id);

// Begins UTF-16 of this machine's byte order.
constexpr char16_t kByteOrderMark = 0xFEFF;

// The external form of a string, UTF-16 with its byte order mark, in a new block that the caller
// frees with delete[]. Null with the size 0 for a null string and without memory.
unsigned char* CFStringToExternal(__CFString const* string, long* size);
// The same of plain ASCII, in place of what `form` held; false, with anything in `form`, for any
// other text. Throws std::bad_alloc.
bool PlainTextToExternal(std::string_view text, std::u16string& form);
// The way back. The caller releases the string; null for null data and what is no such form.
__CFString const* ExtenalToCFString(unsigned char const* data, long size);
