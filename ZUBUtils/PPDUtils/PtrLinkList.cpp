// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/PtrLinkList.h"

#include <utility>

PtrLinkList::PtrLinkList(LinkElement_Dual* element) {
    mConstructed = element == nullptr || add(element);
}

PtrLinkList::~PtrLinkList() {
    while (mFirst != nullptr) {
        delete std::exchange(mFirst, mFirst->mNext);
    }
}

bool PtrLinkList::add(LinkElement_Dual* element) {
    if (element == nullptr) {
        return false;
    }
    element->mNext = nullptr;
    element->mPrevious = mLast;
    if (mLast != nullptr) {
        mLast->mNext = element;
    } else {
        mFirst = element;
        mIterator = LinkElementDualIterator(element);
    }
    mLast = element;
    ++mCount;
    return true;
}

LinkElement_Dual* PtrLinkList::index(unsigned short position) const {
    LinkElement_Dual* element = mFirst;
    for (unsigned short i = 0; i < position && element != nullptr; ++i) {
        element = element->mNext;
    }
    return element;
}
