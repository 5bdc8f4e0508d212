// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "ZUBUtils/PPDUtils/LinkElementDualIterator.h"
#include "ZUBUtils/PPDUtils/LinkElement_Dual.h"

// A list that runs through its elements and owns them: they go with it.
class PtrLinkList {
  public:
    explicit PtrLinkList(LinkElement_Dual* element = nullptr);  // takes the element
    PtrLinkList(PtrLinkList const&) = delete;
    PtrLinkList& operator=(PtrLinkList const&) = delete;
    virtual ~PtrLinkList();

    // Takes the element, which must be in no list, and puts it at the end. False for null.
    bool add(LinkElement_Dual* element);
    // The element at that position, counted from 0; null beyond the end. The list keeps it.
    LinkElement_Dual* index(unsigned short position) const;

    LinkElement_Dual* First() const { return mFirst; }  // null when empty
    std::uint32_t Count() const { return mCount; }
    bool ConstructionSucceeded() const { return mConstructed; }
    // A copy of the list's iterator, which stands on the first element.
    LinkElementDualIterator Begin() const { return mIterator; }

  private:
    LinkElement_Dual* mFirst = nullptr;  // owned, as the whole chain behind it
    LinkElement_Dual* mLast = nullptr;
    [[maybe_unused]] void* mReserved = nullptr;
    std::uint32_t mCount = 0;
    bool mConstructed = true;
    LinkElementDualIterator mIterator;
};
