// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/CFRef.h"
#include "twoway/PropertyListFile.h"

// What is remembered of each printer of this user: the network address of its print server,
// whether two-way communication is on, and blocks of text under numbers. The file is
// "Library/Preferences/ZUB.TolvanePrinterV2.plist" in the home directory. It is read while the
// object is constructed and again by Save(), which alone changes it; whoever wants the changes of
// another instance without saving makes a new one.
//
// The list is flat. A record is
//
//     name  address  enabled  "2"  { "number:count"  item ... } ...  "----- Data End -----"
//
// with a boolean as third element, which nothing else in the list is. Records of two older forms
// have the mark "0" with nothing behind it, or the mark "1", a decimal count and that many strings
// of no use; they become form "2" when an address or a block is written. Names are the same in
// whatever case.
//
// A file from elsewhere may hold anything. A record reaches to its end mark, or to the next head
// (name, no boolean, boolean) where that is missing; whatever stands between a record's end and
// the next head is passed over and stays. A block reaches to its count, or to the next header or
// its record's end where those come first.
class ZUBTolvanePrinterPList : public PropertyListFile {
  public:
    static constexpr std::size_t kDataItemSize = 1024;
    using DataItem = char[kDataItemSize];  // UTF-8, terminated

    ZUBTolvanePrinterPList();
    ~ZUBTolvanePrinterPList() override;

    // The position of the record in Records(); kCFNotFound, with `found` false, for none.
    CFIndex Exists(CFStringRef name, bool& found) const;
    // The address, empty for an unknown name. Borrowed: lives until the record gets another one
    // or the records are saved.
    CFStringRef Find(CFStringRef name) const;
    // Makes the record or gives it a new address and flag; its blocks stay. Both strings are
    // copied. False, and nothing changes, without both of them, for text that can't stand in the
    // file (control characters, the end mark), and without memory.
    bool Add(CFStringRef name, CFStringRef address, bool enabled);
    bool getIPEnabled(CFStringRef name) const;          // false for an unknown name
    bool setIPEnabled(CFStringRef name, bool enabled);  // false for an unknown name

    // Appends the items of a block, all of them strings, to `out`. False without that record or
    // block, and for a record that isn't of form "2"; true for an empty block.
    bool GetDataBlob(CFStringRef name, std::int32_t blockNumber, CFMutableArrayRef out) const;
    // Whether the text can be an item: UTF-8 that can stand in the file and doesn't read as a
    // header or as the end mark. False also without memory.
    static bool CanHold(DataItem const& text);
    // Replaces a block, or adds it, as the first one of its record. An item that isn't UTF-8, can't
    // stand in the file or reads as a header is left out, and the header tells how many are there.
    // Booleans among the blocks move behind the record's end. An unknown name is no failure and
    // changes nothing. False without items or memory.
    bool AddDataBlob(CFStringRef name, std::int32_t count, std::int32_t blockNumber,
                     DataItem const* items);

    // Puts the changes made here into what the file holds by now, writes that and keeps it as the
    // records; makes the folders on the way. The file is locked meanwhile. One that was read and is
    // no list is first copied to one with ".unread" behind its name, ".unread.2" and so on. False,
    // with FileError() set, when any of that fails, also when a file is there that can't be read:
    // it is as it was and the records stay.
    bool Save();

    // The file to which the last Save() copied one that was no list; empty for none.
    std::string const& KeptAside() const { return mKeptAside; }
    // A file is there of which no record could be taken, because it can't be read or is no list.
    bool IsUnread() const;

    CFArrayRef Records() const { return mRecords; }          // borrowed, until the next change
    bool RecordsChanged() const { return mRecordsChanged; }  // since they were read or saved
    // False when there was no memory for the records. Nothing can be added then, or saved.
    bool RecordsReady() const { return mRecordsReady; }

  private:
    // What was asked for, for the file to get it too: a block, an address with the flag, or the
    // flag alone.
    struct Change {
        CFRef<CFStringRef> name;
        CFRef<CFStringRef> address;
        bool enabled = false;
        CFRef<CFMutableArrayRef> block;  // its items
        std::int32_t blockNumber = 0;
    };

    bool HasList() const;
    bool Make(Change change);
    bool Apply(Change const& change);
    bool PutAddress(CFStringRef name, CFStringRef address, bool enabled);
    bool PutBlock(CFStringRef name, std::int32_t number, CFArrayRef items);
    bool Complete(CFIndex record);
    bool Splice(CFIndex first, CFIndex end, CFArrayRef elements);
    std::int32_t TakeFile();
    bool Merge(CFArrayRef there);
    std::int32_t MakeFolders() const;
    std::int32_t KeepUnread();
    bool GetPath(char* path, CFIndex size) const;

    CFMutableArrayRef mRecords = nullptr;  // owned
    std::vector<Change> mChanges;          // since the records were read or saved, in order
    std::string mKeptAside;
    bool mRecordsChanged = false;
    bool mRecordsReady = false;
};
