// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/PPDXProperties.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "PPDX/PPDObjects/Controls/ArchiveTags.h"
#include "PPDX/PPDObjects/PPDXProperty.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "platform/MacTypes.h"

namespace {

constexpr ArchiveTags::List kRecords = ArchiveTags::kPages;

bool Contains(PPDXProperty const& property, char const* keyword) {
    return property.Keyword() != nullptr && std::strstr(property.Keyword(), keyword) != nullptr;
}

}  // namespace

PPDXProperties::PPDXProperties(Settings& settings) {
    std::int32_t count = 0;
    GetSettingsField(settings, kRecords.countTag, kRecords.countID, &count, sizeof count);
    // A damaged count can't ask for more records than there are entries.
    long const end = kRecords.firstID + std::min<long>(count, settings.Count());
    for (long id = kRecords.firstID; id < end; ++id) {
        Add(new (std::nothrow) PPDXProperty(settings, id));
    }
}

bool PPDXProperties::Add(PPDXProperty* property) {
    if (property == nullptr) {
        return false;
    }
    // The index comes first: where it throws, the caller still has the page to itself.
    char const* const keyword = property->Keyword();
    bool const isFirst = keyword != nullptr && mByKeyword.try_emplace(keyword).second;
    PointerListItr const position = mList.InsertBefore(mList.End(), property);
    if (isFirst && position.IsNull()) {
        mByKeyword.erase(keyword);
    } else if (isFirst) {
        mByKeyword[keyword] = position;
    }
    return !position.IsNull();
}

PPDXProperty* PPDXProperties::Find(char const* keyword, bool const& exact) {
    if (keyword == nullptr) {
        return nullptr;
    }
    if (exact) {
        auto const found = mByKeyword.find(keyword);
        mCursor = found == mByKeyword.end() ? mList.End() : found->second;
        return static_cast<PPDXProperty*>(*mCursor);
    }
    PPDXProperty* property = First();
    while (property != nullptr && !Contains(*property, keyword)) {
        property = Next();
    }
    return property;
}

PPDXProperty* PPDXProperties::First() {
    mCursor = mList.Begin();
    return static_cast<PPDXProperty*>(*mCursor);
}

PPDXProperty* PPDXProperties::Next() {
    return static_cast<PPDXProperty*>(*++mCursor);
}

std::int32_t PPDXProperties::Count() const {
    return static_cast<std::int32_t>(mList.Size());
}

short PPDXProperties::Save(Settings& settings) {
    std::int32_t const count = Count();
    long status = settings.Add(kRecords.countTag, kRecords.countID, &count, sizeof count);
    long id = kRecords.firstID;
    for (PPDXProperty* page = First(); page != nullptr && status == noErr; page = Next()) {
        status = page->Save(settings, id++);
    }
    return static_cast<short>(status);
}

PPDXProperty* FirstProperty(PPDXProperties* properties) {
    return properties == nullptr ? nullptr : properties->First();
}

PPDXProperty* NextProperty(PPDXProperties* properties) {
    return properties == nullptr ? nullptr : properties->Next();
}

PPDXProperty* FindProperty(PPDXProperties* properties, char const* keyword, bool const& exact) {
    return properties == nullptr ? nullptr : properties->Find(keyword, exact);
}

std::int32_t PropertyCount(PPDXProperties* properties) {
    return properties == nullptr ? 0 : properties->Count();
}

bool IsPropertyListEmpty(PPDXProperties* properties) {
    return properties != nullptr && properties->Empty();
}
