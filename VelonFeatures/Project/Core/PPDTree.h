// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/CoreFoundation.h"

// The display model of the quick-access list. Plain data: what the pointers lead to belongs to
// whoever fills the tree, and a copy of a tree shares it.

constexpr std::size_t kTreeKeywordSize = 64;  // with the terminator
constexpr std::size_t kTreeGroups = 30;
constexpr std::size_t kTreeItems = 30;  // in each group
constexpr std::size_t kTreeShortcuts = 99;

struct PPDTreeItem {
    CFStringRef mName = nullptr;  // display name, owned
    char mKeyword[kTreeKeywordSize] = {};
};

struct PPDTreeGroup {
    CFStringRef mName = nullptr;  // display name, owned
    char mKeyword[kTreeKeywordSize] = {};
    PPDTreeItem* mItems[kTreeItems] = {};
    std::int32_t mItemCount = 0;
};

struct PPDTreeShortcut {
    CFStringRef mName = nullptr;  // display name, owned; null for one of the printer's record
    char mKeyword[kTreeKeywordSize] = {};
    // (group index + 1) * 100 + item index; 0 until the option is found in a group.
    std::int32_t mItemID = 0;
};

struct PPDTree {
    PPDTreeGroup* mGroups[kTreeGroups] = {};  // in the order of the PPD
    std::int32_t mGroupCount = 0;
    PPDTreeShortcut* mShortcuts[kTreeShortcuts] = {};  // in display order
    std::int32_t mShortcutCount = 0;                   // at most kTreeShortcuts
};
