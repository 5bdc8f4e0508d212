// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/PtrLinkList.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

class Element : public LinkElement_Dual {
  public:
    Element(int number, std::vector<int>* deleted) : mNumber(number), mDeleted(deleted) {}
    ~Element() override { mDeleted->push_back(mNumber); }

  private:
    int mNumber;
    std::vector<int>* mDeleted;
};

TEST(PtrLinkListTest, ElementsGoWithTheListEachOnce) {
    std::vector<int> deleted;
    {
        PtrLinkList list(new Element(0, &deleted));
        EXPECT_TRUE(list.add(new Element(1, &deleted)));
        EXPECT_TRUE(list.add(new Element(2, &deleted)));
        EXPECT_FALSE(list.add(nullptr));
        EXPECT_EQ(list.Count(), 3U);
    }
    EXPECT_EQ(deleted, (std::vector<int>{0, 1, 2}));
}

TEST(PtrLinkListTest, EveryStepOfTheIteratorGivesThePositionAfterTheMove) {
    std::vector<int> deleted;
    PtrLinkList list;
    Element* const first = new Element(0, &deleted);
    Element* const second = new Element(1, &deleted);
    list.add(first);
    list.add(second);
    EXPECT_EQ(list.index(1), second);
    LinkElementDualIterator itr = list.Begin();
    EXPECT_EQ(*itr, first);
    EXPECT_EQ(*itr++, second);
    EXPECT_EQ(*itr--, first);
    EXPECT_EQ(*++itr, second);
    EXPECT_EQ(*itr++, nullptr);
    EXPECT_EQ(*--itr, nullptr);
}

}  // namespace
