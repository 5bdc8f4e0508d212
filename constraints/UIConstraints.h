// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "constraints/CStringSoup.h"
#include "constraints/ConstraintForest.h"
#include "constraints/KVCache.h"
#include "constraints/KeyForest.h"

class ConstraintsEngine;

// What a PPD says about options that can't stand together, and which option of each key is
// selected now. Texts are interned once; all else works on their ids.
//
// While the PPD is read, KVSInsert, Add and UpdateKVCache come in the order of the file, and
// Resolve once after the last line. From then on UpdateKVCache follows every selection, and the
// panel asks what to grey. One thread. No text may be null.
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
    void KVSInsert(long key, std::vector<long> options);  // all of them, in their order
    // Adds one rule: the first key and option conflict with the second ones, or need them when
    // `requirement` is true. An empty option stands for every option of its key but "None" and
    // "False".
    void Add(std::string_view key1, std::string_view option1, std::string_view key2,
             std::string_view option2, bool requirement);
    // Whether the option stands for "not in use", so that a blank one doesn't mean it.
    static bool IsOff(std::string_view option);
    // Lets the rules with an empty option stand for the options known by now.
    void Resolve();
    // Makes the option the selected one of its key.
    void UpdateKVCache(char const* key, char const* option);
    void UpdateKVCache(long key, long option);

    // Whether the change meets no conflict with the rest of the selection. Requirements don't
    // count.
    bool ValidateDelta(KVCache const& delta);
    // Whether selecting this option would conflict with what is selected now. False for an unknown
    // key; an option of -1, or one that is unknown, asks about the rules of all options of the key.
    bool IsKVConstrained(long key, long option);
    bool IsKVConstrained(char const* key, char const* option);

    ConstraintForest& GetConstraintForest() { return mConstraintForest; }
    ConstraintForest& GetRequiresForest() { return mRequiresForest; }
    CStringSoup& GetConstraintStrings() { return mStrings; }
    KeyForest const& GetKeyForest() const { return mKeyForest; }
    KVCache const& GetSelection() const { return mSelection; }

  private:
    ConstraintsEngine& Engine();
    ConstraintForest& ForestOf(bool requirement);
    // What stands in a rule for this option, or for all that a blank one means; -1 when a blank one
    // means none. `lists` has what was found for the keys before, by forest and key.
    using ListsByKey = std::map<std::pair<bool, long>, long>;
    long ItemMeant(bool requirement, long key, long option, ListsByKey& lists);
    std::vector<std::int32_t> OptionsMeant(long key) const;

    ConstraintForest mConstraintForest;
    ConstraintForest mRequiresForest;
    CStringSoup mStrings;
    ConstraintsEngine* mEngine = nullptr;  // owned; null until the first question
    KVCache mSelection;                    // at most one pair a key
    KeyForest mKeyForest;
    std::vector<SpecialConstraint> mDeferred;
};
