// SPDX-License-Identifier: Apache-2.0
#include "platform/EthernetInterfaces.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <mutex>
#include <sstream>
#include <string_view>

#include "platform/EthernetTesting.h"
#include "platform/internal/CFRuntime.h"

namespace platform {
namespace {

constexpr char kInterfacesFolder[] = "/sys/class/net";
constexpr char kRoutesFile[] = "/proc/net/route";
constexpr std::size_t kAddressSize = 6;
constexpr unsigned kRouteIsUp = 1;
constexpr char kClassKey[] = "IOProviderClass";
constexpr std::string_view kInterfaceClass = "IOEthernetInterface";

enum class Kind { kIterator, kService, kController };

struct RegistryObject {
    Kind kind = Kind::kIterator;
    std::vector<EthernetInterface> interfaces;  // one, but for an iterator: what is left to visit
};

std::mutex gMutex;
EthernetRegistry const* gReplacement = nullptr;  // borrowed
io_object_t gLastObject = IO_OBJECT_NULL;

// Never destroyed: what another static object still holds at the end can be released.
std::map<io_object_t, RegistryObject>& Objects() {
    static auto* const objects = new std::map<io_object_t, RegistryObject>();
    return *objects;
}

// The caller holds the lock, here and below.
io_object_t AddObject(RegistryObject object) {
    if (!CreationAllowed()) {
        return IO_OBJECT_NULL;
    }
    Objects().emplace(++gLastObject, std::move(object));
    CountLiveObjects(1);
    return gLastObject;
}

RegistryObject* FindObject(io_object_t object, Kind kind) {
    auto const found = Objects().find(object);
    return found != Objects().end() && found->second.kind == kind ? &found->second : nullptr;
}

// "02:42:ac:11:00:02"; empty for another form or nothing but zeros.
std::vector<std::uint8_t> ParseAddress(std::string const& text) {
    unsigned parts[kAddressSize] = {};
    int end = 0;
    int const count = std::sscanf(text.c_str(), "%2x:%2x:%2x:%2x:%2x:%2x%n", &parts[0], &parts[1],
                                  &parts[2], &parts[3], &parts[4], &parts[5], &end);
    if (count != static_cast<int>(kAddressSize) || end != static_cast<int>(text.size()) ||
        std::ranges::all_of(parts, [](unsigned part) { return part == 0; })) {
        return {};
    }
    return {std::begin(parts), std::end(parts)};
}

std::string FirstWord(std::filesystem::path const& file) {
    std::string word;
    std::ifstream(file) >> word;
    return word;
}

// The interface of the default route with the least metric; empty without one.
std::string DefaultRouteInterface(std::string const& routesFile) {
    std::ifstream file(routesFile);
    std::string name;
    unsigned long least = ULONG_MAX;
    for (std::string line; std::getline(file, line);) {
        std::istringstream fields(line);
        std::string candidate;
        std::string destination;
        std::string gateway;
        std::string mask;
        unsigned flags = 0;
        unsigned long references = 0;
        unsigned long uses = 0;
        unsigned long metric = 0;
        fields >> candidate >> destination >> gateway >> std::hex >> flags >> std::dec >>
            references >> uses >> metric >> mask;
        bool const isDefault = !fields.fail() && destination == "00000000" && mask == "00000000" &&
                               (flags & kRouteIsUp) != 0;
        if (isDefault && metric < least) {
            name = candidate;
            least = metric;
        }
    }
    return name;
}

struct NumberedInterface {
    int number;
    std::string name;
    std::vector<std::uint8_t> address;
};

std::vector<NumberedInterface> ListInterfaces(std::string const& folder) {
    std::vector<NumberedInterface> list;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        auto const& path = entry->path();
        auto address = ParseAddress(FirstWord(path / "address"));
        if (path.filename() != "lo" && !address.empty()) {
            list.push_back({std::atoi(FirstWord(path / "ifindex").c_str()), path.filename(),
                            std::move(address)});
        }
    }
    std::ranges::sort(list, {}, &NumberedInterface::number);
    return list;
}

bool WantsPrimary(CFDictionaryRef matching) {
    auto const* const properties =
        static_cast<CFDictionaryRef>(CFDictionaryGetValue(matching, CFSTR("IOPropertyMatch")));
    if (CFGetTypeID(properties) != CFDictionaryGetTypeID()) {
        return false;
    }
    CFTypeRef const primary = CFDictionaryGetValue(properties, CFSTR("IOPrimaryInterface"));
    return CFEqual(primary, kCFBooleanTrue);
}

bool MatchesInterfaces(CFDictionaryRef matching) {
    return CFEqual(CFDictionaryGetValue(matching, CFStringConstant(kClassKey)),
                   CFStringConstant(kInterfaceClass.data()));
}

kern_return_t MakeIterator(CFDictionaryRef matching, io_iterator_t* iterator) {
    std::lock_guard const lock(gMutex);
    EthernetRegistry registry = gReplacement != nullptr
                                    ? *gReplacement
                                    : ReadEthernetRegistry(kInterfacesFolder, kRoutesFile);
    if (registry.servicesStatus != KERN_SUCCESS) {
        return registry.servicesStatus;
    }
    RegistryObject object;
    bool const onlyPrimary = WantsPrimary(matching);
    bool const areWanted = MatchesInterfaces(matching);
    std::ranges::copy_if(registry.interfaces, std::back_inserter(object.interfaces),
                         [&](EthernetInterface const& interface) {
                             return areWanted && (interface.isPrimary || !onlyPrimary);
                         });
    *iterator = AddObject(std::move(object));
    return *iterator == IO_OBJECT_NULL ? KERN_NO_SPACE : KERN_SUCCESS;
}

io_object_t TakeNext(io_iterator_t iterator) {
    std::lock_guard const lock(gMutex);
    RegistryObject* const walk = FindObject(iterator, Kind::kIterator);
    if (walk == nullptr || walk->interfaces.empty()) {
        return IO_OBJECT_NULL;
    }
    io_object_t const service = AddObject({Kind::kService, {walk->interfaces.front()}});
    walk->interfaces.erase(walk->interfaces.begin());
    return service;
}

kern_return_t MakeParent(io_registry_entry_t entry, io_registry_entry_t* parent) {
    std::lock_guard const lock(gMutex);
    RegistryObject const* const service = FindObject(entry, Kind::kService);
    if (service == nullptr) {
        return KERN_INVALID_ARGUMENT;
    }
    EthernetInterface const& interface = service->interfaces.front();
    if (interface.parentStatus != KERN_SUCCESS) {
        return interface.parentStatus;
    }
    *parent = AddObject({Kind::kController, {interface}});
    return *parent == IO_OBJECT_NULL ? KERN_NO_SPACE : KERN_SUCCESS;
}

}  // namespace
}  // namespace platform

using platform::WithoutExceptions;

void ReplaceEthernetRegistry(EthernetRegistry const* registry) {
    std::lock_guard const lock(platform::gMutex);
    platform::gReplacement = registry;
}

EthernetRegistry ReadEthernetRegistry(std::string const& interfacesFolder,
                                      std::string const& routesFile) {
    auto const list = platform::ListInterfaces(interfacesFolder);
    auto const route = std::ranges::find(list, platform::DefaultRouteInterface(routesFile),
                                         &platform::NumberedInterface::name);
    auto const primary = route == list.end() ? list.begin() : route;
    EthernetRegistry registry;
    for (auto each = list.begin(); each != list.end(); ++each) {
        registry.interfaces.push_back({each->address, each == primary});
    }
    return registry;
}

CFMutableDictionaryRef IOServiceMatching(char const* className) {
    CFMutableDictionaryRef const matching = CFDictionaryCreateMutable(nullptr, 0);
    CFStringRef const name = CFStringCreateWithCString(nullptr, className, kCFStringEncodingUTF8);
    CFDictionarySetValue(matching, CFStringConstant(platform::kClassKey), name);
    bool const isWhole = name != nullptr && CFDictionaryGetCount(matching) == 1;
    CFRelease(name);
    if (!isWhole) {
        CFRelease(matching);
        return nullptr;
    }
    return matching;
}

kern_return_t IOServiceGetMatchingServices(CFDictionaryRef matching, io_iterator_t* iterator) {
    kern_return_t status = KERN_INVALID_ARGUMENT;
    if (iterator != nullptr) {
        *iterator = IO_OBJECT_NULL;
        status =
            matching == nullptr ? KERN_INVALID_ARGUMENT : WithoutExceptions(KERN_NO_SPACE, [&] {
                return platform::MakeIterator(matching, iterator);
            });
    }
    CFRelease(matching);
    return status;
}

io_object_t IOIteratorNext(io_iterator_t iterator) {
    return WithoutExceptions(IO_OBJECT_NULL, [&] { return platform::TakeNext(iterator); });
}

kern_return_t IORegistryEntryGetParentEntry(io_registry_entry_t entry, char const* plane,
                                            io_registry_entry_t* parent) {
    if (parent == nullptr) {
        return KERN_INVALID_ARGUMENT;
    }
    *parent = IO_OBJECT_NULL;
    if (plane == nullptr || std::string_view(plane) != "IOService") {
        return KERN_INVALID_ARGUMENT;
    }
    return WithoutExceptions(KERN_NO_SPACE, [&] { return platform::MakeParent(entry, parent); });
}

CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t entry, CFStringRef key) {
    std::lock_guard const lock(platform::gMutex);
    auto const* const controller = platform::FindObject(entry, platform::Kind::kController);
    if (controller == nullptr || !CFEqual(key, CFSTR("IOMACAddress"))) {
        return nullptr;
    }
    auto const& address = controller->interfaces.front().address;
    return address.empty()
               ? nullptr
               : CFDataCreate(nullptr, address.data(), static_cast<CFIndex>(address.size()));
}

kern_return_t IOObjectRelease(io_object_t object) {
    std::lock_guard const lock(platform::gMutex);
    if (platform::Objects().erase(object) != 0) {
        platform::CountLiveObjects(-1);
    } else if (object != IO_OBJECT_NULL) {
        return KERN_INVALID_ARGUMENT;
    }
    return KERN_SUCCESS;
}
