// SPDX-License-Identifier: Apache-2.0
#include "platform/PlugInHost.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <string>

#include "platform/internal/CFRuntime.h"

namespace platform {
namespace {

std::map<std::string, long>& InstanceCounts() {
    static auto& sCounts = *new std::map<std::string, long>;
    return sCounts;
}

std::string KeyOf(CFUUIDRef factory) {
    CFUUIDBytes const bytes = CFUUIDGetUUIDBytes(factory);
    return {std::begin(bytes.byte), std::end(bytes.byte)};
}

}  // namespace
}  // namespace platform

using platform::InstanceCounts;
using platform::KeyOf;

void CFPlugInAddInstanceForFactory(CFUUIDRef factory) {
    platform::WithoutExceptions(false, [&] {
        ++InstanceCounts()[KeyOf(factory)];
        return true;
    });
}

void CFPlugInRemoveInstanceForFactory(CFUUIDRef factory) {
    platform::WithoutExceptions(false, [&] {
        auto const found = InstanceCounts().find(KeyOf(factory));
        if (found != InstanceCounts().end() && --found->second == 0) {
            InstanceCounts().erase(found);
        }
        return true;
    });
}

long CFPlugInInstanceCount(CFUUIDRef factory) {
    return platform::WithoutExceptions(0L, [&] {
        auto const found = InstanceCounts().find(KeyOf(factory));
        return found == InstanceCounts().end() ? 0L : found->second;
    });
}
