// SPDX-License-Identifier: Apache-2.0
#pragma once

// Base of what a PtrLinkList holds. An element is in one list at most.
class LinkElement_Dual {
  public:
    LinkElement_Dual() = default;
    LinkElement_Dual(LinkElement_Dual const&) = delete;
    LinkElement_Dual& operator=(LinkElement_Dual const&) = delete;
    virtual ~LinkElement_Dual();

    LinkElement_Dual* Next() const { return mNext; }
    LinkElement_Dual* Previous() const { return mPrevious; }

  private:
    friend class PtrLinkList;

    LinkElement_Dual* mNext = nullptr;      // owned by the list
    LinkElement_Dual* mPrevious = nullptr;  // owned by the list
};
