// SPDX-License-Identifier: Apache-2.0
#include "constraints/UIConstraints.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "constraints/ItemConstraintList.h"

namespace {

using Texts = std::vector<std::string>;

// A store with the popups *A (None, x, y) and *B (u, False, v), and its rules as texts.
class UIConstraintsTest : public ::testing::Test {
  protected:
    void AddOptions() {
        for (char const* option : {"None", "x", "y"}) {
            mStore.KVSInsert("*A", option);
        }
        for (char const* option : {"u", "False", "v"}) {
            mStore.KVSInsert("*B", option);
        }
    }
    Texts Rules(ConstraintForest const& forest, char const* key, char const* option) {
        CStringSoup const& strings = mStore.GetConstraintStrings();
        long const item = option == nullptr ? -1 : strings.Find(option);
        std::unique_ptr<ItemConstraintList> const list(
            forest.GetConstraintList(strings.Find(key), item));
        Texts rules;
        for (long i = 0; list != nullptr && i < list->size(); ++i) {
            auto const& [key2, option2] = list->Pairs()[static_cast<std::size_t>(i)];
            rules.push_back(std::string(strings.Find(key2)) + ' ' + strings.Find(option2));
        }
        return rules;
    }
    Texts Conflicts(char const* key, char const* option) {
        return Rules(mStore.GetConstraintForest(), key, option);
    }

    UIConstraints mStore;
};

TEST_F(UIConstraintsTest, IdsFollowTheOrderOfTheFile) {
    CStringSoup const& strings = mStore.GetConstraintStrings();
    mStore.UpdateKVCache("*A", "x");
    mStore.Add("*B", "x", "*C", "", false);
    mStore.KVSInsert("*D", "*A");
    char const* const expected[] = {"*A", "x", "*B", "*C", "", "*D"};
    ASSERT_EQ(strings.size(), 6);
    for (long id = 0; id < 6; ++id) {
        EXPECT_STREQ(strings.Find(id), expected[id]);
    }
    mStore.Resolve();
    EXPECT_EQ(strings.Find("None"), 6);
    EXPECT_EQ(strings.Find("False"), 7);
}

TEST_F(UIConstraintsTest, RequirementsStayApartFromConflicts) {
    AddOptions();
    mStore.Add("*A", "x", "*B", "u", true);
    mStore.Add("*A", "y", "*B", "", true);
    mStore.Resolve();
    EXPECT_EQ(Conflicts("*A", nullptr), Texts{});
    EXPECT_EQ(Rules(mStore.GetRequiresForest(), "*A", nullptr), (Texts{"*B u", "*B u", "*B v"}));
}

TEST_F(UIConstraintsTest, AQuestionAboutUnknownTextsAddsNothing) {
    AddOptions();
    mStore.Add("*A", "x", "*B", "u", false);
    mStore.UpdateKVCache("*B", "u");
    long const texts = mStore.GetConstraintStrings().size();
    EXPECT_FALSE(mStore.IsKVConstrained("*Unknown", "x"));
    EXPECT_FALSE(mStore.IsKVConstrained("*B", "unknown"));
    // An unknown option stands for all of the key's.
    EXPECT_TRUE(mStore.IsKVConstrained("*A", "unknown"));
    EXPECT_EQ(mStore.GetConstraintStrings().size(), texts);
}

}  // namespace
