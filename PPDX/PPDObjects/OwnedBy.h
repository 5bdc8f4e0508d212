// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <new>

// Puts a new object into a list whose owner takes it over, and gives it back borrowed. Throws
// std::bad_alloc, with the object gone, for a null one and where the list has no memory.
template <typename List, typename Object>
Object* AddOwned(List& list, std::unique_ptr<Object> object) {
    if (object == nullptr || !list.Add(object.get())) {
        throw std::bad_alloc();
    }
    return object.release();
}

// The same for a bare list of pointers.
template <typename List, typename Object>
Object* PushOwned(List& list, std::unique_ptr<Object> object) {
    if (object == nullptr || !list.PushBack(object.get())) {
        throw std::bad_alloc();
    }
    return object.release();
}
