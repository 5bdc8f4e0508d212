// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "ZUBUtils/PPDUtils/ConstPointerListItr.h"
#include "ZUBUtils/PPDUtils/PNode.h"
#include "ZUBUtils/PPDUtils/PointerListItr.h"

class Arena;

// A doubly linked list of pointers between two sentinels. It owns its nodes and never what they
// point to: whoever fills a list with objects of its own takes Back(), deletes and calls PopBack()
// until Empty(). An iterator stays good until its own element is erased. Not for use from two
// threads at once.
class PointerList {
  public:
    PointerList();
    PointerList(PointerList const& other);             // the same pointers in the same order
    PointerList(PointerList&& other) noexcept;         // the other list is empty behind it
    PointerList& operator=(PointerList const& other);  // empties this list first
    ~PointerList();

    // False, with the list as it was, when there is no memory.
    bool PushBack(void const* data);
    bool PushFront(void const* data);
    // The node lies in the arena, which must outlive the list and keeps it for good. Throws
    // std::bad_alloc.
    void PushBack(void const* data, Arena& arena);
    // Returns the position of the new element. A null iterator, with the list as it was, when
    // there is no memory or nothing can stand before `position`.
    PointerListItr InsertBefore(PointerListItr position, void const* data);

    PointerListItr Begin() { return PointerListItr(mHead.mNext); }
    PointerListItr End() { return PointerListItr(&mTail); }  // behind the last element
    ConstPointerListItr Begin() const { return ConstPointerListItr(mHead.mNext); }
    ConstPointerListItr End() const { return ConstPointerListItr(&mTail); }

    // Makes `position` null and returns the position of the element that followed. A null
    // iterator erases nothing and gives Begin(); the end erases nothing and gives End().
    PointerListItr Erase(PointerListItr& position);
    PointerListItr Erase(PointerListItr&& position) { return Erase(position); }
    // Without `last` itself, which is returned.
    PointerListItr Erase(PointerListItr first, PointerListItr last);

    void* Front() const;  // null on an empty list
    void* Back() const;
    void PopFront();  // nothing on an empty list
    void PopBack();
    void MakeEmpty();  // without a walk when all nodes lie in an arena

    // Whether a node is in no arena.
    bool OwnsNodes() const { return mOwnNodes != 0; }
    std::uint32_t Size() const { return mCount; }
    bool Empty() const { return mCount == 0; }

  private:
    void Append(PointerList const& other);
    void LinkBefore(PNode& next, PNode& node);

    std::uint32_t mCount = 0;
    std::uint32_t mOwnNodes = 0;  // of those, the ones in no arena
    PNode mHead;
    PNode mTail;
};
