// SPDX-License-Identifier: Apache-2.0
#include "tests/PPDX/PPDObjects/Controls/ControlHelpers.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <utility>

#include "PPDX/PPDObjects/Controls/ListFromJP.h"
#include "ZUBUtils/PPDUtils/CString.h"

namespace {

std::vector<std::string> gReportedChanges;

CString* NewText(char const* text) {
    return text != nullptr ? new CString(text) : nullptr;
}

}  // namespace

bool CheckForChangeInListFromJP(char const* keyword, char const* value) {
    gReportedChanges.push_back(std::string(keyword) + "=" + (value != nullptr ? value : ""));
    return true;
}

std::vector<std::string> TakeReportedChanges() {
    return std::exchange(gReportedChanges, {});
}

PointerList Words(std::initializer_list<char const*> words) {
    PointerList list;
    for (char const* const word : words) {
        list.PushBack(new CString(word));
    }
    return list;
}

unsigned char* Code(std::string const& text) {
    auto* const block = static_cast<unsigned char*>(std::malloc(text.size()));
    std::memcpy(block, text.data(), text.size());
    return block;
}

_PopupItem* NewItem(ItemText const& text) {
    auto* const item = new _PopupItem;
    item->mKeyword = NewText(text.keyword);
    item->mLocalName = text.name != nullptr ? Str(text.name).Release() : nullptr;
    if (text.code != nullptr) {
        item->mPSCode = Code(text.code);
        item->mPSLength = static_cast<std::int32_t>(std::strlen(text.code));
    }
    return item;
}

PointerList NewItems(std::initializer_list<ItemText> texts) {
    PointerList items;
    for (ItemText const& text : texts) {
        items.PushBack(NewItem(text));
    }
    return items;
}

std::unique_ptr<PPDXPopupControl> NewPopup(char const* keyword,
                                           std::initializer_list<ItemText> items,
                                           PopupTraits const& traits) {
    PointerList list = NewItems(items);
    PointerList flags;
    return std::make_unique<PPDXPopupControl>(keyword, CFSTR("Popup"), flags, true, traits.multiple,
                                              traits.installable, list,
                                              NewText(traits.defaultKeyword), traits.constraints);
}

std::string Emitted(PPDXControl& control) {
    long const length = control.PostScript(nullptr);
    auto const block = std::make_unique<unsigned char[]>(static_cast<std::size_t>(length));
    EXPECT_EQ(control.PostScript(block.get()), length);
    return {reinterpret_cast<char const*>(block.get()), static_cast<std::size_t>(length)};
}
