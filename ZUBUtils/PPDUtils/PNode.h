// SPDX-License-Identifier: Apache-2.0
#pragma once

// One node of a PointerList.
class PNode {
  public:
    explicit PNode(void const* data = nullptr) : mData(data) {}
    PNode(PNode const&) = delete;
    PNode& operator=(PNode const&) = delete;
    virtual ~PNode();  // clears the links, leaves the data alone

    void const* mData;           // not owned
    PNode* mPrevious = nullptr;  // not owned
    PNode* mNext = nullptr;      // not owned
};
