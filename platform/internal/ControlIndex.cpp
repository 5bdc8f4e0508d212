// SPDX-License-Identifier: Apache-2.0
#include "platform/internal/ControlIndex.h"

#include <iterator>
#include <utility>

#include "platform/internal/ControlNode.h"

namespace platform {
namespace {

std::uint64_t Packed(ControlID id) {
    return (std::uint64_t{id.signature} << 32) | static_cast<std::uint32_t>(id.id);
}
std::uint64_t Packed(Rect const& rect) {
    auto const bits = [](std::int16_t edge) -> std::uint64_t {
        return static_cast<std::uint16_t>(edge);
    };
    return bits(rect.top) << 48 | bits(rect.left) << 32 | bits(rect.bottom) << 16 |
           bits(rect.right);
}

bool IsIdentifier(ControlID id) {
    return id.signature != 0 || id.id != 0;
}

}  // namespace

// What goes is mostly what came last.
ControlIndex::Entries::iterator ControlIndex::Find(Entries& entries, std::uint64_t key,
                                                   ControlNode const& node) {
    auto const [first, last] = entries.equal_range(key);
    for (auto at = last; at != first;) {
        if ((--at)->second == &node) {
            return at;
        }
    }
    return entries.end();
}

void ControlIndex::Erase(Entries& entries, std::uint64_t key, ControlNode const& node) {
    if (auto const found = Find(entries, key, node); found != entries.end()) {
        entries.erase(found);
    }
}

ControlNode* ControlIndex::Last(Entries const& entries, std::uint64_t key) {
    auto const behind = entries.upper_bound(key);
    return behind == entries.begin() || std::prev(behind)->first != key ? nullptr
                                                                        : std::prev(behind)->second;
}

void ControlIndex::Add(ControlNode& node) {
    if (IsIdentifier(node.id)) {
        mByID.emplace(Packed(node.id), &node);
    }
    if (IsPane(node)) {
        mPanesByBounds.emplace(Packed(node.bounds), &node);
    }
}

void ControlIndex::Remove(ControlNode& node) {
    Erase(mByID, Packed(node.id), node);
    Erase(mPanesByBounds, Packed(node.bounds), node);
}

void ControlIndex::Join(ControlIndex& other) {
    mByID.merge(other.mByID);
    mPanesByBounds.merge(other.mPanesByBounds);
}

void ControlIndex::Rename(ControlNode& node, ControlID id) {
    Entries entry;
    if (IsIdentifier(id)) {
        entry.emplace(Packed(id), &node);
    }
    Erase(mByID, Packed(node.id), node);
    mByID.merge(entry);
}

void ControlIndex::Replace(ControlNode& pane, Rect const& bounds) {
    if (auto const found = Find(mPanesByBounds, Packed(pane.bounds), pane);
        found != mPanesByBounds.end()) {
        auto entry = mPanesByBounds.extract(found);
        entry.key() = Packed(bounds);
        mPanesByBounds.insert(std::move(entry));
    }
}

ControlNode* ControlIndex::WithID(ControlID id) const {
    return Last(mByID, Packed(id));
}

ControlNode* ControlIndex::PaneAt(Rect const& bounds) const {
    return Last(mPanesByBounds, Packed(bounds));
}

}  // namespace platform
