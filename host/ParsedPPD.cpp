// SPDX-License-Identifier: Apache-2.0
#include "host/ParsedPPD.h"

#include "host/HostFiles.h"
#include "platform/CFRef.h"

CFRef<CFArrayRef> ParsedPPD::Names(std::vector<std::string> const& accepted) {
    if (accepted.empty()) {
        return {};
    }
    CFMutableArrayRef const names = CFArrayCreateMutable(nullptr, 0);
    for (std::string const& fragment : accepted) {
        CFRef<CFStringRef> const name(
            CFStringCreateWithCString(nullptr, fragment.c_str(), kCFStringEncodingUTF8));
        CFArrayAppendValue(names, name);
    }
    return CFRef<CFArrayRef>(names);
}

ParsedPPD::ParsedPPD(std::string const& path, _PARSE_OPTIONS_ options,
                     std::vector<std::string> const& accepted)
    : mPPD(new ZUBPPD(HostFiles::URL(path, false).Get(), options, Names(accepted).Get())) {}
