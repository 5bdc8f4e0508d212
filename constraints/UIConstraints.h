// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "constraints/CStringSoup.h"
#include "constraints/ConstraintForest.h"
#include "constraints/KVCache.h"
#include "constraints/KeyForest.h"

// What a PPD says about options that can't stand together, and which option of each key is
// selected now. Texts are interned once; all else works on their ids.
//
// While the PPD is read, KVSInsert, Add and UpdateKVCache come in the order of the file, and
// Resolve once after the last line. From then on UpdateKVCache follows every selection. One thread.
// No text may be null.
class UIConstraints {
  public:
    // A rule in which an option is blank; waits for the table of options to be complete.
    struct SpecialConstraint {
        long key1;
        long option1;
        long key2;
        long option2;
        bool requirement;
    };

    UIConstraints();
    UIConstraints(UIConstraints const&) = delete;
    UIConstraints& operator=(UIConstraints const&) = delete;
    virtual ~UIConstraints();

    // Adds an option to the end of its key's list.
    void KVSInsert(char const* key, char const* option);
    void KVSInsert(long key, long option);
    // Adds one rule: the first key and option conflict with the second ones, or need them when
    // `requirement` is true. An empty option stands for every option of its key but "None" and
    // "False".
    void Add(char const* key1, char const* option1, char const* key2, char const* option2,
             bool requirement);
    // Writes the rules with an empty option out over the options known by now.
    void Resolve();
    // Makes the option the selected one of its key.
    void UpdateKVCache(char const* key, char const* option);
    void UpdateKVCache(long key, long option);

    ConstraintForest& GetConstraintForest() { return mConstraintForest; }
    ConstraintForest& GetRequiresForest() { return mRequiresForest; }
    CStringSoup& GetConstraintStrings() { return mStrings; }

  private:
    ConstraintForest& ForestOf(bool requirement);
    std::vector<long> OptionsMeant(long key, long option) const;
    void Expand(SpecialConstraint const& rule);

    ConstraintForest mConstraintForest;
    ConstraintForest mRequiresForest;
    CStringSoup mStrings;
    KVCache mSelection;  // at most one pair a key
    KeyForest mKeyForest;
    std::vector<SpecialConstraint> mDeferred;
};
