// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ZUBUtils/PPDUtils/PNode.h"
#include "ZUBUtils/PPDUtils/PointerListItr.h"

// A position in a PointerList that must not change it. Otherwise as PointerListItr.
class ConstPointerListItr {
  public:
    ConstPointerListItr() = default;
    explicit ConstPointerListItr(PNode const* node) : mNode(node) {}
    ConstPointerListItr(PointerListItr const& other) : mNode(other.Node()) {}

    void const* operator*() const { return mNode != nullptr ? mNode->mData : nullptr; }

    ConstPointerListItr& operator++() {
        mNode = mNode != nullptr ? mNode->mNext : nullptr;
        return *this;
    }
    ConstPointerListItr operator++(int) {
        ConstPointerListItr const before = *this;
        ++*this;
        return before;
    }
    ConstPointerListItr& operator--() {
        mNode = mNode != nullptr ? mNode->mPrevious : nullptr;
        return *this;
    }
    ConstPointerListItr operator--(int) {
        ConstPointerListItr const before = *this;
        --*this;
        return before;
    }

    bool operator==(ConstPointerListItr const& other) const = default;
    bool IsNull() const { return mNode == nullptr; }

  private:
    PNode const* mNode = nullptr;  // not owned
};
