// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>

#include "platform/Controls.h"

namespace platform {

struct ControlNode;

// A window's controls by their identifiers, and its panes by their bounds; of several with the same
// the last one entered counts. Owns none.
class ControlIndex {
  public:
    // Throws std::bad_alloc, on which one of a pane's two entries may stand: Remove takes it out.
    void Add(ControlNode& node);
    void Remove(ControlNode& node);
    // Takes all of another's entries behind its own. Can't fail.
    void Join(ControlIndex& other);
    // The control, entered here, gets another identifier; throws std::bad_alloc and changes nothing
    // then.
    void Rename(ControlNode& node, ControlID id);
    // The pane, entered here, gets other bounds. Can't fail.
    void Replace(ControlNode& pane, Rect const& bounds);

    // Null for none.
    ControlNode* WithID(ControlID id) const;
    ControlNode* PaneAt(Rect const& bounds) const;

  private:
    // Equal keys stand in the order in which they were entered.
    using Entries = std::multimap<std::uint64_t, ControlNode*>;

    static Entries::iterator Find(Entries& entries, std::uint64_t key, ControlNode const& node);
    static void Erase(Entries& entries, std::uint64_t key, ControlNode const& node);
    static ControlNode* Last(Entries const& entries, std::uint64_t key);

    Entries mByID;
    Entries mPanesByBounds;
};

}  // namespace platform
