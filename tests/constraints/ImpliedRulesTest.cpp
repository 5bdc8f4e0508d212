// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "CachePairs.h"
#include "constraints/ConstraintsEngine.h"
#include "constraints/UIConstraints.h"

namespace {

using Texts = std::vector<std::string>;

Texts const kKeys = {"*A", "*B", "*C", "*D"};
Texts const kOptions = {"", "None", "False", "x", "y", "z"};  // a rule takes the first for all

// One store with rules without options, and one with the same rules written out by hand; one id
// for a text in both.
class TwinStores {
  public:
    explicit TwinStores(unsigned seed) : mRandom(seed) {
        for (UIConstraints* store : {&mImplied, &mWrittenOut}) {
            for (Texts const* texts : {&kKeys, &kOptions}) {
                for (std::string const& text : *texts) {
                    store->GetConstraintStrings().Insert(text.c_str());
                }
            }
        }
        AddOptions();
        AddRules();
    }

    std::string const& Any(Texts const& texts, std::size_t from = 0) {
        return texts[from + mRandom() % (texts.size() - from)];
    }
    long AnyID(Texts const& texts) {  // or -1
        return mRandom() % 4 == 0 ? -1
                                  : mImplied.GetConstraintStrings().Find(Any(texts, 1).c_str());
    }
    void Select() {
        for (std::string const& key : kKeys) {
            std::string const& option = Any(kOptions, 1);
            mImplied.UpdateKVCache(key.c_str(), option.c_str());
            mWrittenOut.UpdateKVCache(key.c_str(), option.c_str());
        }
    }

    UIConstraints mImplied;
    UIConstraints mWrittenOut;

  private:
    void AddOptions() {
        for (std::string const& key : kKeys) {
            for (unsigned long left = mRandom() % 6; left > 0; --left) {
                std::string const option = Any(kOptions, 1);  // may come twice
                mOptions[key].push_back(option);
                mImplied.KVSInsert(key.c_str(), option.c_str());
                mWrittenOut.KVSInsert(key.c_str(), option.c_str());
            }
        }
    }
    void AddRules() {
        std::vector<Texts> implied;
        for (int left = 12; left > 0; --left) {
            Texts const rule = {Any(kKeys), Any(kOptions), Any(kKeys), Any(kOptions)};
            for (unsigned long times = 1 + mRandom() % 2; times > 0; --times) {
                mImplied.Add(rule[0].c_str(), rule[1].c_str(), rule[2].c_str(), rule[3].c_str(),
                             false);
                if (rule[1].empty() || rule[3].empty()) {
                    implied.push_back(rule);
                } else {
                    WriteOut(rule);
                }
            }
        }
        mImplied.Resolve();
        for (Texts const& rule : implied) {
            WriteOut(rule);
        }
    }
    void WriteOut(Texts const& rule) {
        for (std::string const& option1 : Meant(rule[0], rule[1])) {
            for (std::string const& option2 : Meant(rule[2], rule[3])) {
                mWrittenOut.Add(rule[0].c_str(), option1.c_str(), rule[2].c_str(), option2.c_str(),
                                false);
            }
        }
    }
    Texts Meant(std::string const& key, std::string const& option) {
        if (!option.empty()) {
            return {option};
        }
        Texts options = mOptions[key];
        std::erase_if(options, [](auto const& text) { return text == "None" || text == "False"; });
        return options;
    }

    std::mt19937 mRandom;
    std::map<std::string, Texts> mOptions;
};

void ExpectSameLists(TwinStores& stores) {
    for (long key = -1; key < 12; ++key) {
        for (long item = -2; item < 12; ++item) {
            std::unique_ptr<ItemConstraintList> const implied(
                stores.mImplied.GetConstraintForest().GetConstraintList(key, item));
            std::unique_ptr<ItemConstraintList> const writtenOut(
                stores.mWrittenOut.GetConstraintForest().GetConstraintList(key, item));
            ASSERT_EQ(implied == nullptr, writtenOut == nullptr);
            ASSERT_TRUE(implied == nullptr || implied->Pairs() == writtenOut->Pairs());
        }
    }
}

void ExpectSameAnswers(TwinStores& stores) {
    auto const engineOf = [](UIConstraints& store) {
        return ConstraintsEngine(&store.GetSelection(), &store.GetConstraintForest(),
                                 &store.GetKeyForest(), nullptr);
    };
    ConstraintsEngine const implied = engineOf(stores.mImplied);
    ConstraintsEngine const writtenOut = engineOf(stores.mWrittenOut);
    for (long key = 0; key < 4; ++key) {
        EXPECT_EQ(PairsOf(implied.ListCurrentConstraints(key)),
                  PairsOf(writtenOut.ListCurrentConstraints(key)));
        for (long item = -1; item < 10; ++item) {
            KVCache const delta = CacheOf({{key, item}, {(key + 1) % 4, 8}});
            _KVErrorSet const errors = implied.Test(&delta);
            _KVErrorSet const expected = writtenOut.Test(&delta);
            ASSERT_EQ(PairsOf(errors.conflicts), PairsOf(expected.conflicts));
            ASSERT_EQ(PairsOf(errors.alternatives), PairsOf(expected.alternatives));
            ASSERT_EQ(implied.HasConflict({key, item}), writtenOut.HasConflict({key, item}));
            for (bool const exact : {false, true}) {
                ASSERT_EQ(PairsOf(implied.ListScreenedConstraints(delta, exact, key)),
                          PairsOf(writtenOut.ListScreenedConstraints(delta, exact, key)));
            }
            ASSERT_EQ(PairsOf(implied.ListBlockingConstraints((key + 1) % 4, item, key)),
                      PairsOf(writtenOut.ListBlockingConstraints((key + 1) % 4, item, key)));
        }
    }
}

TEST(ImpliedRulesTest, AnswerAsTheRulesWrittenOutWouldAlsoWhenSwitched) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        SCOPED_TRACE(seed);
        TwinStores stores(seed);
        stores.Select();
        ASSERT_NO_FATAL_FAILURE(ExpectSameLists(stores));
        ASSERT_NO_FATAL_FAILURE(ExpectSameAnswers(stores));
        for (int step = 0; step < 4; ++step) {
            long const sides[] = {stores.AnyID(kKeys), stores.AnyID(kOptions), stores.AnyID(kKeys),
                                  stores.AnyID(kOptions)};
            auto const change = step % 2 == 0 ? &ConstraintForest::DisableConstraints
                                              : &ConstraintForest::EnableConstraints;
            for (UIConstraints* store : {&stores.mImplied, &stores.mWrittenOut}) {
                (store->GetConstraintForest().*change)(sides[0], sides[1], sides[2], sides[3]);
            }
            ASSERT_NO_FATAL_FAILURE(ExpectSameLists(stores));
            ASSERT_NO_FATAL_FAILURE(ExpectSameAnswers(stores));
        }
    }
}

}  // namespace
