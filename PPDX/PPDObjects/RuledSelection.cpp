// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/RuledSelection.h"

#include <algorithm>
#include <vector>

#include "PPDX/PPDObjects/ZUBPPD.h"
#include "constraints/UIConstraints.h"

namespace {

constexpr char kPrintSize[] = "*ZUPrintSize";
constexpr char kPageSize[] = "*PageSize";
constexpr char kCustomPrintSize[] = "CustomPrintSize";
constexpr char kSameAsPageSize[] = "SameAsPageSize";

KVCache Changed(ZUBPPD const& ppd, KVCache const& changes) {
    KVCache selection = ppd.GetUIConstraints()->GetSelection();
    selection.merge(changes);
    return selection;
}

bool Follows(ZUBPPD const& ppd, KVCache const& selection) {
    CStringSoup const& texts = ppd.GetUIConstraints()->GetConstraintStrings();
    long const same = texts.Find(kSameAsPageSize);
    return same >= 0 && selection.GetItem(texts.Find(kPrintSize)) == same;
}

}  // namespace

KVCache RuledSelection(ZUBPPD const& ppd, KVCache const& changes) {
    UIConstraints& constraints = *ppd.GetUIConstraints();
    CStringSoup const& texts = constraints.GetConstraintStrings();
    KVCache selection = Changed(ppd, changes);
    if (!Follows(ppd, selection)) {
        return selection;
    }
    long const key = texts.Find(kPrintSize);
    long const real =
        ppd.CustomPaper() ? texts.Find(kCustomPrintSize) : selection.GetItem(texts.Find(kPageSize));
    std::vector<long> const* const sizes = constraints.GetKeyForest().GetItems(key);
    if (real >= 0 && sizes != nullptr && std::ranges::find(*sizes, real) != sizes->end()) {
        selection.Insert(key, real);
    }
    return selection;
}

bool PrintSizeFollows(ZUBPPD const& ppd, KVCache const& changes) {
    return Follows(ppd, Changed(ppd, changes));
}
