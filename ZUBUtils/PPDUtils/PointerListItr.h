// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ZUBUtils/PPDUtils/PNode.h"

// A position in a PointerList, or none. It lives until its element is erased or the list goes.
// Moving beyond either end, or moving a null iterator, is harmless.
class PointerListItr {
  public:
    PointerListItr() = default;
    explicit PointerListItr(PNode* node) : mNode(node) {}

    // The element's pointer as it was put in; null for a null iterator and at the end.
    void* operator*() const { return mNode != nullptr ? const_cast<void*>(mNode->mData) : nullptr; }

    PointerListItr& operator++() {
        mNode = mNode != nullptr ? mNode->mNext : nullptr;
        return *this;
    }
    PointerListItr operator++(int) {
        PointerListItr const before = *this;
        ++*this;
        return before;
    }
    PointerListItr& operator--() {
        mNode = mNode != nullptr ? mNode->mPrevious : nullptr;
        return *this;
    }
    PointerListItr operator--(int) {
        PointerListItr const before = *this;
        --*this;
        return before;
    }

    bool operator==(PointerListItr const& other) const = default;
    bool IsNull() const { return mNode == nullptr; }
    PNode* Node() const { return mNode; }

  private:
    PNode* mNode = nullptr;  // not owned
};
