// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <cstdio>

#include "PPDX/PPDObjects/Controls/PPDXUserAuthLib/PPDXUserAuthLib.h"
#include "platform/CFRef.h"
#include "platform/EthernetInterfaces.h"

namespace {

std::array<unsigned char, kMACAddressSize> gAddress{};

void Report(char const* sentence) {
    std::printf("%s\n", sentence);
}

void ReportStatus(char const* operation, kern_return_t status) {
    std::printf("%s returned 0x%08x\n", operation, static_cast<unsigned>(status));
}

// Gives a reference to a registry object back.
class ObjectGuard {
  public:
    explicit ObjectGuard(io_object_t object) : mObject(object) {}
    ObjectGuard(ObjectGuard const&) = delete;
    ObjectGuard& operator=(ObjectGuard const&) = delete;
    ~ObjectGuard() { IOObjectRelease(mObject); }

  private:
    io_object_t mObject;
};

// Without memory for the property all interfaces match.
void AskForThePrimaryOne(CFMutableDictionaryRef matching) {
    CFRef<CFMutableDictionaryRef> const properties(CFDictionaryCreateMutable(nullptr, 0));
    if (!properties) {
        Report("CFDictionaryCreateMutable returned a NULL dictionary.");
        return;
    }
    CFDictionarySetValue(properties, CFSTR("IOPrimaryInterface"), kCFBooleanTrue);
    CFDictionarySetValue(matching, CFSTR("IOPropertyMatch"), properties.Get());
}

kern_return_t FindEthernetInterfaces(io_iterator_t* interfaces) {
    CFMutableDictionaryRef const matching = IOServiceMatching("IOEthernetInterface");
    if (matching == nullptr) {
        Report("IOServiceMatching returned a NULL dictionary.");
    } else {
        AskForThePrimaryOne(matching);
    }
    kern_return_t const status = IOServiceGetMatchingServices(matching, interfaces);
    if (status != KERN_SUCCESS) {
        ReportStatus("IOServiceGetMatchingServices", status);
    }
    return status;
}

kern_return_t TakeAddress(io_service_t service) {
    io_object_t controller = IO_OBJECT_NULL;
    kern_return_t const status = IORegistryEntryGetParentEntry(service, "IOService", &controller);
    if (status != KERN_SUCCESS) {
        ReportStatus("IORegistryEntryGetParentEntry", status);
        return status;
    }
    ObjectGuard const guard(controller);
    CFRef<CFTypeRef> const address(
        IORegistryEntryCreateCFProperty(controller, CFSTR("IOMACAddress")));
    if (address && CFGetTypeID(address) == CFDataGetTypeID()) {
        auto const data = static_cast<CFDataRef>(address.Get());
        auto const length = static_cast<std::size_t>(CFDataGetLength(data));
        std::copy_n(CFDataGetBytePtr(data), std::min(length, gAddress.size()), gAddress.begin());
    }
    return status;
}

}  // namespace

int goGetMACAddress(unsigned char** mac) {
    gAddress.fill(0);
    io_iterator_t interfaces = IO_OBJECT_NULL;
    kern_return_t status = FindEthernetInterfaces(&interfaces);
    if (status != KERN_SUCCESS) {
        ReportStatus("FindEthernetInterfaces", status);
        return status;
    }
    ObjectGuard const guard(interfaces);
    status = KERN_FAILURE;
    while (io_object_t const service = IOIteratorNext(interfaces)) {
        ObjectGuard const serviceGuard(service);
        status = TakeAddress(service);
    }
    if (mac != nullptr) {
        *mac = gAddress.data();
    }
    return status;
}
