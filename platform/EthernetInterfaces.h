// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/CoreFoundation.h"

// The network interfaces of this machine as the device registry has them: a service for each
// interface, whose parent, the controller, holds the hardware address. An interface is one that
// isn't the loopback and has a hardware address of 6 bytes that aren't all zero. The primary one is
// that of the default route, else the first by number.

using kern_return_t = std::int32_t;
using io_object_t = std::uint32_t;  // a reference; IOObjectRelease gives it back
using io_iterator_t = io_object_t;
using io_service_t = io_object_t;
using io_registry_entry_t = io_object_t;

constexpr io_object_t IO_OBJECT_NULL = 0;
constexpr kern_return_t KERN_SUCCESS = 0;
constexpr kern_return_t KERN_NO_SPACE = 3;
constexpr kern_return_t KERN_INVALID_ARGUMENT = 4;
constexpr kern_return_t KERN_FAILURE = 5;

// A new dictionary that matches the services of that class, which the caller owns; null without
// memory.
CFMutableDictionaryRef IOServiceMatching(char const* className);
// The services that the dictionary matches, in an iterator that the caller releases; it is null,
// and the result isn't 0, on failure. One reference to `matching` is taken, also on failure. Of the
// properties under "IOPropertyMatch" the registry knows "IOPrimaryInterface".
kern_return_t IOServiceGetMatchingServices(CFDictionaryRef matching, io_iterator_t* iterator);
// The next one, which the caller releases, or IO_OBJECT_NULL at the end.
io_object_t IOIteratorNext(io_iterator_t iterator);
// The caller releases the parent, which is null on failure. There is one plane, "IOService".
kern_return_t IORegistryEntryGetParentEntry(io_registry_entry_t entry, char const* plane,
                                            io_registry_entry_t* parent);
// What the entry holds under the key, which the caller releases, or null: a controller has the
// address as data under "IOMACAddress".
CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t entry, CFStringRef key);
kern_return_t IOObjectRelease(io_object_t object);  // IO_OBJECT_NULL is harmless
