// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string.h>

#include <cstddef>
#include <memory>
#include <type_traits>

// Secrets leave nothing behind in memory: what held one is overwritten before it is given back.

// Overwrites the bytes with zeros; a compiler never leaves it out, as it may leave out memset.
inline void Wipe(void* bytes, std::size_t size) {
    if (size != 0) {
        explicit_bzero(bytes, size);
    }
}

// Overwrites `object` when this goes: a buffer of the surrounding block, on each way out of it.
template <typename Object>
class WipeAtEnd {
  public:
    static_assert(std::is_trivially_copyable_v<Object>);

    explicit WipeAtEnd(Object& object) : mObject(object) {}
    WipeAtEnd(WipeAtEnd const&) = delete;
    WipeAtEnd& operator=(WipeAtEnd const&) = delete;
    ~WipeAtEnd() { Wipe(&mObject, sizeof(Object)); }

  private:
    Object& mObject;
};

// Overwrites what it takes back. A container that uses it leaves nothing behind when it grows or
// goes; a string's short texts, which lie in the string itself, are not its affair.
template <typename Value>
struct WipingAllocator {
    using value_type = Value;

    WipingAllocator() = default;
    template <typename Other>
    WipingAllocator(WipingAllocator<Other> const&) {}

    Value* allocate(std::size_t count) { return std::allocator<Value>().allocate(count); }
    void deallocate(Value* values, std::size_t count) {
        Wipe(values, count * sizeof(Value));
        std::allocator<Value>().deallocate(values, count);
    }
    template <typename Other>
    bool operator==(WipingAllocator<Other> const&) const {
        return true;
    }
};
