// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "VelonFeatures/Project/Core/JobTicket.h"

// The session's print settings; valid only if the session has that ticket.
class PrintSettingsTicket : public JobTicket {
  public:
    explicit PrintSettingsTicket(PMPrintSession session);
};
