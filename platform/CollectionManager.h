// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/MacTypes.h"
#include "platform/MemoryManager.h"

// A collection holds items, each addressed by a tag and an id and holding a run of bytes and 32
// attribute bits. Items have a stable index, from 1, in the order in which they were added; a
// removal closes the gap.

struct OpaqueCollection;
using Collection = OpaqueCollection*;

constexpr OSErr collectionItemLockedErr = -5750;
constexpr OSErr collectionItemNotFoundErr = -5751;
constexpr OSErr collectionIndexRangeErr = -5752;
constexpr OSErr collectionVersionErr = -5753;  // flat data that isn't a whole collection
constexpr std::uint32_t collectionLockMask = 0x80000000U;

Collection NewCollection();  // null when there is no memory
void DisposeCollection(Collection collection);
// Into `target`, or into a new collection when that is null. Existing items of `target` go.
Collection CopyCollection(Collection source, Collection target);

// Replaces the value of an item that exists, unless it is locked. Data may be null with size 0.
OSErr AddCollectionItem(Collection collection, std::uint32_t tag, std::int32_t id, long size,
                        void const* data);
// `size`, if given, receives the whole size; `data`, if given, must have room for it.
OSErr GetCollectionItem(Collection collection, std::uint32_t tag, std::int32_t id, long* size,
                        void* data);
// The value where it lies, borrowed until the collection is changed.
OSErr GetCollectionItemValue(Collection collection, std::uint32_t tag, std::int32_t id, long* size,
                             char const** value);
OSErr RemoveCollectionItem(Collection collection, std::uint32_t tag, std::int32_t id);
long CountCollectionItems(Collection collection);

// Each out-parameter may be null.
OSErr GetCollectionItemInfo(Collection collection, std::uint32_t tag, std::int32_t id, long* index,
                            long* size, std::uint32_t* attributes);
// Sets the bits of `mask` to those of `attributes`.
OSErr SetCollectionItemInfo(Collection collection, std::uint32_t tag, std::int32_t id,
                            std::uint32_t mask, std::uint32_t attributes);
OSErr GetIndexedCollectionItemInfo(Collection collection, long index, std::uint32_t* tag,
                                   std::int32_t* id, long* size, std::uint32_t* attributes);
OSErr ReplaceIndexedCollectionItem(Collection collection, long index, long size, void const* data);

// Takes `size` bytes, or gives as many; what it returns other than 0 ends the call that it was made
// from, as that one's result.
using CollectionFlattenProc = OSErr (*)(long size, void* data, void* reference);

// The flat form reads back on a machine of the other byte order; values keep their bytes. It is
// written in pieces that follow each other, GetFlatCollectionSize bytes in all.
OSErr FlattenCollection(Collection collection, CollectionFlattenProc write, void* reference);
long GetFlatCollectionSize(Collection collection);
// The same into an existing handle, which takes the size of the data.
OSErr FlattenCollectionToHdl(Collection collection, Handle flat);
// Reads `size` bytes in pieces. Replaces what `collection` holds. collectionVersionErr, with the
// collection as it was, for data that is cut, damaged or followed by anything else.
OSErr UnflattenCollection(Collection collection, long size, CollectionFlattenProc read,
                          void* reference);
OSErr UnflattenCollectionFromHdl(Collection collection, Handle flat);
