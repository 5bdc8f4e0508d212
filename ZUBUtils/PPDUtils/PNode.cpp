// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/PNode.h"

PNode::~PNode() {
    mPrevious = nullptr;
    mNext = nullptr;
}
