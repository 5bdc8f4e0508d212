// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/LinkElementDualIterator.h"

LinkElementDualIterator& LinkElementDualIterator::operator++() {
    mElement = mElement != nullptr ? mElement->Next() : nullptr;
    return *this;
}

LinkElementDualIterator& LinkElementDualIterator::operator--() {
    mElement = mElement != nullptr ? mElement->Previous() : nullptr;
    return *this;
}
