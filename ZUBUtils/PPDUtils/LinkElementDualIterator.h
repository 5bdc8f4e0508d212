// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ZUBUtils/PPDUtils/LinkElement_Dual.h"

// A position in a PtrLinkList. Every step, the postfix forms too, gives the position after the
// move. Beyond either end the iterator is null and stays so.
class LinkElementDualIterator {
  public:
    explicit LinkElementDualIterator(LinkElement_Dual* element = nullptr) : mElement(element) {}

    LinkElement_Dual* operator*() const { return mElement; }  // null for a null iterator

    LinkElementDualIterator& operator++();
    LinkElementDualIterator operator++(int) { return ++*this; }
    LinkElementDualIterator& operator--();
    LinkElementDualIterator operator--(int) { return --*this; }

    bool operator==(LinkElementDualIterator const& other) const = default;

  private:
    LinkElement_Dual* mElement;  // not owned
};
