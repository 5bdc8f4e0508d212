// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/PointerList.h"

#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <vector>

namespace {

using Pointers = std::vector<void const*>;

int const kValues[8] = {};

Pointers Forward(PointerList const& list) {
    Pointers pointers;
    for (ConstPointerListItr itr = list.Begin(); itr != list.End(); itr++) {
        pointers.push_back(*itr);
    }
    return pointers;
}

Pointers Backward(PointerList& list) {
    Pointers pointers;
    for (PointerListItr itr = list.End(); itr != list.Begin();) {
        pointers.push_back(*--itr);
    }
    return pointers;
}

void ExpectList(PointerList& list, Pointers const& expected) {
    EXPECT_EQ(Forward(list), expected);
    EXPECT_EQ(Backward(list), Pointers(expected.rbegin(), expected.rend()));
    EXPECT_EQ(list.Size(), expected.size());
    EXPECT_EQ(list.Empty(), expected.empty());
    EXPECT_EQ(list.Front(), expected.empty() ? nullptr : expected.front());
    EXPECT_EQ(list.Back(), expected.empty() ? nullptr : expected.back());
}

PointerList ListOf(int count) {
    PointerList list;
    for (int i = 0; i < count; ++i) {
        list.PushBack(kValues + i);
    }
    return list;
}

TEST(PointerListTest, AnEmptyListTakesEveryCall) {
    PointerList list;
    PointerListItr none;
    list.PopFront();
    list.PopBack();
    EXPECT_TRUE(list.InsertBefore(none, kValues).IsNull());
    EXPECT_TRUE(list.InsertBefore(--list.Begin(), kValues).IsNull());
    EXPECT_EQ(list.Erase(none), list.Begin());
    EXPECT_EQ(list.Erase(list.Begin()), list.End());
    EXPECT_EQ(list.Erase(--list.Begin()), list.Begin());
    EXPECT_EQ(*--none, nullptr);
    ExpectList(list, {});
}

TEST(PointerListTest, EraseReturnsTheFollowingElementAndClearsTheIterator) {
    PointerList list = ListOf(5);
    PointerListItr second = ++list.Begin();
    PointerListItr const third = list.Erase(second);
    EXPECT_TRUE(second.IsNull());
    EXPECT_EQ(*third, kValues + 2);
    PointerListItr const last = --list.End();
    EXPECT_EQ(list.Erase(third, last), last);
    ExpectList(list, {kValues, kValues + 4});
}

TEST(PointerListTest, CopiesShareThePointersAndNothingElse) {
    PointerList source = ListOf(3);
    PointerList assigned = ListOf(2);
    assigned = source;
    PointerList copy(source);
    source.MakeEmpty();
    copy.PopFront();
    ExpectList(source, {});
    ExpectList(copy, {kValues + 1, kValues + 2});
    ExpectList(assigned, {kValues, kValues + 1, kValues + 2});
}

TEST(PointerListTest, AnyMixOfChangesKeepsOrderAndLinks) {
    std::mt19937 random(20090317);
    PointerList list;
    Pointers model;
    for (int step = 0; step < 3000; ++step) {
        auto const position = static_cast<long>(random() % (model.size() + 1));
        void const* const data = kValues + random() % std::size(kValues);
        PointerListItr itr = list.Begin();
        for (long i = 0; i < position; ++i) {
            ++itr;
        }
        if (random() % 2 == 0 && model.size() < 12) {
            EXPECT_EQ(*list.InsertBefore(itr, data), data);
            model.insert(model.begin() + position, data);
        } else if (position < static_cast<long>(model.size())) {
            list.Erase(itr);
            model.erase(model.begin() + position);
        } else if (random() % 2 == 0) {
            list.PushFront(data);
            model.insert(model.begin(), data);
        } else if (!model.empty()) {
            list.PopBack();
            model.pop_back();
        }
        ExpectList(list, model);
        ASSERT_FALSE(HasFailure()) << "step " << step;
    }
}

}  // namespace
