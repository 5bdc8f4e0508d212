// SPDX-License-Identifier: Apache-2.0
#include "twoway/RandomFileName.h"

#include "platform/CFRef.h"

CFStringRef CreateRandomFileName(char const* prefix, char* out) {
    CFRef<CFUUIDRef> const uuid(CFUUIDCreate(nullptr));
    CFRef<CFStringRef> const number(CFUUIDCreateString(nullptr, uuid));
    CFRef<CFMutableStringRef> name(number ? CFStringCreateMutable(nullptr, 0) : nullptr);
    CFStringAppendCString(name, prefix, kCFStringEncodingUTF8);
    CFStringAppend(name, number);
    if (out != nullptr) {
        CFStringGetCString(name, out, kRandomFileNameSize, kCFStringEncodingUTF8);
    }
    return name.Release();
}
