// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/PPDXGroups.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "PPDX/PPDObjects/Controls/ArchiveTags.h"
#include "PPDX/PPDObjects/Controls/DisplayOptions.h"
#include "PPDX/PPDObjects/PPDXGroup.h"
#include "PPDX/PPDObjects/PPDXRollDown.h"
#include "PPDX/PPDObjects/PPDXScrollPane.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "platform/CollectionManager.h"

namespace {

constexpr ArchiveTags::List kRecords = ArchiveTags::kGroups;

template <typename Group>
PPDXGroup* Make(Settings& settings, long id) {
    return new (std::nothrow) Group(settings, id);
}

struct Kind {
    unsigned long tag;
    PPDXGroup* (*make)(Settings& settings, long id);
};

constexpr Kind kKinds[] = {
    {ArchiveTags::kGroup, &Make<PPDXGroup>},
    {ArchiveTags::kRollDown, &Make<PPDXRollDown>},
    {ArchiveTags::kScrollPane, &Make<PPDXScrollPane>},
};

// The group of a record that carries the mark of a kind; null for an unreadable one.
PPDXGroup* Restored(Settings& settings, long id) {
    for (Kind const& kind : kKinds) {
        long size = 0;
        long const status = settings.Get(kind.tag, id, nullptr, size, false);
        if (status == noErr) {
            return kind.make(settings, id);
        }
        if (status != collectionItemNotFoundErr) {
            return nullptr;
        }
    }
    return nullptr;
}

bool Contains(PPDXGroup const& group, char const* keyword) {
    return group.Keyword() != nullptr && std::strstr(group.Keyword(), keyword) != nullptr;
}

}  // namespace

PPDXGroups::PPDXGroups(Settings& settings) {
    std::int32_t count = 0;
    GetSettingsField(settings, kRecords.countTag, kRecords.countID, &count, sizeof count);
    // A damaged count can't ask for more records than there are entries.
    long const end = kRecords.firstID + std::min<long>(count, settings.Count());
    for (long id = kRecords.firstID; id < end; ++id) {
        Add(Restored(settings, id));
    }
}

bool PPDXGroups::Add(PPDXGroup* group) {
    if (group == nullptr) {
        return false;
    }
    // The index comes first: where it throws, the caller still has the group to itself.
    char const* const keyword = group->Keyword();
    bool const isFirst = keyword != nullptr && mByKeyword.try_emplace(keyword, group).second;
    if (!mList.PushBack(group)) {
        if (isFirst) {
            mByKeyword.erase(keyword);
        }
        return false;
    }
    ++mCount;
    mOrphans += group->IsOrphan() ? 1 : 0;
    mHidden += group->IsVisible() ? 0 : 1;
    return true;
}

PPDXGroup* PPDXGroups::Find(char const* keyword, bool const& exact) const {
    if (keyword == nullptr) {
        return nullptr;
    }
    if (exact) {
        auto const found = mByKeyword.find(keyword);
        return found == mByKeyword.end() ? nullptr : found->second;
    }
    for (ConstPointerListItr at = mList.Begin(); at != mList.End(); ++at) {
        auto* group = static_cast<PPDXGroup*>(const_cast<void*>(*at));
        if (Contains(*group, keyword)) {
            return group;
        }
    }
    return nullptr;
}

PPDXGroup* PPDXGroups::First() {
    mCursor = mList.Begin();
    return Displayed();
}

PPDXGroup* PPDXGroups::Next() {
    ++mCursor;
    return Displayed();
}

PPDXGroup* PPDXGroups::Displayed() {
    for (; *mCursor != nullptr; ++mCursor) {
        auto* group = static_cast<PPDXGroup*>(*mCursor);
        if (group->OkayToDisplay(DisplayOptions::Options())) {
            return group;
        }
    }
    return nullptr;
}

std::int32_t PPDXGroups::Count() const {
    switch (DisplayOptions::Options()) {
        case kDisplayPlacedAndVisible:
            return mCount;
        case kDisplayOrphans:
            return mCount + mOrphans;
        case kDisplayHidden:
            return mCount + mHidden;
        case kDisplayAll:
            return mCount + mOrphans + mHidden;
        default:
            return 0;
    }
}

short PPDXGroups::Save(Settings& settings) {
    long status = settings.Add(kRecords.countTag, kRecords.countID, &mCount, sizeof mCount);
    long id = kRecords.firstID;
    for (PPDXGroup* group = First(); group != nullptr && status == noErr; group = Next()) {
        status = group->Save(settings, id++);
    }
    return static_cast<short>(status);
}

PPDXGroup* FirstGroup(PPDXGroups* groups) {
    return groups == nullptr ? nullptr : groups->First();
}

PPDXGroup* NextGroup(PPDXGroups* groups) {
    return groups == nullptr ? nullptr : groups->Next();
}

PPDXGroup* FindGroup(PPDXGroups* groups, char const* keyword, bool const& exact) {
    return groups == nullptr ? nullptr : groups->Find(keyword, exact);
}

std::int32_t GroupCount(PPDXGroups* groups) {
    return groups == nullptr ? 0 : groups->Count();
}

bool IsGrouPointerListEmpty(PPDXGroups* groups) {
    return groups != nullptr && groups->Empty();
}
