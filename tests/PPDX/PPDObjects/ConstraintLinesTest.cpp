// SPDX-License-Identifier: Apache-2.0
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "PPDText.h"
#include "constraints/UIConstraints.h"

namespace {

// What (key, option) conflicts with, as "key option" texts.
std::vector<std::string> RulesOf(ZUBPPD& ppd, ConstraintForest& forest, char const* key,
                                 char const* option) {
    CStringSoup& strings = ppd.GetUIConstraints()->GetConstraintStrings();
    std::unique_ptr<ItemConstraintList> const list(
        forest.GetConstraintList(strings.Find(key), strings.Find(option)));
    std::vector<std::string> rules;
    for (long i = 0; list != nullptr && i < static_cast<long>(list->size()); ++i) {
        std::unique_ptr<std::pair<long, long>> const rule((*list)[i]);
        rules.push_back(std::string(strings.Find(rule->first)) + " " + strings.Find(rule->second));
    }
    return rules;
}

}  // namespace

TEST(ConstraintLinesTest, RulesOfThreeKeywordsReachTheStore) {
    PPDPtr const ppd = ParseBody(
        "*UIConstraints: *A a \t*B b\n*%ZUBUIConstraints:\t*A a *C c\n"
        "*%ZUBUIRequires: *A a *D d\n");
    UIConstraints& store = *ppd->GetUIConstraints();
    EXPECT_EQ(RulesOf(*ppd, store.GetConstraintForest(), "*A", "a"),
              (std::vector<std::string>{"*B b", "*C c"}));
    EXPECT_EQ(RulesOf(*ppd, store.GetRequiresForest(), "*A", "a"),
              (std::vector<std::string>{"*D d"}));
}

TEST(ConstraintLinesTest, BlankOptionsAreWrittenOutOverBlocksThatComeLater) {
    PPDPtr const ppd = ParseBody(
        "*UIConstraints: *A *B\n*UIConstraints: *A *C x\n"
        "*%ZUBFlags *A:\n*OpenUI *A/A: Boolean\n*DefaultA: True\n*CloseUI: *A\n"
        "*%ZUBFlags *B:\n*OpenUI *B/B: PickOne\n*DefaultB: None\n*B None/N: \"\"\n*B b/b: \"\"\n"
        "*CloseUI: *B\n");
    ConstraintForest& forest = ppd->GetUIConstraints()->GetConstraintForest();
    EXPECT_EQ(RulesOf(*ppd, forest, "*A", "True"), (std::vector<std::string>{"*B b", "*C x"}));
    EXPECT_TRUE(RulesOf(*ppd, forest, "*A", "False").empty());
}

TEST(ConstraintLinesTest, LineWithoutASecondKeyIsError36AndAddsNothing) {
    for (char const* line : {"*UIConstraints: *A x\n", "*UIConstraints: *A\n", "*UIConstraints:\n",
                             "*%ZUBUIRequires: *A x\n"}) {
        PPDPtr const ppd = ParseBody(line);
        EXPECT_EQ(ErrorsOf(*ppd).front(), "36") << line;
        EXPECT_EQ(ppd->GetUIConstraints()->GetConstraintStrings().size(), 0U) << line;
    }
}
