// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

namespace platform {

// A reference is a key and, in its lowest bits, a tag that tells the kinds of references apart. The
// key holds a place in a table and how often that place was given away before.
using HandleKey = std::uintptr_t;
constexpr unsigned kTagBits = 4;
constexpr HandleKey kTagMask = (1U << kTagBits) - 1;
constexpr unsigned kGenerationShift = 32;

enum ReferenceTag : HandleKey {
    kWindowTag = 1,
    kControlTag,
    kEventTargetTag,
    kMenuTag,
    kPortTag,
    kEventHandlerTag,
    kEventTag,
    kTimerTag,
    kNibTag,
    kContextTag,
    kBehindLastTag
};
static_assert(kBehindLastTag <= kTagMask + 1);

// A type of references says its tag beside what it refers to.
template <typename Ref>
constexpr HandleKey kTagOf = 0;

template <typename Ref>
Ref MakeRef(HandleKey key) {
    static_assert(kTagOf<Ref> != 0);
    return reinterpret_cast<Ref>(key | kTagOf<Ref>);
}
// 0 for what is no such reference.
template <typename Ref>
HandleKey KeyOf(Ref ref) {
    static_assert(kTagOf<Ref> != 0);
    auto const bits = reinterpret_cast<HandleKey>(ref);
    return (bits & kTagMask) == kTagOf<Ref> ? bits & ~kTagMask : 0;
}

// Which keys stand for living objects. Owns none of them.
template <typename Object>
class HandleTable {
  public:
    HandleKey Add(Object* object) {  // may throw
        if (mFree.capacity() <= mSlots.size()) {
            mFree.reserve(2 * mSlots.size() + 4);  // so that a removal can't fail
        }
        if (mFree.empty()) {
            mSlots.push_back({1, nullptr});
            mFree.push_back(static_cast<std::uint32_t>(mSlots.size() - 1));
        }
        std::uint32_t const place = mFree.back();
        mFree.pop_back();
        mSlots[place].object = object;
        return (HandleKey{mSlots[place].generation} << kGenerationShift) |
               (HandleKey{place} << kTagBits);
    }
    Object* Find(HandleKey key) const {  // null for none
        Slot const* const slot = SlotOf(key);
        return slot == nullptr ? nullptr : slot->object;
    }
    void Remove(HandleKey key) {
        if (Slot const* const found = SlotOf(key); found != nullptr) {
            auto const place = static_cast<std::size_t>(found - mSlots.data());
            mSlots[place].object = nullptr;
            // A place that would begin anew is given away no more.
            if (++mSlots[place].generation != 0) {
                mFree.push_back(static_cast<std::uint32_t>(place));
            }
        }
    }

  private:
    struct Slot {
        std::uint32_t generation;
        Object* object;
    };

    Slot const* SlotOf(HandleKey key) const {
        auto const place = static_cast<std::uint32_t>(key) >> kTagBits;
        return place < mSlots.size() && mSlots[place].generation == key >> kGenerationShift
                   ? &mSlots[place]
                   : nullptr;
    }

    std::vector<Slot> mSlots;
    std::vector<std::uint32_t> mFree;
};

}  // namespace platform
