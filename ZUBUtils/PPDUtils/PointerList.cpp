// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/PointerList.h"

#include <new>
#include <utility>

#include "ZUBUtils/PPDUtils/Arena.h"

namespace {

// A node that goes with its arena, and not before.
class ArenaNode final : public PNode {
  public:
    explicit ArenaNode(void const* data) : PNode(data) {}
    static void* operator new(std::size_t, Arena& arena) { return arena.PlaceFor<ArenaNode>(); }
    static void operator delete(void*) {}
    static void operator delete(void*, Arena&) {}
};

}  // namespace

PointerList::PointerList() {
    mHead.mNext = &mTail;
    mTail.mPrevious = &mHead;
}

PointerList::PointerList(PointerList const& other) : PointerList() {
    Append(other);
}

PointerList::PointerList(PointerList&& other) noexcept : PointerList() {
    if (other.Empty()) {
        return;
    }
    mCount = std::exchange(other.mCount, 0);
    mOwnNodes = std::exchange(other.mOwnNodes, 0);
    mHead.mNext = std::exchange(other.mHead.mNext, &other.mTail);
    mTail.mPrevious = std::exchange(other.mTail.mPrevious, &other.mHead);
    mHead.mNext->mPrevious = &mHead;
    mTail.mPrevious->mNext = &mTail;
}

PointerList& PointerList::operator=(PointerList const& other) {
    if (this != &other) {
        MakeEmpty();
        Append(other);
    }
    return *this;
}

PointerList::~PointerList() {
    MakeEmpty();
}

bool PointerList::PushBack(void const* data) {
    return !InsertBefore(End(), data).IsNull();
}

bool PointerList::PushFront(void const* data) {
    return !InsertBefore(Begin(), data).IsNull();
}

PointerListItr PointerList::InsertBefore(PointerListItr position, void const* data) {
    PNode* const next = position.Node();
    if (next == nullptr || next->mPrevious == nullptr) {
        return PointerListItr();
    }
    PNode* const node = new (std::nothrow) PNode(data);
    if (node == nullptr) {
        return PointerListItr();
    }
    LinkBefore(*next, *node);
    ++mOwnNodes;
    return PointerListItr(node);
}

void PointerList::PushBack(void const* data, Arena& arena) {
    LinkBefore(mTail, *new (arena) ArenaNode(data));
}

void PointerList::LinkBefore(PNode& next, PNode& node) {
    node.mPrevious = next.mPrevious;
    node.mNext = &next;
    node.mPrevious->mNext = &node;
    next.mPrevious = &node;
    ++mCount;
}

PointerListItr PointerList::Erase(PointerListItr& position) {
    PNode* const node = position.Node();
    position = PointerListItr();
    if (node == nullptr || node == &mHead) {
        return Begin();
    }
    if (node == &mTail) {
        return End();
    }
    PNode* const next = node->mNext;
    node->mPrevious->mNext = next;
    next->mPrevious = node->mPrevious;
    mOwnNodes -= dynamic_cast<ArenaNode*>(node) == nullptr ? 1 : 0;
    delete node;
    --mCount;
    return PointerListItr(next);
}

PointerListItr PointerList::Erase(PointerListItr first, PointerListItr last) {
    while (first != last && first != End() && !first.IsNull()) {
        first = Erase(PointerListItr(first));
    }
    return last;
}

void* PointerList::Front() const {
    return const_cast<void*>(mHead.mNext->mData);
}

void* PointerList::Back() const {
    return const_cast<void*>(mTail.mPrevious->mData);
}

void PointerList::PopFront() {
    if (!Empty()) {
        Erase(Begin());
    }
}

void PointerList::PopBack() {
    if (!Empty()) {
        Erase(--End());
    }
}

void PointerList::MakeEmpty() {
    while (mOwnNodes != 0) {
        PopFront();
    }
    mCount = 0;
    mHead.mNext = &mTail;
    mTail.mPrevious = &mHead;
}

void PointerList::Append(PointerList const& other) {
    for (ConstPointerListItr itr = other.Begin(); itr != other.End(); ++itr) {
        PushBack(*itr);
    }
}
