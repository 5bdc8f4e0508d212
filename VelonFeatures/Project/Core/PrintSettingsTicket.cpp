// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"

#include "VelonFeatures/Project/Core/TicketKeys.h"

PrintSettingsTicket::PrintSettingsTicket(PMPrintSession session) : JobTicket(session) {
    TakeSessionTicket(TicketKey(kPrintSettingsTicket));
}
