// SPDX-License-Identifier: Apache-2.0
#include "platform/MemoryManager.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "platform/internal/CFRuntime.h"

namespace platform {
namespace {

// A handle points to the first field, so the block can be had back from it.
struct MemoryBlock {
    char* data = nullptr;  // owned
    long size = 0;
};

MemoryBlock* BlockOf(Handle handle) {
    return reinterpret_cast<MemoryBlock*>(handle);
}

}  // namespace
}  // namespace platform

using platform::BlockOf;

Handle NewHandle(long size) {
    if (size < 0) {
        return nullptr;
    }
    auto* block = platform::NewObject<platform::MemoryBlock>();
    if (block == nullptr) {
        return nullptr;
    }
    Handle const handle = &block->data;
    if (SetHandleSize(handle, size) != noErr) {
        DisposeHandle(handle);
        return nullptr;
    }
    return handle;
}

void DisposeHandle(Handle handle) {
    if (handle != nullptr) {
        std::free(*handle);
        platform::DeleteObject(BlockOf(handle));
    }
}

long GetHandleSize(Handle handle) {
    return handle == nullptr ? 0 : BlockOf(handle)->size;
}

OSErr SetHandleSize(Handle handle, long size) {
    if (handle == nullptr || size < 0) {
        return paramErr;
    }
    auto* block = BlockOf(handle);
    auto* data =
        static_cast<char*>(std::realloc(block->data, static_cast<std::size_t>(std::max(size, 1L))));
    if (data == nullptr) {
        return memFullErr;
    }
    if (size > block->size) {
        std::memset(data + block->size, 0, static_cast<std::size_t>(size - block->size));
    }
    block->data = data;
    block->size = size;
    return noErr;
}
