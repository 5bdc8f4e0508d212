// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/CoreFoundation.h"
#include "platform/MacTypes.h"
#include "platform/WindowTypes.h"

// Lists: controls of kind "list". An item is a number that its owner chooses, each once in a list;
// what its cells show is asked of the owner when somebody looks. Item 0 stands for the list itself.
// What the logic changes notifies nobody: only the user's hands do. One thread.

using DataBrowserItemID = std::uint32_t;
using DataBrowserPropertyID = std::uint32_t;  // a column's code, or a small number
using DataBrowserItemNotification = std::uint32_t;
struct OpaqueItemData;
using DataBrowserItemDataRef = OpaqueItemData*;

constexpr DataBrowserItemID kDataBrowserNoItem = 0;
constexpr DataBrowserPropertyID kDataBrowserItemIsContainerProperty = 4;
constexpr DataBrowserPropertyID kDataBrowserItemNoProperty = 0;
constexpr DataBrowserItemNotification kDataBrowserItemSelected = 5;
constexpr DataBrowserItemNotification kDataBrowserContainerOpened = 8;
constexpr OSStatus errDataBrowserItemNotFound = -4971;
constexpr OSStatus errDataBrowserPropertyNotFound = -4972;
constexpr OSStatus errDataBrowserPropertyNotSupported = -4979;

// Fills in `itemData` (set false), or would take what the user changed (set true).
using DataBrowserItemDataProc = OSStatus (*)(ControlRef browser, DataBrowserItemID item,
                                             DataBrowserPropertyID property,
                                             DataBrowserItemDataRef itemData, bool set);
using DataBrowserItemNotificationProc = void (*)(ControlRef browser, DataBrowserItemID item,
                                                 DataBrowserItemNotification message);
// Whether the first comes before the second.
using DataBrowserItemCompareProc = bool (*)(ControlRef browser, DataBrowserItemID one,
                                            DataBrowserItemID two, DataBrowserPropertyID property);
struct DataBrowserCallbacks {
    std::uint32_t version;
    DataBrowserItemDataProc itemData;
    DataBrowserItemNotificationProc itemNotification;
    DataBrowserItemCompareProc itemCompare;  // null: texts are compared, unit by unit
};
constexpr DataBrowserItemDataProc NewDataBrowserItemDataUPP(DataBrowserItemDataProc routine) {
    return routine;
}
constexpr DataBrowserItemNotificationProc NewDataBrowserItemNotificationUPP(
    DataBrowserItemNotificationProc routine) {
    return routine;
}
constexpr DataBrowserItemCompareProc NewDataBrowserItemCompareUPP(
    DataBrowserItemCompareProc routine) {
    return routine;
}

// Clears the routines; paramErr for null.
OSStatus InitDataBrowserCallbacks(DataBrowserCallbacks* callbacks);
OSStatus SetDataBrowserCallbacks(ControlRef browser, DataBrowserCallbacks const* callbacks);
// The column in which containers are opened; one of the list's columns.
OSStatus SetDataBrowserListViewDisclosureColumn(ControlRef browser, DataBrowserPropertyID column,
                                                bool expandable);
OSStatus SetAutomaticControlDragTrackingEnabledForWindow(WindowRef window, bool enabled);

// Behind the last one in `container`, 0 for the top; an identifier that the list has already is
// passed over. Null `items` stands for 1 to `count`. A list that was sorted stays so.
OSStatus AddDataBrowserItems(ControlRef browser, DataBrowserItemID container, std::uint32_t count,
                             DataBrowserItemID const* items, DataBrowserPropertyID preSort);
// With what lies below them; those that aren't there are passed over. Null `items`: everything in
// `container`.
OSStatus RemoveDataBrowserItems(ControlRef browser, DataBrowserItemID container,
                                std::uint32_t count, DataBrowserItemID const* items,
                                DataBrowserPropertyID preSort);
// Their cells are asked again. Null `items`: everything.
OSStatus UpdateDataBrowserItems(ControlRef browser, DataBrowserItemID container,
                                std::uint32_t count, DataBrowserItemID const* items,
                                DataBrowserPropertyID preSort, DataBrowserPropertyID property);

constexpr std::uint32_t kDataBrowserItemAnyState = 0xFFFFFFFFU;
constexpr std::uint32_t kDataBrowserItemIsSelected = 1;
// How many items below `container` have the state.
OSStatus GetDataBrowserItemCount(ControlRef browser, DataBrowserItemID container, bool recurse,
                                 std::uint32_t state, std::uint32_t* count);
// The same items in display order, last first: at most `room` of them into `items`.
OSStatus GetDataBrowserItems(ControlRef browser, DataBrowserItemID container, bool recurse,
                             std::uint32_t state, DataBrowserItemID* items, std::uint32_t room);

enum DataBrowserSetOption : std::uint32_t {
    kDataBrowserItemsAdd = 0,
    kDataBrowserItemsAssign = 1,
    kDataBrowserItemsToggle = 2,
    kDataBrowserItemsRemove = 3
};
// The item selected first and last; both 0 without a selection.
OSStatus GetDataBrowserSelectionAnchor(ControlRef browser, DataBrowserItemID* first,
                                       DataBrowserItemID* last);
// Items that the list doesn't have are passed over.
OSStatus SetDataBrowserSelectedItems(ControlRef browser, std::uint32_t count,
                                     DataBrowserItemID const* items,
                                     DataBrowserSetOption operation);
bool IsDataBrowserItemSelected(ControlRef browser, DataBrowserItemID item);

// Inside the routine for item data alone; the text is copied.
OSStatus SetDataBrowserItemDataText(DataBrowserItemDataRef itemData, CFStringRef text);
OSStatus SetDataBrowserItemDataBooleanValue(DataBrowserItemDataRef itemData, bool value);
