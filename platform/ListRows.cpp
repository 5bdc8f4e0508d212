// SPDX-License-Identifier: Apache-2.0
#include "platform/internal/ListRows.h"

#include <algorithm>
#include <iterator>
#include <list>
#include <unordered_map>

#include "platform/internal/CFObjects.h"
#include "platform/internal/Desktop.h"

// What a list's owner fills in while its routine runs.
struct OpaqueItemData {
    CFRef<CFStringRef> text;
    bool truth = false;
};

namespace platform {
namespace {

// Those that an owner fills in at present; on the stack of who asks.
std::vector<OpaqueItemData*> gAsked;

class AskedScope {
  public:
    explicit AskedScope(OpaqueItemData& data) { gAsked.push_back(&data); }
    AskedScope(AskedScope const&) = delete;
    AskedScope& operator=(AskedScope const&) = delete;
    ~AskedScope() { gAsked.pop_back(); }
};

// What the owner gives for one property of one row.
class Question {
  public:
    Question(ControlRef browser, DataBrowserItemID item, DataBrowserPropertyID property) {
        ItemList const* const list = FindAs<ItemList>(browser);
        if (list == nullptr || list->callbacks.itemData == nullptr) {
            return;
        }
        AskedScope const asked(mData);
        DispatchScope const scope;
        list->callbacks.itemData(browser, item, property, &mData, false);
    }

    bool Truth() const { return mData.truth; }
    CFRef<CFStringRef> Text() const {
        return mData.text ? mData.text : CFRef<CFStringRef>::Retained(CFSTR(""));
    }

  private:
    OpaqueItemData mData;
};

OpaqueItemData* Asked(DataBrowserItemDataRef itemData) {
    bool const isAsked = std::find(gAsked.begin(), gAsked.end(), itemData) != gAsked.end();
    return isAsked ? itemData : nullptr;
}

// Whether one row comes before another. Texts are asked once a row.
class RowOrder {
  public:
    RowOrder(ControlRef browser, ItemList const& list)
        : mBrowser(browser),
          mColumn(list.sortColumn),
          mIsDescending(list.isDescending),
          mCompare(list.callbacks.itemCompare) {}

    bool operator()(DataBrowserItemID one, DataBrowserItemID two) {
        if (mIsDescending) {
            std::swap(one, two);
        }
        if (mCompare != nullptr) {
            return mCompare(mBrowser, one, two, mColumn);
        }
        return TextOf(TextOfRow(one)) < TextOf(TextOfRow(two));
    }

  private:
    CFStringRef TextOfRow(DataBrowserItemID item) {
        auto const [place, isNew] = mTexts.try_emplace(item);
        if (isNew) {
            // The owner may ask for things that make the map grow.
            CFRef<CFStringRef> text = CellText(mBrowser, item, mColumn);
            return (mTexts[item] = std::move(text)).Get();
        }
        return place->second.Get();
    }

    ControlRef mBrowser;
    DataBrowserPropertyID mColumn;
    bool mIsDescending;
    DataBrowserItemCompareProc mCompare;
    std::unordered_map<DataBrowserItemID, CFRef<CFStringRef>> mTexts;
};

// A list of links stays whole whatever a comparison answers.
Items Sorted(Items const& items, ControlRef browser, ItemList const& list) {
    std::list<DataBrowserItemID> sorted(items.begin(), items.end());
    RowOrder order(browser, list);
    sorted.sort([&](DataBrowserItemID one, DataBrowserItemID two) { return order(one, two); });
    return {sorted.begin(), sorted.end()};
}

// An owner that changes the rows while they are sorted sorts them no second time inside of that.
class SortScope {
  public:
    SortScope(ControlRef browser, ItemList& list) : mBrowser(browser) { list.isBeingSorted = true; }
    SortScope(SortScope const&) = delete;
    SortScope& operator=(SortScope const&) = delete;
    ~SortScope() {
        if (auto* const list = FindAs<ItemList>(mBrowser); list != nullptr) {
            list->isBeingSorted = false;
        }
    }

  private:
    ControlRef mBrowser;
};

Items const* ChildrenOf(ControlRef browser, DataBrowserItemID container) {
    ItemList const* const list = FindAs<ItemList>(browser);
    if (list == nullptr) {
        return nullptr;
    }
    auto const row = list->rows.find(container);
    return row == list->rows.end() ? nullptr : &row->second.children;
}

}  // namespace

Items ListedRows(ItemList const& list) {
    Items listed;
    Items waiting = {kDataBrowserNoItem};
    while (!waiting.empty()) {
        DataBrowserItemID const item = waiting.back();
        waiting.pop_back();
        ListRow const& row = list.rows.at(item);
        if (item != kDataBrowserNoItem) {
            listed.push_back(item);
        }
        if (item == kDataBrowserNoItem || row.isOpen) {
            waiting.insert(waiting.end(), row.children.rbegin(), row.children.rend());
        }
    }
    return listed;
}

bool IsListed(ItemList const& list, DataBrowserItemID item) {
    auto row = list.rows.find(item);
    if (item == kDataBrowserNoItem || row == list.rows.end()) {
        return false;
    }
    while (row->second.container != kDataBrowserNoItem) {
        row = list.rows.find(row->second.container);
        if (!row->second.isOpen) {
            return false;
        }
    }
    return true;
}

bool RowSelection::Add(DataBrowserItemID item) {
    if (Contains(item)) {
        return false;
    }
    mOrder.push_back(item);
    try {
        mPlaces.emplace(item, std::prev(mOrder.end()));
    } catch (...) {
        mOrder.pop_back();
        throw;
    }
    return true;
}

void RowSelection::Remove(DataBrowserItemID item) {
    if (auto const place = mPlaces.find(item); place != mPlaces.end()) {
        mOrder.erase(place->second);
        mPlaces.erase(place);
    }
}

bool IsContainer(ControlRef browser, DataBrowserItemID item) {
    return Question(browser, item, kDataBrowserItemIsContainerProperty).Truth();
}

CFRef<CFStringRef> CellText(ControlRef browser, DataBrowserItemID item,
                            DataBrowserPropertyID column) {
    return Question(browser, item, column).Text();
}

void Notify(ControlRef browser, DataBrowserItemID item, DataBrowserItemNotification message) {
    ItemList const* const list = FindAs<ItemList>(browser);
    if (list != nullptr && list->callbacks.itemNotification != nullptr) {
        DispatchScope const scope;
        list->callbacks.itemNotification(browser, item, message);
    }
}

void SortRows(ControlRef browser, DataBrowserItemID container) {
    ItemList* list = FindAs<ItemList>(browser);
    if (list == nullptr || list->sortColumn == 0 || list->isBeingSorted) {
        return;
    }
    SortScope const scope(browser, *list);
    Items waiting = {container};
    while (!waiting.empty()) {
        DataBrowserItemID const next = waiting.back();
        waiting.pop_back();
        Items const* const children = ChildrenOf(browser, next);
        if (children == nullptr) {
            continue;
        }
        Items const before = *children;
        Items sorted = Sorted(before, browser, *list);
        list = FindAs<ItemList>(browser);
        if (list == nullptr) {
            return;
        }
        // An owner that changed the rows while it compared them has the last word.
        if (Items const* const after = ChildrenOf(browser, next);
            after != nullptr && *after == before) {
            list->rows[next].children = std::move(sorted);
            waiting.insert(waiting.end(), before.begin(), before.end());
        }
    }
}

void DropUnlisted(ItemList& list) {
    list.selection.RemoveIf([&](DataBrowserItemID item) { return !IsListed(list, item); });
}

}  // namespace platform

OSStatus SetDataBrowserItemDataText(DataBrowserItemDataRef itemData, CFStringRef text) {
    OpaqueItemData* const data = platform::Asked(itemData);
    if (data == nullptr || text == nullptr) {
        return paramErr;
    }
    data->text = CFRef<CFStringRef>(CFStringCreateCopy(nullptr, text));
    return data->text ? noErr : memFullErr;
}

OSStatus SetDataBrowserItemDataBooleanValue(DataBrowserItemDataRef itemData, bool value) {
    OpaqueItemData* const data = platform::Asked(itemData);
    if (data == nullptr) {
        return paramErr;
    }
    data->truth = value;
    return noErr;
}
