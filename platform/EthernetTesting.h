// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/EthernetInterfaces.h"

// What a test puts in the place of the machine's interfaces.

struct EthernetInterface {
    std::vector<std::uint8_t> address;  // empty: the controller has none
    bool isPrimary = false;
    kern_return_t parentStatus = KERN_SUCCESS;  // what looking for the controller gives
};

struct EthernetRegistry {
    std::vector<EthernetInterface> interfaces;
    kern_return_t servicesStatus = KERN_SUCCESS;  // what looking for services gives
};

// Borrowed until the next call; null for the machine's own.
void ReplaceEthernetRegistry(EthernetRegistry const* registry);

// What the registry makes of folders and a table of routes in the form of /sys/class/net and
// /proc/net/route.
EthernetRegistry ReadEthernetRegistry(std::string const& interfacesFolder,
                                      std::string const& routesFile);
