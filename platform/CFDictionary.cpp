// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreFoundation.h"

#include <algorithm>

#include "platform/internal/CFObjects.h"

namespace platform {

constinit CFClass const kDictionaryClass = {
    kDictionaryTypeID, DestroyObject<__CFDictionary>,
    [](CFObject const* leftObject, CFObject const* rightObject) {
        auto const* left = static_cast<CFDictionaryRef>(leftObject);
        auto const* right = static_cast<CFDictionaryRef>(rightObject);
        return left->entries.size() == right->entries.size() &&
               std::all_of(left->entries.begin(), left->entries.end(), [&](auto const& entry) {
                   return CFEqual(entry.value, CFDictionaryGetValue(right, entry.key));
               });
    }};

}  // namespace platform

using platform::NewObject;

CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef, CFIndex) {
    return NewObject<__CFDictionary>();
}

CFMutableDictionaryRef CFDictionaryCreateMutableCopy(CFAllocatorRef, CFIndex,
                                                     CFDictionaryRef dictionary) {
    CFRef<CFMutableDictionaryRef> copy(NewObject<__CFDictionary>());
    if (copy.Get() == nullptr || dictionary == nullptr) {
        return copy.Release();
    }
    return platform::WithoutExceptions<CFMutableDictionaryRef>(nullptr, [&] {
        copy.Get()->entries = dictionary->entries;
        copy.Get()->positions = dictionary->positions;
        return copy.Release();
    });
}

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary) {
    return dictionary == nullptr ? 0 : static_cast<CFIndex>(dictionary->entries.size());
}

CFTypeRef CFDictionaryGetValue(CFDictionaryRef dictionary, CFStringRef key) {
    if (dictionary == nullptr || key == nullptr) {
        return nullptr;
    }
    auto const found = dictionary->positions.find(platform::TextOf(key));
    return found == dictionary->positions.end() ? nullptr
                                                : dictionary->entries[found->second].value.Get();
}

void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, CFTypeRef* keys, CFTypeRef* values) {
    if (dictionary == nullptr) {
        return;
    }
    for (auto const& entry : dictionary->entries) {
        if (keys != nullptr) {
            *keys++ = entry.key;
        }
        if (values != nullptr) {
            *values++ = entry.value;
        }
    }
}

void CFDictionarySetValue(CFMutableDictionaryRef dictionary, CFStringRef key, CFTypeRef value) {
    if (dictionary == nullptr || key == nullptr || value == nullptr) {
        return;
    }
    auto retained = CFRef<CFTypeRef>::Retained(value);
    auto const found = dictionary->positions.find(platform::TextOf(key));
    if (found != dictionary->positions.end()) {
        dictionary->entries[found->second].value = std::move(retained);
        return;
    }
    CFRef<CFStringRef> copy(CFStringCreateCopy(nullptr, key));
    if (!copy) {
        return;
    }
    platform::WithoutExceptions(false, [&] {
        auto const text = platform::TextOf(copy);
        platform::ReserveOneMore(dictionary->entries);
        dictionary->positions.emplace(text, dictionary->entries.size());
        dictionary->entries.push_back({std::move(copy), std::move(retained)});
        return true;
    });
}

void CFDictionaryRemoveValue(CFMutableDictionaryRef dictionary, CFStringRef key) {
    if (dictionary == nullptr) {
        return;
    }
    auto const found = dictionary->positions.find(platform::TextOf(key));
    if (key == nullptr || found == dictionary->positions.end()) {
        return;
    }
    auto const position = found->second;
    auto const removed = dictionary->entries[position];
    dictionary->positions.erase(found);
    dictionary->entries.erase(dictionary->entries.begin() + static_cast<std::ptrdiff_t>(position));
    for (auto& [text, index] : dictionary->positions) {
        index -= index > position ? 1 : 0;
    }
}
