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

// The flat form reads back on a machine of the other byte order; values keep their bytes.
// `flat` is an existing handle, which takes the size of the data.
OSErr FlattenCollectionToHdl(Collection collection, Handle flat);
// Replaces what `collection` holds. collectionVersionErr, with the collection as it was, for data
// that is cut, damaged or followed by anything else.
OSErr UnflattenCollectionFromHdl(Collection collection, Handle flat);
