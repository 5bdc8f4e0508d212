// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/CFRef.h"
#include "platform/internal/ControlNode.h"

// The rows of lists. What asks the list's owner takes a reference: the owner may change the list or
// end it while it answers. All may throw std::bad_alloc.

namespace platform {

using Items = std::vector<DataBrowserItemID>;

// In display order; what lies in shut containers is left out.
Items ListedRows(ItemList const& list);
bool IsListed(ItemList const& list, DataBrowserItemID item);

bool IsContainer(ControlRef browser, DataBrowserItemID item);
// The empty text where the owner gives none.
CFRef<CFStringRef> CellText(ControlRef browser, DataBrowserItemID item,
                            DataBrowserPropertyID column);
void Notify(ControlRef browser, DataBrowserItemID item, DataBrowserItemNotification message);
// Everything below `container`, by the list's column and direction.
void SortRows(ControlRef browser, DataBrowserItemID container);
// Drops what no longer is listed from the selection.
void DropUnlisted(ItemList& list);

}  // namespace platform
